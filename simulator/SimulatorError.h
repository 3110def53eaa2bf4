#pragma once

#include "support/Error.h"

#include <QString>

namespace mirel {

// Why the simulator cannot start or does not take a scenario.
class SimulatorError : public Error
{
public:
    enum class Case { InvalidScenario, InvalidArgument, PortUnavailable };

    SimulatorError(Case errorCase, QString detail);

    [[nodiscard]] Case errorCase() const { return m_case; }
    [[nodiscard]] QString description() const override;

private:
    Case m_case;
    QString m_detail;
};

} // namespace mirel
