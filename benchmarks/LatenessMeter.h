#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace mirel {

// How long the thread that made it is busy at a stretch: a timer of 2 ms notes by how much it comes late.
class LatenessMeter : public QObject
{
public:
    LatenessMeter()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            m_lateness.push_back(static_cast<double>(m_sinceLast.nsecsElapsed()) / 1e6 - interval.count());
            m_sinceLast.restart();
        });
        m_sinceLast.start();
        m_timer.start(interval);
    }

    void report()
    {
        std::sort(m_lateness.begin(), m_lateness.end());
        const auto at = [this](double share) {
            return m_lateness[static_cast<std::size_t>(share * static_cast<double>(m_lateness.size() - 1))];
        };
        std::printf("main thread late by: median %.1f ms, 99 %% %.1f ms, 99.9 %% %.1f ms, most %.1f ms "
                    "(%zu readings)\n",
                    at(0.5), at(0.99), at(0.999), at(1), m_lateness.size());
    }

private:
    static constexpr std::chrono::milliseconds interval{2};

    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    std::vector<double> m_lateness;
};

} // namespace mirel
