#pragma once

#include "model/MirelAppModel.h"
#include "model/Pause.h"

namespace mirel {

// Asks every quarter of an hour whether a sync is due, for as long as the window stands. Lives on the main
// thread.
class SyncChecks
{
public:
    static constexpr std::chrono::seconds period{900};

    // `model` and `pause` outlive the checks.
    SyncChecks(MirelAppModel& model, Pause& pause);

    // Pauses and asks, in turn, and returns after end(), when what was asked for last has been done.
    QCoro::Task<> run();

    // Interrupts the pause. As after any interruption, the question is asked once more.
    void end();

    [[nodiscard]] bool hasEnded() const { return m_hasEnded; }

private:
    MirelAppModel& m_model;
    Pause& m_pause;
    bool m_hasEnded = false;
};

} // namespace mirel
