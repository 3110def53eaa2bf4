#include "simulator/SimulatorError.h"

namespace mirel {

SimulatorError::SimulatorError(Case errorCase, QString detail)
    : m_case(errorCase)
    , m_detail(std::move(detail))
{
}

QString SimulatorError::description() const
{
    switch (m_case) {
    case Case::InvalidScenario:
        return QStringLiteral("The scenario cannot be used: %1").arg(m_detail);
    case Case::InvalidArgument:
        return m_detail;
    case Case::PortUnavailable:
        return QStringLiteral("The simulator cannot listen: %1").arg(m_detail);
    }
    Q_UNREACHABLE();
}

} // namespace mirel
