#pragma once

#include "mirelctl/ListCommand.h"
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

using Command =
    std::variant<StatusCommand, SyncCommand, ListCommand, ShowCommand, HelpCommand, VersionCommand>;

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

// The text of `--help`.
[[nodiscard]] QString helpText();

} // namespace mirel
