#pragma once

#include "mirelctl/AuthorsCommand.h"
#include "mirelctl/ConnectionCommands.h"
#include "mirelctl/FolderCommands.h"
#include "mirelctl/HighlightCommands.h"
#include "mirelctl/HistoryCommand.h"
#include "mirelctl/LabelCommands.h"
#include "mirelctl/ListCommand.h"
#include "mirelctl/OpenCommand.h"
#include "mirelctl/PostCommands.h"
#include "mirelctl/PreferencesCommands.h"
#include "mirelctl/RuleCommands.h"
#include "mirelctl/SearchCommands.h"
#include "mirelctl/ShowCommand.h"
#include "mirelctl/StatusCommand.h"
#include "mirelctl/SyncCommand.h"

#include <QStringList>

#include <variant>

namespace mirel {

struct HelpCommand
{
    friend bool operator==(const HelpCommand&, const HelpCommand&) = default;
};

struct VersionCommand
{
    friend bool operator==(const VersionCommand&, const VersionCommand&) = default;
};

// All commands. Those that do something have a `name` of one or two words, describe(), which binds what the
// user may add to it, and run().
using Command =
    std::variant<StatusCommand, SyncCommand, HistoryCommand, ListCommand, ShowCommand, OpenCommand,
                 ThreadCommand, MetricsCommand, DeleteCommand, SearchCommand, CountCommand, LabelListCommand,
                 LabelCreateCommand, LabelRenameCommand, LabelMergeCommand, LabelDeleteCommand,
                 LabelAddCommand, LabelRemoveCommand, FolderListCommand, FolderCreateCommand,
                 FolderUpdateCommand, FolderDeleteCommand, FolderAssignCommand, FolderUnassignCommand,
                 RuleListCommand, RuleCreateCommand, RulePreviewCommand, RuleRunCommand, RuleEnableCommand,
                 RuleDisableCommand, RuleDeleteCommand, HighlightAddCommand, HighlightListCommand,
                 HighlightDeleteCommand, AuthorsCommand, PreferencesGetCommand, PreferencesSetCommand,
                 ConnectCommand, DisconnectCommand, PurgeCommand, HelpCommand, VersionCommand>;

// What the user asked for.
struct CommandLine
{
    // Where the library lies, instead of the usual place.
    std::optional<QString> dataDirectory;
    bool json = false;
    // The simulated account instead of the keyring's.
    bool demo = false;
    Command command = HelpCommand{};

    friend bool operator==(const CommandLine&, const CommandLine&) = default;
};

// Reads the arguments after the program's name. The options that every command has may stand before and
// after its name; "--option=value" is one word or two; after "--" nothing is an option. `--help` and
// `--version` win over all that follows them. Throws CommandError.
[[nodiscard]] CommandLine parseCommandLine(const QStringList& arguments);

// The names of all commands, such as "sync" and "label create".
[[nodiscard]] QStringList commandNames();

// The text of `--help`.
[[nodiscard]] QString helpText();

} // namespace mirel
