#include "mirelctl/FolderCommands.h"

#include "library/OrganizationNames.h"
#include "mirelctl/Answer.h"
#include "mirelctl/References.h"

#include <QHash>

namespace mirel {

namespace {

using FoldersByID = QHash<qint64, Folder>;

// "Work / Research": the folder below those that hold it.
QString pathOf(const Folder& folder, const FoldersByID& folders)
{
    QStringList names{folder.name};
    QSet<qint64> seen{folder.id};
    for (auto parentID = folder.parentID; parentID && folders.contains(*parentID);
         parentID = folders[*parentID].parentID) {
        // Folders that were stored in a circle.
        if (seen.contains(*parentID))
            break;
        seen.insert(*parentID);
        names.prepend(folders[*parentID].name);
    }
    return names.join(QStringLiteral(" / "));
}

QStringList rowOfFolder(const FolderSummary& summary, const FoldersByID& folders)
{
    QString text = pathOf(summary.folder, folders);
    if (summary.folder.description)
        text += QStringLiteral(": ") + *summary.folder.description;
    return {
        idText(summary.folder.id),
        counted(summary.bookmarkCount, QStringLiteral("bookmark")),
        QStringLiteral("%1 unread").arg(summary.unreadCount),
        text,
    };
}

QString sentenceOn(const Folder& folder)
{
    return QStringLiteral("Folder \"%1\" is %2.").arg(folder.name, idText(folder.id));
}

std::optional<qint64> idOfFolder(LocalLibraryStore& library, const std::optional<QString>& reference)
{
    return reference ? std::optional(requireFolder(library, *reference).id) : std::nullopt;
}

// The folder that is there, with what the command names.
Folder changed(LocalLibraryStore& library, const Folder& folder, const FolderUpdateCommand& changes)
{
    const auto parentID = idOfFolder(library, changes.parent);
    return library.updateFolder(
        folder.id, changes.newName.value_or(folder.name),
        changes.withoutDescription ? std::nullopt
                                   : (changes.description ? changes.description : folder.description),
        changes.withoutParent ? std::nullopt : (parentID ? parentID : folder.parentID));
}

} // namespace

void FolderListCommand::describe(CommandSyntax& syntax)
{
    syntax.addOptionalOperand(search);
}

QByteArray FolderListCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    using Listing = std::pair<QList<FolderSummary>, FoldersByID>;
    const auto [summaries, folders] =
        withLibrary(model, [text = search.value_or(QString())](LocalLibraryStore& library) {
            Listing listing{library.folderSummaries(text), {}};
            for (const Folder& folder : library.folders())
                listing.second.insert(folder.id, folder);
            return listing;
        });
    return answerList(surroundings, summaries, QStringLiteral("No folders."),
                      [&all = folders](const FolderSummary& summary) { return rowOfFolder(summary, all); });
}

void FolderCreateCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("the name of the new folder"), folder);
    syntax.addText(QStringLiteral("description"), description);
    syntax.addText(QStringLiteral("parent"), parent);
}

QByteArray FolderCreateCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const QString clean = cleanName(command.folder);
        const auto existing = folderNamed(library, clean);
        // Unlike the creation, the change of a folder keeps folders from standing in a circle.
        const Folder created =
            existing
                ? changed(library, *existing, {.description = command.description, .parent = command.parent})
                : library.createFolder(clean, command.description, idOfFolder(library, command.parent),
                                       Folder::Source::local, {});
        return Outcome<Folder>{created, sentenceOn(created)};
    });
}

void FolderUpdateCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("the name of a folder"), folder);
    syntax.addText(QStringLiteral("name"), newName);
    syntax.addText(QStringLiteral("description"), description);
    syntax.addSwitch(QStringLiteral("no-description"), withoutDescription);
    syntax.addText(QStringLiteral("parent"), parent);
    syntax.addSwitch(QStringLiteral("no-parent"), withoutParent);
    syntax.addCheck([this] {
        if (description && withoutDescription)
            throw CommandError(
                QStringLiteral("The options --description and --no-description do not go together."));
        if (parent && withoutParent)
            throw CommandError(QStringLiteral("The options --parent and --no-parent do not go together."));
    });
}

QByteArray FolderUpdateCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const Folder updated = changed(library, requireFolder(library, command.folder), command);
        return Outcome<Folder>{updated, sentenceOn(updated)};
    });
}

void FolderDeleteCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(QStringLiteral("the names of folders"), folders);
}

QByteArray FolderDeleteCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [references = folders](LocalLibraryStore& library) {
        const QList<Folder> found = requireFolders(library, references);
        for (const Folder& folder : found)
            library.deleteFolder(folder.id);
        return Outcome<QList<Folder>>{found, QStringLiteral("Deleted %1.").arg(quotedNames(found))};
    });
}

void FolderAssignCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("the name of a folder"), folder);
    syntax.addOperands(QStringLiteral("X post ids or posts' addresses"), bookmarks);
}

QByteArray FolderAssignCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const Folder target = requireFolder(library, command.folder);
        return fileBookmarks(library, command.bookmarks,
                             QStringLiteral("Assigned \"%1\" to ").arg(target.name),
                             [&](const Bookmark& bookmark) { library.assignFolder(target.id, bookmark.id); });
    });
}

void FolderUnassignCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(QStringLiteral("X post ids or posts' addresses"), bookmarks);
}

QByteArray FolderUnassignCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [references = bookmarks](LocalLibraryStore& library) {
        return fileBookmarks(library, references, QStringLiteral("Unassigned the folder of "),
                             [&](const Bookmark& bookmark) { library.unassignFolder(bookmark.id); });
    });
}

} // namespace mirel
