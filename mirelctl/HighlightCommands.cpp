#include "mirelctl/HighlightCommands.h"

#include "mirelctl/Answer.h"
#include "mirelctl/References.h"
#include "support/Text.h"

#include <QHash>

namespace mirel {

namespace {

// The offsets that the command names or, when it names none, those of the text in the context.
std::pair<qint64, qint64> offsetsOf(const HighlightAddCommand& command)
{
    const QString selection = trimmed(command.text);
    if (command.start)
        return {*command.start, command.end.value_or(*command.start + characterCount(selection))};
    const qsizetype position = command.context ? command.context->indexOf(selection) : -1;
    if (position == -1)
        return {0, 0};
    const qsizetype start = characterCount(command.context->first(position));
    return {start, start + characterCount(selection)};
}

QStringList rowOfHighlight(const BookmarkHighlight& highlight, const QHash<qint64, QString>& tweetIDs)
{
    return {
        idText(highlight.id),
        tweetIDs.value(highlight.bookmarkID, QStringLiteral("deleted")),
        dateText(highlight.createdAt),
        oneLine(highlight.selectedText),
    };
}

} // namespace

void HighlightAddCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("an X post id or a post's address"), bookmark);
    syntax.addOperand(QStringLiteral("the text to highlight"), text);
    syntax.addText(QStringLiteral("context"), context);
    syntax.addNumber(QStringLiteral("start"), start, 0);
    syntax.addNumber(QStringLiteral("end"), end, 0);
    syntax.addColor(QStringLiteral("color"), color);
    syntax.addCheck([this] {
        if (end && !start)
            throw CommandError(QStringLiteral("The option --end needs --start."));
    });
}

QByteArray HighlightAddCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(
        model, surroundings, [command = *this, now = surroundings.now()](LocalLibraryStore& library) {
            const auto [startOffset, endOffset] = offsetsOf(command);
            const BookmarkHighlight highlight = library.createHighlight(
                requireBookmark(library, command.bookmark).id, command.text, command.context, startOffset,
                endOffset, command.color.value_or(QStringLiteral("#fde68a")), now);
            return Outcome<BookmarkHighlight>{
                highlight, QStringLiteral("Highlight %1 is stored.").arg(idText(highlight.id))};
        });
}

void HighlightListCommand::describe(CommandSyntax& syntax)
{
    syntax.addOptionalOperand(bookmark);
}

QByteArray HighlightListCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    using Listing = std::pair<QList<BookmarkHighlight>, QHash<qint64, QString>>;
    const auto [highlights, tweetIDs] =
        withLibrary(model, [reference = bookmark](LocalLibraryStore& library) {
            const auto id = reference ? std::optional(requireBookmark(library, *reference).id) : std::nullopt;
            return Listing{library.highlights(id), library.tweetIDs()};
        });
    return answerList(
        surroundings, highlights, QStringLiteral("No highlights."),
        [&ids = tweetIDs](const BookmarkHighlight& highlight) { return rowOfHighlight(highlight, ids); });
}

void HighlightDeleteCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(QStringLiteral("the ids of highlights"), highlights);
}

QByteArray HighlightDeleteCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [references = highlights](LocalLibraryStore& library) {
        const QList<BookmarkHighlight> found = requireHighlights(library, references);
        for (const BookmarkHighlight& highlight : found)
            library.deleteHighlight(highlight.id);
        return Outcome<QList<BookmarkHighlight>>{
            found, QStringLiteral("Deleted %1.").arg(counted(found.size(), QStringLiteral("highlight")))};
    });
}

} // namespace mirel
