#include "support/ContinuousClock.h"

#include <ctime>

namespace mirel {

std::chrono::milliseconds ContinuousClock::now()
{
    // Unlike on Linux, this system's monotonic clock counts the time that the computer slept.
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::seconds(time.tv_sec) +
                                                                 std::chrono::nanoseconds(time.tv_nsec));
}

} // namespace mirel
