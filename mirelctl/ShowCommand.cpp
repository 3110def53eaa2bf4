#include "mirelctl/ShowCommand.h"

#include "library/LibrarySearchExpression.h"
#include "mirelctl/BookmarkText.h"
#include "mirelctl/Library.h"
#include "mirelctl/References.h"
#include "presentation/PostPresentation.h"

namespace mirel {

namespace {

QString quotedText(const QuotedPost& quoted)
{
    const QString& text = quoted.contentTitle ? *quoted.contentTitle : quoted.text;
    if (!quoted.author)
        return text;
    return authorText(quoted.author->name, quoted.author->username) + QStringLiteral(": ") + text;
}

QByteArray textOf(const Bookmark& bookmark, std::optional<int> columns)
{
    BookmarkText text(columns);
    text.addHead(bookmark);
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
    text.addOwnFields(bookmark);
    return text.toUtf8();
}

// The text of one case in archives and tables is not its name.
QString caseName(LibraryContentType type)
{
    return type == LibraryContentType::externalLink ? QStringLiteral("externalLink") : rawValue(type);
}

QByteArray presentationOf(const Bookmark& bookmark)
{
    QJsonObject json = PostPresentation(bookmark).toJSON();
    json.insert(QStringLiteral("contentType"), caseName(LibrarySearchExpression::contentType(bookmark)));
    return writeJSON(json) + '\n';
}

} // namespace

void ShowCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("an X post id or a post's address"), reference);
    syntax.addSwitch(QStringLiteral("presentation"), presentation);
}

QByteArray ShowCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const Bookmark bookmark =
        withLibrary(model, [id = requireTweetID(reference)](LocalLibraryStore& library) {
            return requireBookmark(library, id);
        });
    if (presentation)
        return presentationOf(bookmark);
    if (surroundings.json)
        return encodeJSON(bookmark) + '\n';
    return textOf(bookmark, surroundings.columns);
}

} // namespace mirel
