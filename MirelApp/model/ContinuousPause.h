#pragma once

#include "model/Pause.h"

#include <QObject>

#include <functional>

namespace mirel {

// Pauses on the continuous clock: what the computer sleeps counts. After a sleep the end of a pause is
// noticed within `longestLateness`.
class ContinuousPause : public QObject, public Pause
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds longestLateness{30'000};

    using Clock = std::function<std::chrono::milliseconds()>;

    // `now` never goes back.
    explicit ContinuousPause(Clock now = systemClock(), QObject* parent = nullptr);

    [[nodiscard]] QCoro::Task<> lastFor(std::chrono::milliseconds time) override;
    void interrupt() override;

    // The time until the clock is looked at again.
    [[nodiscard]] static std::chrono::milliseconds step(std::chrono::milliseconds remaining);

Q_SIGNALS:
    void interrupted();

private:
    [[nodiscard]] static Clock systemClock();

    Clock m_now;
    bool m_isInterrupted = false;
};

} // namespace mirel
