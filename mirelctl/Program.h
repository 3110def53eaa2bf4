#pragma once

#include <QStringList>

namespace mirel {

// Does what the arguments after the program's name ask for. Returns the exit status: 0, or 1 after one
// sentence on standard error. Needs a QCoreApplication.
[[nodiscard]] int runProgram(const QStringList& arguments);

} // namespace mirel
