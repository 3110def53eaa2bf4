#include "simulator/ScenarioPlayer.h"

namespace mirel::simulator {

void ScenarioPlayer::setScenario(const Scenario& scenario)
{
    m_scenario = scenario;
    m_counts = QList<int>(scenario.faults.size(), 0);
}

QList<Fault> ScenarioPlayer::next(const QByteArray& method, const QByteArray& path)
{
    QList<Fault> active;
    for (qsizetype i = 0; i < m_scenario.faults.size(); ++i) {
        const Fault& fault = m_scenario.faults.at(i);
        if (!fault.method.isEmpty() && fault.method != QLatin1StringView(method))
            continue;
        if (!fault.path.match(QString::fromLatin1(path)).hasMatch())
            continue;
        if (fault.requests.contains(++m_counts[i]))
            active.append(fault);
    }
    return active;
}

} // namespace mirel::simulator
