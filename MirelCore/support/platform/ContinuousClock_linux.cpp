#include "support/ContinuousClock.h"

#include <ctime>

namespace mirel {

std::chrono::milliseconds ContinuousClock::now()
{
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::seconds(time.tv_sec) +
                                                                 std::chrono::nanoseconds(time.tv_nsec));
}

} // namespace mirel
