#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Folders and what is in them; References.h tells how they are named. Each run() returns what goes to
// standard output, asks neither the keyring nor X, throws CommandError or what the library throws, and runs
// the event loop of this thread.

// Prints the folders that hold a text in their names, all without one; as JSON an array of
// FolderSummary.
struct FolderListCommand
{
    static constexpr QLatin1StringView name{"folder list"};

    std::optional<QString> search;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const FolderListCommand&, const FolderListCommand&) = default;
};

// Creates a folder, or gives the one of that name what is named. As JSON, the Folder.
struct FolderCreateCommand
{
    static constexpr QLatin1StringView name{"folder create"};

    QString folder;
    std::optional<QString> description;
    std::optional<QString> parent;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const FolderCreateCommand&, const FolderCreateCommand&) = default;
};

// Changes of a folder what is named. As JSON, the Folder.
struct FolderUpdateCommand
{
    static constexpr QLatin1StringView name{"folder update"};

    QString folder;
    std::optional<QString> newName;
    std::optional<QString> description;
    bool withoutDescription = false;
    std::optional<QString> parent;
    bool withoutParent = false;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const FolderUpdateCommand&, const FolderUpdateCommand&) = default;
};

// Its bookmarks stay. As JSON, an array of the Folders that were.
struct FolderDeleteCommand
{
    static constexpr QLatin1StringView name{"folder delete"};

    QStringList folders;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const FolderDeleteCommand&, const FolderDeleteCommand&) = default;
};

// Moves bookmarks into a folder, none when one of them is not there. As JSON, an array of those.
struct FolderAssignCommand
{
    static constexpr QLatin1StringView name{"folder assign"};

    QString folder;
    QStringList bookmarks;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const FolderAssignCommand&, const FolderAssignCommand&) = default;
};

// Takes bookmarks out of their folders, none when one of them is not there. As JSON, an array of those.
struct FolderUnassignCommand
{
    static constexpr QLatin1StringView name{"folder unassign"};

    QStringList bookmarks;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const FolderUnassignCommand&, const FolderUnassignCommand&) = default;
};

} // namespace mirel
