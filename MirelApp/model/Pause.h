#pragma once

#include <QCoro/QCoroTask>

#include <chrono>

namespace mirel {

// Lets time pass. One pause at a time, on one thread.
class Pause
{
public:
    virtual ~Pause() = default;

    // Returns when `time` has passed or interrupt() is called.
    [[nodiscard]] virtual QCoro::Task<> lastFor(std::chrono::milliseconds time) = 0;

    // Ends the pause under way.
    virtual void interrupt() = 0;
};

} // namespace mirel
