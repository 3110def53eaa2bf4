#pragma once

#include "mirelctl/Interruption.h"
#include "model/MirelAppModel.h"
#include "support/BlockOn.h"

#include <optional>

namespace mirel {

// Runs the command of the model that `start()` begins until it has ended. A first SIGINT, SIGTERM or SIGHUP
// ends it early, in order: a token that was just refreshed is still saved. Returns whether one came. Runs the
// event loop of this thread.
template <typename Start>
bool runInterruptibly(MirelAppModel& model, const Start& start)
{
    std::optional<QCoro::Task<>> ending;
    const Interruption interruption([&] {
        // The user's wish, and not a sync that the end of the program cut off.
        model.cancelSync();
        ending.emplace(model.shutDown());
    });
    blockOn(start());
    if (ending)
        blockOn(*std::move(ending));
    return interruption.hasHappened();
}

} // namespace mirel
