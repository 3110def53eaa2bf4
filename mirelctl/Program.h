#pragma once

#include <QProcessEnvironment>
#include <QStringList>

namespace mirel {

// Does what the arguments after the program's name ask for, with the environment that it was started in.
// Returns the exit status: 0, or 1 after one sentence on standard error. Needs a QCoreApplication.
[[nodiscard]] int runProgram(const QStringList& arguments, const QProcessEnvironment& environment);

} // namespace mirel
