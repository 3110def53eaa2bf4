#pragma once

#include "simulator/Scenario.h"

namespace mirel::simulator {

// Counts requests and tells which faults meet each of them.
class ScenarioPlayer
{
public:
    // Begins to count anew.
    void setScenario(const Scenario& scenario);
    [[nodiscard]] const Scenario& scenario() const { return m_scenario; }

    // Counts one request and returns the faults that apply to it, in the scenario's order.
    [[nodiscard]] QList<Fault> next(const QByteArray& method, const QByteArray& path);

private:
    Scenario m_scenario;
    // How many requests each fault has seen.
    QList<int> m_counts;
};

} // namespace mirel::simulator
