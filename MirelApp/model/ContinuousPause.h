#pragma once

#include "model/Pause.h"

#include <QPromise>
#include <QTimer>

#include <functional>

namespace mirel {

// Pauses on the continuous clock: what the computer sleeps counts. After a sleep the end of a pause is
// noticed within `longestLateness`.
class ContinuousPause : public Pause
{
public:
    static constexpr std::chrono::milliseconds longestLateness{30'000};

    using Clock = std::function<std::chrono::milliseconds()>;

    // `now` never goes back.
    explicit ContinuousPause(Clock now = systemClock());

    [[nodiscard]] QCoro::Task<> lastFor(std::chrono::milliseconds time) override;
    void interrupt() override;

    // The time until the clock is looked at again.
    [[nodiscard]] static std::chrono::milliseconds step(std::chrono::milliseconds remaining);

private:
    [[nodiscard]] static Clock systemClock();
    void look();

    Clock m_now;
    std::chrono::milliseconds m_end{0};
    QTimer m_timer;
    QPromise<void> m_passing;
};

} // namespace mirel
