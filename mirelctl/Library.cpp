#include "mirelctl/Library.h"

namespace mirel {

void requireNoFailure(const MirelAppModel& model)
{
    if (model.lastError())
        throw CommandError(*model.lastError());
}

void requireLibrary(const MirelAppModel& model)
{
    if (model.hasLibrary())
        return;
    requireNoFailure(model);
    throw CommandError(QStringLiteral("The local Mirel store is unavailable."));
}

} // namespace mirel
