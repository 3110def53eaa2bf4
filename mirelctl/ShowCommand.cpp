#include "mirelctl/ShowCommand.h"

#include "mirelctl/Library.h"
#include "mirelctl/TextOutput.h"
#include "model/DisplayText.h"
#include "x/PostReference.h"

#include <QLocale>

namespace mirel {

namespace {

constexpr int labelWidth = 12;

// The text of one bookmark, line by line.
class BookmarkText
{
public:
    explicit BookmarkText(std::optional<int> columns)
        : m_columns(columns)
    {
    }

    void addLine(const QString& line) { m_lines.append(line); }

    // An empty line and the text behind it; nothing when there is no text.
    void addParagraphs(const QString& text)
    {
        const QString shown = printable(displayText(text)).trimmed();
        if (shown.isEmpty())
            return;
        m_lines.append(QString());
        m_lines += m_columns ? wrappedToWidth(shown, std::max(20, *m_columns)) : shown.split(u'\n');
    }

    // A line "label  text"; nothing when there is no text.
    void addField(const QString& label, const QString& text)
    {
        if (!text.isEmpty())
            m_fields.append(paddedToWidth(label, labelWidth) + oneLine(displayText(text)));
    }

    [[nodiscard]] QByteArray toUtf8() const
    {
        QStringList lines = m_lines;
        if (!m_fields.isEmpty())
            lines += QStringList{QString()} + m_fields;
        return (lines.join(u'\n') + u'\n').toUtf8();
    }

private:
    std::optional<int> m_columns;
    QStringList m_lines;
    QStringList m_fields;
};

QString authorText(const QString& name, const QString& username)
{
    return oneLine(name) + QStringLiteral(" (@") + oneLine(username) + u')';
}

QString quotedText(const QuotedPost& quoted)
{
    const QString& text = quoted.contentTitle ? *quoted.contentTitle : quoted.text;
    if (!quoted.author)
        return text;
    return authorText(quoted.author->name, quoted.author->username) + QStringLiteral(": ") + text;
}

QString mediaText(const MediaItem& item)
{
    QString text = rawValue(item.kind) + u' ' + absoluteString(item.url);
    if (item.altText)
        text += QStringLiteral(" (") + *item.altText + u')';
    return text;
}

QString metricsText(const PostMetrics& metrics)
{
    const QLocale locale;
    return QStringList{
        locale.toString(metrics.likes) + QStringLiteral(" likes"),
        locale.toString(metrics.reposts) + QStringLiteral(" reposts"),
        locale.toString(metrics.replies) + QStringLiteral(" replies"),
        locale.toString(metrics.quotes) + QStringLiteral(" quotes"),
        locale.toString(metrics.bookmarks) + QStringLiteral(" bookmarks"),
        locale.toString(metrics.views) + QStringLiteral(" views"),
    }
        .join(QStringLiteral(", "));
}

QString stateText(const Bookmark& bookmark)
{
    QStringList states{bookmark.isRead ? QStringLiteral("read") : QStringLiteral("unread")};
    if (bookmark.isFavorite)
        states.append(QStringLiteral("favorite"));
    if (bookmark.isArchived)
        states.append(QStringLiteral("archived"));
    return states.join(QStringLiteral(", "));
}

QString labelsText(const QList<Tag>& tags)
{
    QStringList names;
    for (const Tag& tag : tags)
        names.append(tag.name);
    return names.join(QStringLiteral(", "));
}

QByteArray textOf(const Bookmark& bookmark, std::optional<int> columns)
{
    BookmarkText text(columns);
    text.addLine(authorText(bookmark.author.name, bookmark.author.username));
    text.addLine(bookmark.createdAt.toDateTime().toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")));
    text.addLine(absoluteString(bookmark.sourceURL));
    text.addParagraphs(bookmark.contentTitle.value_or(QString()));
    text.addParagraphs(bookmark.text);
    text.addParagraphs(bookmark.contentText.value_or(QString()));
    for (const ThreadPost& post : bookmark.thread) {
        if (post.tweetID != bookmark.tweetID)
            text.addParagraphs(post.text);
    }
    if (bookmark.quotedPost)
        text.addField(QStringLiteral("Quotes"), quotedText(*bookmark.quotedPost));
    for (const MediaItem& item : bookmark.media)
        text.addField(QStringLiteral("Media"), mediaText(item));
    text.addField(QStringLiteral("Counters"), metricsText(bookmark.metrics));
    text.addField(QStringLiteral("State"), stateText(bookmark));
    text.addField(QStringLiteral("Labels"), labelsText(bookmark.tags));
    text.addField(QStringLiteral("Folder"), bookmark.folder ? bookmark.folder->name : QString());
    text.addField(QStringLiteral("Note"), bookmark.note.value_or(QString()));
    return text.toUtf8();
}

} // namespace

QByteArray ShowCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const auto id = tweetID(reference);
    if (!id)
        throw CommandError(QStringLiteral("Enter a valid X post URL or tweet ID."));
    const auto bookmark =
        readLibrary(model, [id = *id](LocalLibraryStore& library) { return library.bookmark(id); });
    if (!bookmark)
        throw CommandError(QStringLiteral("That X post is not in the local library."));
    if (surroundings.json)
        return encodeJSON(*bookmark) + '\n';
    return textOf(*bookmark, surroundings.columns);
}

} // namespace mirel
