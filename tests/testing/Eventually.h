#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <chrono>

namespace mirel::testing {

// Runs the event loop of this thread until `condition()` holds. False when it did not for a whole minute.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition)
{
    const QDeadlineTimer deadline(std::chrono::minutes(1));
    // For conditions that come to hold without an event.
    QTimer pulse;
    pulse.start(std::chrono::milliseconds(10));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

} // namespace mirel::testing
