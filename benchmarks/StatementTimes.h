#pragma once

#include "Timing.h"

#include <QByteArray>
#include <QList>

namespace mirel {

// One statement, or several with the same text.
struct StatementTime
{
    QByteArray sql;
    Duration total{0};
    qint64 runs = 0;
};

// Measures the statements of every SQLite connection that is opened while the program runs, from the first
// step to the end of the statement; what a statement does inside, as a trigger or as part of the text index,
// counts as its own. The checkpoints that SQLite makes after a commit stand under the text "checkpoint". For
// one connection at a time; begun and ended while no statement runs.
class StatementTimes
{
public:
    // To be called before the first connection is opened. Until start() nothing is measured.
    static void install();

    static void start();

    // Ends the measuring. The texts in the order in which they came first.
    [[nodiscard]] static QList<StatementTime> stop();
};

} // namespace mirel
