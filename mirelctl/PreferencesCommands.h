#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// The settings, named by their fields in JSON, such as "pageSize" and "aiPrompts.summary". Each run() returns
// what goes to standard output, asks neither the keyring nor X, throws CommandError or what the library
// throws, and runs the event loop of this thread.

// Prints one setting or all; as JSON its value or AppPreferences.
struct PreferencesGetCommand
{
    static constexpr QLatin1StringView name{"preferences get"};

    std::optional<QString> key;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const PreferencesGetCommand&, const PreferencesGetCommand&) = default;
};

// Changes settings, all or none. As JSON, AppPreferences.
struct PreferencesSetCommand
{
    static constexpr QLatin1StringView name{"preferences set"};

    // A key, its value, a key, its value, ...
    QStringList assignments;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const PreferencesSetCommand&, const PreferencesSetCommand&) = default;
};

} // namespace mirel
