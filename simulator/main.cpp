#include "simulator/CommandLine.h"
#include "simulator/Simulator.h"
#include "simulator/SimulatorError.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// A signal handler may do next to nothing, so it writes a byte that the event loop reads.
int signalPipe[2];

void handleSignal(int)
{
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
}

void quitOnSignals(QCoreApplication& application)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPipe) != 0)
        qFatal("No socket pair for signals.");
    auto* const notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    std::signal(SIGTERM, handleSignal);
    std::signal(SIGINT, handleSignal);
}

void print(FILE* stream, const QString& text)
{
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

int run(QCoreApplication& application)
{
    const auto commandLine = mirel::simulator::CommandLine::parse(application.arguments());
    if (!commandLine.notice.isEmpty()) {
        print(stdout, commandLine.notice);
        return 0;
    }
    quitOnSignals(application);
    mirel::Simulator simulator(commandLine.options);
    simulator.listen();
    if (commandLine.scenario)
        simulator.setScenario(*commandLine.scenario);
    print(stdout, QStringLiteral("Simulating X at %1\n").arg(simulator.apiURL().toString()));
    return application.exec();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("mirel-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MIREL_VERSION));
    try {
        return run(application);
    } catch (const mirel::Error& error) {
        print(stderr, QStringLiteral("mirel-simulator: %1\n").arg(error.description()));
        return 1;
    }
}
