#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Brings the library up to date with the user's bookmarks on X.
struct SyncCommand
{
    static constexpr QLatin1StringView name{"sync"};

    // Until X has no more pages, rather than to the first page without anything new.
    bool full = false;

    void describe(CommandSyntax& syntax) { syntax.addSwitch(QStringLiteral("full"), full); }
    // Returns what goes to standard output. A SIGINT or SIGTERM ends the sync with its run recorded as
    // failed; a second one ends the process. Throws CommandError. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const SyncCommand&, const SyncCommand&) = default;
};

} // namespace mirel
