#include "EndToEndTest.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QThread>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

namespace mirel::testing {
namespace {

// Three pages, and some time between them.
constexpr int posts = 101;
constexpr const char* slowX = R"({"delayMilliseconds":20})";

int numberFromEnvironment(const char* name, int otherwise)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? number : otherwise;
}

// Over all tests of this file.
int moments()
{
    return numberFromEnvironment("MIREL_KILL_MOMENTS", 200);
}

// A terminal that shows the errors of a program.
class Terminal
{
public:
    Terminal()
    {
        if (openpty(&m_ends[0], &m_ends[1], nullptr, nullptr, nullptr) != 0)
            throw std::runtime_error("no pseudo terminal");
        for (const int end : m_ends)
            fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(m_ends[0], F_SETFL, O_NONBLOCK);
    }
    ~Terminal()
    {
        for (const int end : m_ends)
            close(end);
    }
    Q_DISABLE_COPY_MOVE(Terminal)

    void showErrorsOf(QProcess& process)
    {
        process.setChildProcessModifier([descriptor = m_ends[1]] { dup2(descriptor, STDERR_FILENO); });
    }

    // What was shown so far.
    QByteArray shown()
    {
        std::array<char, 4096> buffer = {};
        for (;;) {
            const ssize_t count = read(m_ends[0], buffer.data(), buffer.size());
            if (count <= 0)
                return m_shown;
            m_shown.append(buffer.data(), count);
        }
    }

private:
    // The screen's and the program's.
    std::array<int, 2> m_ends{-1, -1};
    QByteArray m_shown;
};

// The number of posts that the last progress line reported.
qsizetype reportedBy(const QByteArray& shown)
{
    static const QRegularExpression line(QStringLiteral("Page \\d+: (\\d+) received"));
    qsizetype reported = 0;
    auto matches = line.globalMatch(QString::fromUtf8(shown));
    while (matches.hasNext())
        reported = matches.next().captured(1).toLongLong();
    return reported;
}

class KilledSync : public EndToEndTest, public ::testing::WithParamInterface<int>
{
protected:
    static constexpr int shares = 4;

    KilledSync()
        : EndToEndTest(posts)
    {
        simulator.setScenario(slowX);
    }

    [[nodiscard]] QProcessEnvironment environmentOf(const QTemporaryDir& place) const
    {
        QProcessEnvironment result = environment();
        result.insert(QStringLiteral("MIREL_LOCAL_DATA_DIR"), place.path());
        return result;
    }

    [[nodiscard]] ProgramResult sync(const QTemporaryDir& place) const
    {
        return runProgram(programs::mirelctl, arguments("sync --full"), environmentOf(place));
    }

    // Starts a sync and kills it after that time. Returns what it showed on its terminal.
    QByteArray killSync(const QTemporaryDir& place, unsigned long microseconds) const
    {
        Terminal terminal;
        QProcess process;
        terminal.showErrorsOf(process);
        process.setProcessEnvironment(environmentOf(place));
        process.start(programs::mirelctl, arguments("sync --full"));
        if (!process.waitForStarted())
            throw std::runtime_error("mirelctl did not start");
        QThread::usleep(microseconds);
        ::kill(static_cast<pid_t>(process.processId()), SIGKILL);
        process.waitForFinished();
        return terminal.shown();
    }

    // Expects the library to be whole and to hold all that the killed sync had reported. Returns whether the
    // kill met a sync that had reported something and had not ended.
    bool checkAfterKill(const LibraryFile& file, const QByteArray& shown) const
    {
        EXPECT_EQ(file.damage(), QStringList());
        if (file.column("SELECT name FROM sqlite_schema WHERE name = 'sync_log_entries'").isEmpty()) {
            EXPECT_EQ(reportedBy(shown), 0);
            return false;
        }
        const QStringList logged = file.column(
            "SELECT coalesce(max(cumulative), 0) FROM sync_log_entries WHERE sync_run_id = (SELECT "
            "max(id) FROM sync_runs)");
        const qsizetype reported = std::max<qsizetype>(logged.value(0).toLongLong(), reportedBy(shown));
        EXPECT_TRUE(file.postIDs().contains(newestPosts(reported)));
        const QStringList status = file.column("SELECT status FROM sync_runs ORDER BY id DESC LIMIT 1");
        return reported > 0 && status.value(0) == u"running";
    }
};

TEST_P(KilledSync, LeavesALibraryThatIsWholeAndGoesOn)
{
    const auto seed = static_cast<quint32>(numberFromEnvironment("MIREL_KILL_SEED", 1) + GetParam());
    QRandomGenerator random(seed);
    const int rounds = (moments() + shares - 1 - GetParam()) / shares;
    auto place = std::make_unique<QTemporaryDir>();
    QElapsedTimer timer;
    timer.start();
    ASSERT_EQ(sync(*place).exitStatus, 0);
    const qint64 duration = timer.nsecsElapsed() / 1'000;
    int inTheMiddle = 0;
    for (int round = 0; round < rounds; ++round) {
        // Every other kill meets a library that is not there yet.
        if (round % 2 == 0)
            place = std::make_unique<QTemporaryDir>();
        const qint64 moment = random.bounded(duration);
        SCOPED_TRACE(::testing::Message()
                     << "seed " << seed << ", round " << round << ", after " << moment << " microseconds");
        const QByteArray shown = killSync(*place, static_cast<unsigned long>(moment));
        const QString path = place->filePath(QStringLiteral("mirel.sqlite3"));
        if (QFile::exists(path) && checkAfterKill(LibraryFile(path), shown))
            ++inTheMiddle;
        const ProgramResult next = sync(*place);
        ASSERT_EQ(next.exitStatus, 0) << next.errors.constData();
        ASSERT_EQ(LibraryFile(path).postIDs(), allPosts());
        ASSERT_EQ(LibraryFile(path).damage(), QStringList());
        if (HasFailure())
            return;
    }
    // With so few rounds that it says nothing, it is not asked.
    if (rounds >= 20) {
        EXPECT_GT(inTheMiddle, 0);
    }
    std::printf("%d of %d kills met a sync between its first page and its end.\n", inTheMiddle, rounds);
}

INSTANTIATE_TEST_SUITE_P(Shares, KilledSync, ::testing::Range(0, 4));

} // namespace
} // namespace mirel::testing
