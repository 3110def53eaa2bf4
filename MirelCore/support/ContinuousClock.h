#pragma once

#include <chrono>

namespace mirel {

// A clock that never goes back, and goes on while the computer sleeps. Its zero means nothing.
struct ContinuousClock
{
    ContinuousClock() = delete;

    [[nodiscard]] static std::chrono::milliseconds now();
};

} // namespace mirel
