#include "mirelctl/LabelCommands.h"

#include "library/OrganizationNames.h"
#include "mirelctl/Answer.h"
#include "mirelctl/References.h"

namespace mirel {

namespace {

QStringList rowOfLabel(const TagSummary& summary)
{
    return {
        idText(summary.tag.id),
        summary.tag.colorHex,
        counted(summary.bookmarkCount, QStringLiteral("bookmark")),
        QStringLiteral("%1 unread").arg(summary.unreadCount),
        summary.tag.name,
    };
}

QString sentenceOn(const Tag& tag)
{
    return QStringLiteral("Label \"%1\" is %2 with the color %3.")
        .arg(tag.name, idText(tag.id), tag.colorHex);
}

void describeLabelAndBookmarks(CommandSyntax& syntax, QString& label, QStringList& bookmarks)
{
    syntax.addOperand(QStringLiteral("the name of a label"), label);
    syntax.addOperands(QStringLiteral("X post ids or posts' addresses"), bookmarks);
}

} // namespace

void LabelListCommand::describe(CommandSyntax& syntax)
{
    syntax.addOptionalOperand(search);
}

QByteArray LabelListCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const auto summaries =
        withLibrary(model, [text = search.value_or(QString())](LocalLibraryStore& library) {
            return library.tagSummaries(text);
        });
    return answerList(surroundings, summaries, QStringLiteral("No labels."), rowOfLabel);
}

void LabelCreateCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("the name of the new label"), label);
    syntax.addColor(QStringLiteral("color"), color);
}

QByteArray LabelCreateCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const QString clean = cleanName(command.label);
        const auto existing = labelNamed(library, clean);
        const QString oldColor = existing ? existing->colorHex : QStringLiteral("#3E6BF5");
        const Tag tag = library.createTag(existing ? existing->name : clean, command.color.value_or(oldColor),
                                          Tag::Source::manual);
        return Outcome<Tag>{tag, sentenceOn(tag)};
    });
}

void LabelRenameCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("the name of a label"), label);
    syntax.addOperand(QStringLiteral("the new name of the label"), newName);
    syntax.addColor(QStringLiteral("color"), color);
}

QByteArray LabelRenameCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const Tag old = requireLabel(library, command.label);
        const Tag tag = library.renameTag(old.id, command.newName, command.color.value_or(old.colorHex));
        return Outcome<Tag>{tag, sentenceOn(tag)};
    });
}

void LabelMergeCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(QStringLiteral("the names of labels"), sources);
    syntax.addRequiredText(QStringLiteral("into"), QStringLiteral("TARGET"), target);
}

QByteArray LabelMergeCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const Tag kept = requireLabel(library, command.target);
        const QList<Tag> merged = requireLabels(library, command.sources);
        library.mergeTags(idsOf(merged), kept.id);
        return Outcome<Tag>{kept,
                            QStringLiteral("Merged %1 into \"%2\".").arg(quotedNames(merged), kept.name)};
    });
}

void LabelDeleteCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(QStringLiteral("the names of labels"), labels);
}

QByteArray LabelDeleteCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [references = labels](LocalLibraryStore& library) {
        const QList<Tag> tags = requireLabels(library, references);
        library.deleteTags(idsOf(tags));
        return Outcome<QList<Tag>>{tags, QStringLiteral("Deleted %1.").arg(quotedNames(tags))};
    });
}

void LabelAddCommand::describe(CommandSyntax& syntax)
{
    describeLabelAndBookmarks(syntax, label, bookmarks);
}

QByteArray LabelAddCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const Tag tag = requireLabel(library, command.label);
        return fileBookmarks(library, command.bookmarks, QStringLiteral("Added \"%1\" to ").arg(tag.name),
                             [&](const Bookmark& bookmark) { library.addTag(tag.id, bookmark.id); });
    });
}

void LabelRemoveCommand::describe(CommandSyntax& syntax)
{
    describeLabelAndBookmarks(syntax, label, bookmarks);
}

QByteArray LabelRemoveCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const Tag tag = requireLabel(library, command.label);
        return fileBookmarks(library, command.bookmarks, QStringLiteral("Removed \"%1\" from ").arg(tag.name),
                             [&](const Bookmark& bookmark) { library.removeTag(tag.id, bookmark.id); });
    });
}

} // namespace mirel
