#pragma once

#include "simulator/Fault.h"

namespace mirel {

// What goes wrong while the simulator runs. The default has no faults. README.md describes the JSON form.
struct Scenario
{
    // Added to every answer of the X API.
    int delayMilliseconds = 0;
    int accessTokenLifetimeSeconds = 7200;
    QList<Fault> faults;

    // Throws SimulatorError, naming the place, when a key or a value is not known.
    [[nodiscard]] static Scenario fromJSON(const QByteArray& json);
};

} // namespace mirel
