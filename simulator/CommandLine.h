#pragma once

#include "simulator/Scenario.h"
#include "simulator/SimulatorOptions.h"

#include <QStringList>

#include <optional>

namespace mirel::simulator {

// What the arguments of mirel-simulator ask for.
struct CommandLine
{
    SimulatorOptions options;
    std::optional<Scenario> scenario;
    // To be printed instead of running: the help or the version.
    QString notice;

    // `arguments` begin with the name of the program. Throws SimulatorError when they cannot be followed or
    // the scenario file cannot be used.
    [[nodiscard]] static CommandLine parse(const QStringList& arguments);
};

} // namespace mirel::simulator
