#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>

namespace mirel::testing {

// What a program left when it ended.
struct ProgramResult
{
    // -1 when a signal ended it, or when it did not end or start at all.
    int exitStatus = -1;
    QByteArray output;
    QByteArray errors;
};

// The executables of this build.
namespace programs {
inline const QString application = QStringLiteral(MIREL_APPLICATION);
inline const QString mirelctl = QStringLiteral(MIREL_MIRELCTL);
inline const QString simulator = QStringLiteral(MIREL_SIMULATOR);
} // namespace programs

// The environment of this process with a plain locale and time zone, and without anything that names the
// user's library, keyring or network.
[[nodiscard]] QProcessEnvironment plainEnvironment();

// Runs a program to its end.
[[nodiscard]] ProgramResult runProgram(const QString& program, const QStringList& arguments,
                                       const QProcessEnvironment& environment, const QByteArray& input = {});

// Waits for a program that was started to end; it is killed after two minutes.
[[nodiscard]] ProgramResult finish(QProcess& process);

} // namespace mirel::testing
