#pragma once

#include "records/SyncRun.h"

namespace mirel {

// "rate limited".
[[nodiscard]] QString statusText(const SyncRun& run);

// "2 pages, 100 received, 7 new. X rate limit reached."
[[nodiscard]] QString outcomeText(const SyncRun& run);

} // namespace mirel
