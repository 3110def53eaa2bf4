#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Connects an X account: prints the page on which the user agrees, and waits for the address to which X sends
// the browser then, on standard input or from the start of Mirel that the system makes of it.
struct ConnectCommand
{
    static constexpr QLatin1StringView name{"connect"};

    // Of the developer app; X_CLIENT_ID when absent.
    std::optional<QString> clientID;
    // The first line of standard input is the app's secret; else X_CLIENT_SECRET is, if there is one.
    bool readsSecret = false;
    QString redirectURI = XOAuthService::nativeRedirectURI;

    void describe(CommandSyntax& syntax);
    // Returns what goes to standard output in the end. An interrupt gives the sign-in up. Throws
    // CommandError. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const ConnectCommand&, const ConnectCommand&) = default;
};

// Removes the secrets from the keyring.
struct DisconnectCommand
{
    static constexpr QLatin1StringView name{"disconnect"};

    static void describe(CommandSyntax&) {}
    // Returns what goes to standard output. Throws CommandError. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const DisconnectCommand&, const DisconnectCommand&) = default;
};

// Deletes the library, the secrets and the caches.
struct PurgeCommand
{
    static constexpr QLatin1StringView name{"purge"};

    // The user means it.
    bool yes = false;

    void describe(CommandSyntax& syntax) { syntax.addSwitch(QStringLiteral("yes"), yes); }
    // Returns what goes to standard output. Throws CommandError. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const PurgeCommand&, const PurgeCommand&) = default;
};

} // namespace mirel
