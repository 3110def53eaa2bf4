#include "model/ContinuousPause.h"

#include "support/ContinuousClock.h"

#include <QCoro/QCoroFuture>

#include <algorithm>

namespace mirel {

ContinuousPause::ContinuousPause(Clock now)
    : m_now(std::move(now))
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
}

ContinuousPause::Clock ContinuousPause::systemClock()
{
    return &ContinuousClock::now;
}

std::chrono::milliseconds ContinuousPause::step(std::chrono::milliseconds remaining)
{
    return std::min(remaining, longestLateness);
}

QCoro::Task<> ContinuousPause::lastFor(std::chrono::milliseconds time)
{
    m_end = m_now() + time;
    m_passing = QPromise<void>();
    m_passing.start();
    const QFuture<void> passed = m_passing.future();
    look();
    co_await passed;
}

// Timers stand still while the computer sleeps, so no timer is trusted for long.
void ContinuousPause::look()
{
    const std::chrono::milliseconds remaining = m_end - m_now();
    if (remaining > std::chrono::milliseconds::zero())
        m_timer.start(step(remaining));
    else
        m_passing.finish();
}

void ContinuousPause::interrupt()
{
    m_timer.stop();
    m_passing.finish();
}

} // namespace mirel
