#include "mirelctl/Program.h"

#include "mirelctl/CommandError.h"
#include "mirelctl/CommandLine.h"
#include "mirelctl/StandardStreams.h"
#include "mirelctl/TextOutput.h"
#include "model/Demo.h"
#include "support/MirelPaths.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <cstdlib>

namespace mirel {

namespace {

using namespace std::chrono_literals;

LiveOptions liveOptions(const CommandLine& commandLine)
{
    if (commandLine.dataDirectory)
        qputenv("MIREL_LOCAL_DATA_DIR", commandLine.dataDirectory->toUtf8());
    LiveOptions options = commandLine.demo ? Demo::liveOptions() : LiveOptions();
    // The command prints the page.
    options.openPage = [](const QUrl&, const std::function<void()>&) { return true; };
    return options;
}

// Returns whether the model came to rest soon.
bool shutDownSoon(MirelAppModel& model)
{
    QEventLoop loop;
    bool isIdle = false;
    const auto end = [](MirelAppModel* ending, bool* isDone, QPointer<QEventLoop> waiting) -> QCoro::Task<> {
        co_await ending->shutDown();
        if (!waiting)
            co_return;
        *isDone = true;
        waiting->quit();
    };
    end(&model, &isIdle, &loop);
    if (!isIdle) {
        QTimer::singleShot(2s, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return isIdle;
}

CommandSurroundings surroundingsOf(const CommandLine& commandLine, const QProcessEnvironment& environment)
{
    CommandSurroundings surroundings{.json = commandLine.json,
                                     .columns = standardStreams::outputColumns(),
                                     .environment = environment,
                                     .libraryPath = MirelPaths::databasePath()};
    surroundings.remark = [](const QString& sentence) {
        standardStreams::writeError(oneLine(sentence).toUtf8() + '\n');
    };
    surroundings.print = standardStreams::writeOutput;
    if (standardStreams::isErrorTerminal())
        surroundings.showProgress = standardStreams::writeError;
    return surroundings;
}

int report(const std::exception_ptr& failure)
{
    standardStreams::writeError("mirelctl: " + oneLine(describe(failure)).toUtf8() + '\n');
    return EXIT_FAILURE;
}

// What `command` does, told by its output and the exit status.
template <typename Operation>
int runAndReport(Operation operation)
{
    try {
        standardStreams::writeOutput(operation());
        return EXIT_SUCCESS;
    } catch (...) {
        return report(std::current_exception());
    }
}

template <typename SomeCommand>
constexpr bool searches =
    std::is_same_v<SomeCommand, SearchCommand> || std::is_same_v<SomeCommand, CountCommand>;

template <typename SomeCommand>
int execute(const SomeCommand& command, const CommandLine& commandLine,
            const QProcessEnvironment& environment)
{
    LiveOptions options = liveOptions(commandLine);
    if constexpr (searches<SomeCommand>)
        options.searchPreparation = SearchPreparation::whileOpening;
    const auto model = MirelAppModel::live(options);
    const int status =
        runAndReport([&] { return command.run(*model, surroundingsOf(commandLine, environment)); });
    // A keyring that waits for its user can be waited for, but not be ended. The library is safe at any time.
    if (!shutDownSoon(*model))
        std::_Exit(status);
    return status;
}

int execute(const HelpCommand&, const CommandLine&, const QProcessEnvironment&)
{
    return runAndReport([] { return helpText().toUtf8(); });
}

int execute(const VersionCommand&, const CommandLine&, const QProcessEnvironment&)
{
    return runAndReport([] { return "mirelctl " + QCoreApplication::applicationVersion().toUtf8() + '\n'; });
}

} // namespace

int runProgram(const QStringList& arguments, const QProcessEnvironment& environment)
{
    try {
        const CommandLine commandLine = parseCommandLine(arguments);
        return std::visit([&](const auto& command) { return execute(command, commandLine, environment); },
                          commandLine.command);
    } catch (...) {
        return report(std::current_exception());
    }
}

} // namespace mirel
