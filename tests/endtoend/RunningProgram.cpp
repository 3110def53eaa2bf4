#include "RunningProgram.h"

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

} // namespace mirel::testing
