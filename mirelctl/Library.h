#pragma once

#include "mirelctl/CommandError.h"
#include "model/MirelAppModel.h"
#include "support/BlockOn.h"

namespace mirel {

// Throws the model's last error, if it has one.
void requireNoFailure(const MirelAppModel& model);

// Throws why there is no library, if there is none.
void requireLibrary(const MirelAppModel& model);

// Runs `operation(LocalLibraryStore&)` on the library and returns what it returns. Throws CommandError when
// there is no library, or what the operation throws. Runs the event loop of this thread.
template <typename Operation>
auto withLibrary(MirelAppModel& model, Operation operation)
{
    requireLibrary(model);
    return blockOn(model.store()->call(operation));
}

} // namespace mirel
