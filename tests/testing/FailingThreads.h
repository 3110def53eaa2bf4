#pragma once

#include "testing/FailingSQLite.h"

namespace mirel::testing {

// The threads that the process starts, whoever does.
FailureCountdown& failingThreads();

} // namespace mirel::testing
