#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Tells how the library stands and whether X works.
struct StatusCommand
{
    static constexpr QLatin1StringView name{"status"};

    static void describe(CommandSyntax&) {}
    // Returns what goes to standard output. Throws CommandError. Runs the event loop of this thread. When
    // the keyring or X takes longer than the patience allows, the model's check is left running.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const StatusCommand&, const StatusCommand&) = default;
};

} // namespace mirel
