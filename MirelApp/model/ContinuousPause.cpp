#include "model/ContinuousPause.h"

#include "support/ContinuousClock.h"

#include <QCoro/QCoroSignal>

#include <algorithm>

namespace mirel {

ContinuousPause::ContinuousPause(Clock now, QObject* parent)
    : QObject(parent)
    , m_now(std::move(now))
{
}

ContinuousPause::Clock ContinuousPause::systemClock()
{
    return &ContinuousClock::now;
}

std::chrono::milliseconds ContinuousPause::step(std::chrono::milliseconds remaining)
{
    return std::min(remaining, longestLateness);
}

// Timers stand still while the computer sleeps, so no timer is trusted for long.
QCoro::Task<> ContinuousPause::lastFor(std::chrono::milliseconds time)
{
    m_isInterrupted = false;
    const std::chrono::milliseconds end = m_now() + time;
    while (!m_isInterrupted && m_now() < end)
        co_await qCoro(this, &ContinuousPause::interrupted, step(end - m_now()));
}

void ContinuousPause::interrupt()
{
    m_isInterrupted = true;
    Q_EMIT interrupted();
}

} // namespace mirel
