#include "StatementTimes.h"
#include "library/LocalLibraryStore.h"

#include <QFile>

#include <sqlite3.h>

#include <cstdio>

namespace mirel {
namespace {

void print(const char* name, Duration duration)
{
    std::printf("%-60s %9.1f ms\n", name, duration.count() * 1e3);
}

// What Linux says of this process under `key`, in MB.
double memory(const QByteArray& key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QFile::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(key + ':'))
            return line.mid(key.size() + 1).simplified().split(' ').first().toDouble() / 1000;
    }
    return 0;
}

// What creates tables, of which there are many, as one step.
void printSteps(const QList<StatementTime>& steps, Duration total)
{
    Duration creations{0};
    Duration measured{0};
    for (const StatementTime& step : steps) {
        measured += step.total;
        if (step.sql.startsWith("CREATE "))
            creations += step.total;
        else
            print(step.sql.left(60).constData(), step.total);
    }
    print("CREATE ... IF NOT EXISTS, all of them", creations);
    print("opening the file, preparing statements", total - measured);
    print("all in all", total);
}

void run(const QString& directory)
{
    const double before = memory("VmRSS");
    StatementTimes::install();
    StatementTimes::start();
    const auto start = std::chrono::steady_clock::now();
    LocalLibraryStore library(directory + QStringLiteral("/mirel.sqlite3"));
    const Duration total = std::chrono::steady_clock::now() - start;
    const QList<StatementTime> steps = StatementTimes::stop();
    const double after = memory("VmRSS");
    const double peak = memory("VmHWM");
    printSteps(steps, total);
    std::printf("%lld posts; memory before %.1f MB, after %.1f MB, at most %.1f MB\n",
                static_cast<long long>(library.libraryCounts().all), before, after, peak);
}

} // namespace
} // namespace mirel

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("Usage: open-benchmark DIRECTORY\n"
                   "Opens the library in DIRECTORY and tells how long each step of that took.\n",
                   stderr);
        return EXIT_FAILURE;
    }
    try {
        mirel::run(QFile::decodeName(arguments[1]));
        return EXIT_SUCCESS;
    } catch (...) {
        std::fprintf(stderr, "open-benchmark: %s\n", qPrintable(mirel::describe(std::current_exception())));
        return EXIT_FAILURE;
    }
}
