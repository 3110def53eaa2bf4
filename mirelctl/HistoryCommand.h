#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Prints the syncs, the newest first, or what happened in one of them. As JSON an array of SyncRun, or of
// SyncLogEntry.
struct HistoryCommand
{
    static constexpr QLatin1StringView name{"history"};

    // The id of a run, with or without "#".
    std::optional<QString> reference;
    // Of the runs; with a reference there is none.
    std::optional<qint64> limit;

    void describe(CommandSyntax& syntax);
    // Returns what goes to standard output. Asks neither the keyring nor X. Throws CommandError, or what
    // the library throws. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const HistoryCommand&, const HistoryCommand&) = default;
};

} // namespace mirel
