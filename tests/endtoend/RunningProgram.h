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

// The bytes of a file; empty when it cannot be read.
[[nodiscard]] QByteArray contentsOf(const QString& path);

// Runs a program to its end.
[[nodiscard]] ProgramResult runProgram(const QString& program, const QStringList& arguments,
                                       const QProcessEnvironment& environment, const QByteArray& input = {});

// Waits for a program that was started to end; it is killed after two minutes.
[[nodiscard]] ProgramResult finish(QProcess& process);

// A program that runs while the test goes on. It is killed at the end.
class RunningProgram
{
public:
    RunningProgram(const QString& path, const QStringList& arguments, const QProcessEnvironment& environment);
    ~RunningProgram();
    Q_DISABLE_COPY_MOVE(RunningProgram)

    // The next line of standard output; empty when it ended.
    [[nodiscard]] QString line();
    // Waits for text on standard error. Returns whether it came.
    [[nodiscard]] bool says(const QByteArray& text);

    void write(const QByteArray& line) { writePart(line + '\n'); }
    void writePart(const QByteArray& ofLine);
    void endInput() { m_process.closeWriteChannel(); }
    // Whether all that was written has been read.
    [[nodiscard]] bool hasReadItsInput() const;

    void interrupt() const;
    void terminate() { m_process.terminate(); }
    [[nodiscard]] ProgramResult finish();

    // Neither ended nor crashed up to now.
    [[nodiscard]] bool isRunning();
    [[nodiscard]] bool hasOpened(const QString& path) const;
    // What every user of the machine and the user's other programs can see of it: its arguments, and the
    // environment that it was started with.
    [[nodiscard]] QByteArray visibleParts() const;

private:
    [[nodiscard]] QString aboutIt(const QString& what) const;

    QProcess m_process;
    QByteArray m_errors;
};

} // namespace mirel::testing
