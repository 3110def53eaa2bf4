#include "mirelctl/BookmarkListing.h"

#include "mirelctl/TextOutput.h"
#include "model/DisplayText.h"

namespace mirel {

namespace {

constexpr int widestHandle = 16;

QString marksOf(const Bookmark& bookmark)
{
    return QString(bookmark.isRead ? u' ' : u'\u2022') + QString(bookmark.isFavorite ? u'\u2605' : u' ');
}

} // namespace

void ListingOptions::describe(CommandSyntax& syntax)
{
    syntax.addChoice(QStringLiteral("filter"), filter);
    syntax.addChoice(QStringLiteral("sort"), sort);
    syntax.addNumber(QStringLiteral("limit"), limit, 1);
    syntax.addNumber(QStringLiteral("offset"), offset, 0);
}

QStringList rowOf(const Bookmark& bookmark, std::optional<int> columns)
{
    const QString& title = bookmark.contentTitle ? *bookmark.contentTitle : bookmark.text;
    const QString handle = u'@' + oneLine(bookmark.author.username);
    return {
        oneLine(bookmark.tweetID),   dateText(bookmark.createdAt),
        marksOf(bookmark),           columns ? truncatedToWidth(handle, widestHandle) : handle,
        oneLine(displayText(title)),
    };
}

QByteArray listingText(const QList<QStringList>& rows, std::optional<int> columns)
{
    return rows.isEmpty() ? QByteArrayLiteral("No bookmarks.\n") : alignedLines(rows, columns).toUtf8();
}

QByteArray answerBookmarks(const CommandSurroundings& surroundings, const QList<Bookmark>& bookmarks)
{
    if (surroundings.json)
        return encodeJSON(bookmarks) + '\n';
    QList<QStringList> rows;
    for (const Bookmark& bookmark : bookmarks)
        rows.append(rowOf(bookmark, surroundings.columns));
    return listingText(rows, surroundings.columns);
}

} // namespace mirel
