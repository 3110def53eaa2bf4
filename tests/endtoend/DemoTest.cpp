#include "EndToEndTest.h"

#include "library/LibraryFilter.h"
#include "records/Bookmark.h"
#include "records/LibrarySummaries.h"
#include "records/SyncRun.h"
#include "x/BookmarkSyncRecords.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <csignal>

namespace mirel::testing {
namespace {

using Demo = EndToEndTest;

TEST_F(Demo, SyncsListsShowsAndTellsItsStatus)
{
    expectSuccess(mirelctl("sync"), "Quick sync checked 120 recent bookmarks across 3 page(s), 120 new.\n");
    expectSuccess(mirelctl("sync"), "Quick sync checked 50 recent bookmarks across 1 page(s), 0 new.\n");
    expectSuccess(mirelctl("sync --full"),
                  "Full sync checked every page X made available: 120 bookmarks across 3 page(s), 0 new.\n");
    EXPECT_EQ(library().postIDs(), allPosts());
    EXPECT_EQ(library().column("SELECT kind FROM sync_runs ORDER BY id"),
              QStringList({QStringLiteral("initial"), QStringLiteral("manual"), QStringLiteral("manual")}));
    EXPECT_EQ(simulator.problems(), QJsonArray());

    const ProgramResult list = mirelctl("list --limit 7");
    EXPECT_EQ(list.exitStatus, 0);
    EXPECT_EQ(list.output.count('\n'), 7);
    const ProgramResult status = mirelctl("status");
    EXPECT_EQ(status.exitStatus, 0);
    const qsizetype filed = library().rows("SELECT bookmark_id FROM bookmark_folders").size();
    EXPECT_GT(filed, 0) << "the full sync brought the folders";
    EXPECT_TRUE(status.output.contains("Bookmarks   120 (inbox " + QByteArray::number(120 - filed) + ','))
        << status.output.constData();
    EXPECT_TRUE(status.output.contains("X           connected\n")) << status.output.constData();
    const QString id = simulator.accountIDs().first();
    const ProgramResult shown = mirelctl("show " + id.toUtf8());
    EXPECT_EQ(shown.exitStatus, 0);
    EXPECT_TRUE(shown.output.contains("/status/" + id.toUtf8())) << shown.output.constData();
}

TEST_F(Demo, GivesMachinesOneDocumentEach)
{
    const auto summary = decodeJSON<BookmarkSyncSummary>(mirelctl("sync --json").output);
    EXPECT_EQ(summary.created, 120);
    EXPECT_EQ(summary.createdBookmarkIDs.size(), 120);
    EXPECT_TRUE(summary.reachedRemoteEnd);

    const auto bookmarks = decodeJSON<QList<Bookmark>>(mirelctl("--json list --limit 1000").output);
    QSet<QString> listed;
    for (const Bookmark& bookmark : bookmarks)
        listed.insert(bookmark.tweetID);
    EXPECT_EQ(listed, allPosts());
    for (qsizetype i = 1; i < bookmarks.size(); ++i)
        EXPECT_GE(bookmarks[i - 1].createdAt.secondsSince1970(), bookmarks[i].createdAt.secondsSince1970());

    const auto shown = decodeJSON<Bookmark>(mirelctl("show --json " + bookmarks[0].tweetID.toUtf8()).output);
    EXPECT_TRUE(shown == bookmarks[0]);

    const QJsonObject status = parseJSON(mirelctl("status --json").output).toObject();
    EXPECT_EQ(fromJSON<LibraryCounts>(status[u"counts"]).all, 120);
    EXPECT_EQ(fromJSON<SyncRun>(status[u"lastRun"]).status, SyncRun::Status::completed);
    EXPECT_EQ(status[u"libraryPath"].toString(), directory.filePath(QStringLiteral("mirel.sqlite3")));
    EXPECT_TRUE(status[u"xConfigured"].toBool());
}

TEST_F(Demo, ListAndShowAskNobody)
{
    EXPECT_EQ(mirelctl("sync").exitStatus, 0);
    simulator.forgetRequests();
    EXPECT_EQ(mirelctl("list").exitStatus, 0);
    EXPECT_EQ(mirelctl("show " + simulator.accountIDs().first().toUtf8()).exitStatus, 0);
    EXPECT_EQ(simulator.requests(), QJsonArray());
}

TEST_F(Demo, StatusSaysWhenXCannotBeReached)
{
    QProcessEnvironment offline = environment();
    // Nothing listens on the port of discarded messages.
    offline.insert(QStringLiteral("MIREL_X_API_URL"), QStringLiteral("http://127.0.0.1:9/2"));
    const ProgramResult status = runProgram(programs::mirelctl, arguments("status"), offline);
    EXPECT_EQ(status.exitStatus, 0);
    EXPECT_TRUE(status.output.endsWith("X           not connected, or not reachable at the moment\n"))
        << status.output.constData();
    expectFailure(runProgram(programs::mirelctl, arguments("sync"), offline),
                  "The connection to 127.0.0.1 failed. Check the network and try again.");
}

TEST_F(Demo, TakesItsLibraryFromTheCommandLine)
{
    const QTemporaryDir elsewhere;
    EXPECT_EQ(mirelctl("--data-dir " + elsewhere.path().toUtf8() + " sync").exitStatus, 0);
    EXPECT_FALSE(QFile::exists(directory.filePath(QStringLiteral("mirel.sqlite3"))));
    EXPECT_EQ(LibraryFile(elsewhere.filePath(QStringLiteral("mirel.sqlite3"))).postIDs(), allPosts());
}

TEST_F(Demo, IsRefusedWithoutASimulator)
{
    QProcessEnvironment bare = environment();
    bare.remove(QStringLiteral("MIREL_X_API_URL"));
    expectFailure(runProgram(programs::mirelctl, arguments("sync"), bare),
                  "The demo needs a running mirel-simulator and its address in MIREL_X_API_URL.");
}

TEST_F(Demo, IsRefusedWhenTheSimulatorIsOnAnotherComputer)
{
    QProcessEnvironment foreign = environment();
    foreign.insert(QStringLiteral("MIREL_X_API_URL"), QStringLiteral("http://simulator.example/2"));
    expectFailure(runProgram(programs::mirelctl, arguments("sync"), foreign),
                  "MIREL_X_API_URL is set to an address that is not on this computer. It is meant for a "
                  "simulator and must name localhost, 127.0.0.1 or ::1. Remove it to use X.");
}

TEST_F(Demo, AReaderThatHasEnoughIsNoFailure)
{
    EXPECT_EQ(mirelctl("sync").exitStatus, 0);
    const ProgramResult piped = runProgram(
        QStringLiteral("bash"),
        {QStringLiteral("-c"), QStringLiteral("set -o pipefail; \"$0\" list --json --limit 500 | head -c 5"),
         programs::mirelctl},
        environment());
    EXPECT_EQ(piped.exitStatus, 0);
    EXPECT_EQ(piped.output.size(), 5);
    EXPECT_EQ(piped.errors, "");
}

TEST_F(Demo, OutputThatCannotBeWrittenIsAFailure)
{
    const ProgramResult full = runProgram(
        QStringLiteral("bash"),
        {QStringLiteral("-c"), QStringLiteral("\"$0\" list > /dev/full"), programs::mirelctl}, environment());
    expectFailure(full, "The output could not be written: No space left on device.");
}

TEST_F(Demo, ALibraryThatIsNoneIsLeftAsItIs)
{
    const QByteArray content(5'000, 'x');
    QFile file(directory.filePath(QStringLiteral("mirel.sqlite3")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    for (const char* command : {"status", "sync", "list", "show 1"}) {
        const ProgramResult result = mirelctl(command);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.startsWith("mirelctl: Local library command failed: ") ||
                    result.errors.startsWith("mirelctl: Could not open the local library: "))
            << result.errors.constData();
        EXPECT_EQ(result.errors.count('\n'), 1);
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), content);
}

TEST_F(Demo, AnInterruptedSyncIsRecordedAsFailed)
{
    simulator.setScenario(
        R"({"faults":[{"action":"none","requests":{"from":2},"delayMilliseconds":600000}]})");
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(programs::mirelctl, arguments("sync"));
    ASSERT_TRUE(process.waitForStarted());
    QElapsedTimer waited;
    waited.start();
    // The first page is in, so the request for the second one is on its way.
    while (waited.elapsed() < 60'000 && simulator.requests().size() < 2)
        QThread::msleep(20);
    while (waited.elapsed() < 60'000 && lastLog().size() < 2)
        QThread::msleep(20);
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    expectFailure(finish(process), "The sync was interrupted; all that had arrived is in the library.");
    EXPECT_EQ(lastRun().value(0), QStringLiteral("failed"));
    EXPECT_EQ(lastRun().value(3), QStringLiteral("50"));
    EXPECT_EQ(lastLog().last().first(), QStringLiteral("failed"));
    EXPECT_EQ(library().postIDs(), newestPosts(50));
    simulator.setScenario();
    EXPECT_EQ(mirelctl("sync --full").exitStatus, 0);
    EXPECT_EQ(library().postIDs(), allPosts());
}

// An empty document saves nothing, so no keyring is asked.
TEST_F(Demo, TheImportSwitchCountsAsTheFirstArgumentWhateverFollows)
{
    const QStringList arguments{QStringLiteral("--import-credentials-stdin"), QStringLiteral("extra")};
    const ProgramResult result = runProgram(programs::application, arguments, environment(), "{}");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "{\"ok\":false,\"openAI\":false,\"x\":false}\n");
    EXPECT_EQ(result.errors, "");
}

} // namespace
} // namespace mirel::testing
