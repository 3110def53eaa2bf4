#include "RunningProgram.h"

#include <QDir>
#include <QFile>

#include <csignal>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace mirel::testing {

QProcessEnvironment plainEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : environment.keys()) {
        if (name.startsWith(u"MIREL_") || name.startsWith(u"LC_") ||
            name.endsWith(u"_proxy", Qt::CaseInsensitive) || name == u"LANGUAGE")
            environment.remove(name);
    }
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    return environment;
}

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ProgramResult finish(QProcess& process)
{
    static constexpr int patience = 120'000;
    ProgramResult result;
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        result.exitStatus = process.exitCode();
    }
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

ProgramResult runProgram(const QString& program, const QStringList& arguments,
                         const QProcessEnvironment& environment, const QByteArray& input)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    return finish(process);
}

RunningProgram::RunningProgram(const QString& path, const QStringList& arguments,
                               const QProcessEnvironment& environment)
{
    m_process.setProcessEnvironment(environment);
    m_process.start(path, arguments);
    m_process.waitForStarted();
}

RunningProgram::~RunningProgram()
{
    m_process.kill();
    m_process.waitForFinished();
}

QString RunningProgram::line()
{
    while (!m_process.canReadLine() && m_process.waitForReadyRead(60'000)) {
    }
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

bool RunningProgram::says(const QByteArray& text)
{
    m_process.setReadChannel(QProcess::StandardError);
    while (!m_errors.contains(text)) {
        if (m_process.bytesAvailable() == 0 && !m_process.waitForReadyRead(60'000))
            break;
        m_errors += m_process.readAllStandardError();
    }
    m_process.setReadChannel(QProcess::StandardOutput);
    return m_errors.contains(text);
}

void RunningProgram::writePart(const QByteArray& ofLine)
{
    m_process.write(ofLine);
    m_process.waitForBytesWritten();
}

bool RunningProgram::hasReadItsInput() const
{
    const int input = ::open(aboutIt(QStringLiteral("fd/0")).toUtf8().constData(), O_RDONLY | O_NONBLOCK);
    int unread = -1;
    ::ioctl(input, FIONREAD, &unread);
    ::close(input);
    return unread == 0;
}

void RunningProgram::interrupt() const
{
    ::kill(static_cast<pid_t>(m_process.processId()), SIGINT);
}

ProgramResult RunningProgram::finish()
{
    ProgramResult result = testing::finish(m_process);
    result.errors.prepend(m_errors);
    return result;
}

bool RunningProgram::isRunning()
{
    // Without it, the end is only noticed by an event loop.
    m_process.waitForFinished(0);
    return m_process.state() == QProcess::Running;
}

bool RunningProgram::hasOpened(const QString& path) const
{
    const QDir descriptors(aboutIt(QStringLiteral("fd")));
    const QStringList names = descriptors.entryList(QDir::Files | QDir::System);
    return std::any_of(names.begin(), names.end(), [&](const QString& name) {
        return QFile::symLinkTarget(descriptors.filePath(name)) == path;
    });
}

QByteArray RunningProgram::visibleParts() const
{
    return contentsOf(aboutIt(QStringLiteral("cmdline"))) + contentsOf(aboutIt(QStringLiteral("environ")));
}

QString RunningProgram::aboutIt(const QString& what) const
{
    return QStringLiteral("/proc/%1/%2").arg(m_process.processId()).arg(what);
}

} // namespace mirel::testing
