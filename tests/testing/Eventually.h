#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <chrono>

namespace mirel::testing {

// Runs the event loop of this thread until `condition()` holds. False when it did not for a whole minute.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition)
{
    const QDeadlineTimer deadline(std::chrono::minutes(1));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return true;
}

} // namespace mirel::testing
