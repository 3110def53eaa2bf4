#include "testing/Printing.h"

#include "x/MirelSyncBench.h"

#include "library/SQLiteStoreError.h"
#include "x/XAPIError.h"

#include <gmock/gmock.h>

namespace mirel {
namespace {

using testing::errorOf;
using testing::makePage;
using MirelSync = testing::MirelSyncBench;

TEST_F(MirelSync, ASyncLeavesOneCompletedRunAndItsStory)
{
    x.answer = [](int call) { return call == 0 ? makePage(1, 50, QStringLiteral("a")) : makePage(41, 60); };
    const BookmarkSyncSummary summary = sync(SyncRun::Kind::initial, BookmarkSyncMode::full);
    EXPECT_EQ(summary.fetched, 70);
    EXPECT_EQ(lastRun(), (SyncRun{.id = 1,
                                  .kind = SyncRun::Kind::initial,
                                  .status = SyncRun::Status::completed,
                                  .pages = 2,
                                  .fetched = 70,
                                  .created = 60,
                                  .updated = 10,
                                  .startedAt = library.clock.now(),
                                  .completedAt = library.clock.now(),
                                  .createdAt = library.clock.now()}));
    EXPECT_THAT(story(),
                ::testing::ElementsAre("started: Started full initial bookmark sync with 50-item X pages.",
                                       "page: Bookmark page 1", "page: Bookmark page 2",
                                       "completed: Completed full sync of 70 bookmarks across 2 pages."));
    const SyncLogEntry page =
        onStore([](LocalLibraryStore& it) { return it.syncLogEntries(1, 100); }).value(2);
    EXPECT_EQ(page.page, 2);
    EXPECT_EQ(page.requested, 50);
    EXPECT_EQ(page.received, 20);
    EXPECT_EQ(page.reported, 20);
    EXPECT_EQ(page.cumulative, 70);
    EXPECT_EQ(page.hasNextPage, false);
}

TEST_F(MirelSync, TheHistoryIsNeverBehindWhatTheCallerIsTold)
{
    x.answer = [](int call) {
        return makePage(call * 5 + 1, call * 5 + 5,
                        call == 2 ? std::nullopt : std::optional(QString::number(call)));
    };
    std::vector<qint64> recordedPages;
    blockOn(service.sync(
        SyncRun::Kind::manual, BookmarkSyncMode::full, [&](BookmarkSyncProgress progress) -> QCoro::Task<> {
            const auto row = connection->firstRow("SELECT pages, status FROM sync_runs");
            EXPECT_EQ(row->text("status"), QStringLiteral("running"));
            EXPECT_EQ(row->integer("pages"), progress.pages);
            recordedPages.push_back(static_cast<qint64>(connection
                                                            ->rows("SELECT id FROM sync_log_entries "
                                                                   "WHERE event = 'page'")
                                                            .size()));
            co_return;
        }));
    EXPECT_THAT(recordedPages, ::testing::ElementsAre(1, 2, 3));
}

TEST_F(MirelSync, A429OnPage3IsRecordedWithTwoPagesAndTheResetInstant)
{
    const Instant reset = Instant::fromSecondsSince1970(1'800'000'000);
    x.answer = [reset](int call) {
        if (call == 2)
            throw XAPIError::rateLimited(reset);
        return makePage(call * 50 + 1, call * 50 + 50, QString::number(call));
    };
    EXPECT_EQ(errorOf<XAPIError>([&] { sync(SyncRun::Kind::automatic, BookmarkSyncMode::incremental); }),
              XAPIError::rateLimited(reset));
    const SyncRun run = lastRun();
    EXPECT_EQ(run.status, SyncRun::Status::rateLimited);
    EXPECT_EQ(run.pages, 2);
    EXPECT_EQ(run.created, 100);
    EXPECT_EQ(run.rateLimitResetAt, reset);
    EXPECT_EQ(run.errorMessage, XAPIError::rateLimited(reset).description());
    EXPECT_EQ(run.completedAt, library.clock.now());
    EXPECT_THAT(story().back(), ::testing::StartsWith("failed: X rate limit reached until "));
}

TEST_F(MirelSync, A429WithoutAResetInstantIsRecordedWithoutOne)
{
    x.answer = [](int) -> XBookmarkPage { throw XAPIError::rateLimited({}); };
    errorOf<XAPIError>([&] { sync(SyncRun::Kind::manual, BookmarkSyncMode::incremental); });
    EXPECT_EQ(lastRun().status, SyncRun::Status::rateLimited);
    EXPECT_EQ(lastRun().rateLimitResetAt, std::nullopt);
    EXPECT_EQ(story().back(), "failed: X rate limit reached.");
}

TEST_F(MirelSync, AnyOtherFailureIsRecordedAsFailedWithItsText)
{
    x.answer = [](int call) {
        if (call == 1)
            throw XAPIError::http(503, QStringLiteral("Service Unavailable"));
        return makePage(1, 50, QStringLiteral("a"));
    };
    errorOf<XAPIError>([&] { sync(SyncRun::Kind::manual, BookmarkSyncMode::full); });
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().created, 50) << "what came in is counted";
    EXPECT_EQ(lastRun().errorMessage, QStringLiteral("X returned HTTP 503: Service Unavailable"));
    EXPECT_EQ(story().back(), "failed: X returned HTTP 503: Service Unavailable");
}

TEST_F(MirelSync, AFailureOfAnotherKindIsRecordedToo)
{
    x.answer = [](int) -> XBookmarkPage { throw std::out_of_range("odd"); };
    errorOf<std::out_of_range>([&] { sync(SyncRun::Kind::manual, BookmarkSyncMode::full); });
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().errorMessage, QStringLiteral("odd"));
}

TEST_F(MirelSync, ARunThatCannotBeCreatedFailsWithoutARun)
{
    connection->execute(
        "CREATE TRIGGER refuse BEFORE INSERT ON sync_runs BEGIN SELECT RAISE(ABORT, 'no'); END");
    errorOf<SQLiteStoreError>([&] { sync(SyncRun::Kind::manual, BookmarkSyncMode::full); });
    EXPECT_TRUE(x.calls.empty());
    EXPECT_TRUE(onStore([](LocalLibraryStore& it) { return it.syncRuns(10); }).isEmpty());
}

TEST_F(MirelSync, ARunThatCannotBeSetToRunningStaysQueued)
{
    connection->execute(
        "CREATE TRIGGER refuse BEFORE UPDATE ON sync_runs BEGIN SELECT RAISE(ABORT, 'no'); END");
    errorOf<SQLiteStoreError>([&] { sync(SyncRun::Kind::manual, BookmarkSyncMode::full); });
    EXPECT_TRUE(x.calls.empty());
    EXPECT_EQ(lastRun().status, SyncRun::Status::queued);
}

TEST_F(MirelSync, LostLinesOfHistoryDoNotEndTheSync)
{
    connection->execute(
        "CREATE TRIGGER refuse BEFORE INSERT ON sync_log_entries BEGIN SELECT RAISE(ABORT, 'no'); END;"
        "CREATE TRIGGER refuse_pages BEFORE UPDATE ON sync_runs WHEN new.pages > 0 AND new.status = "
        "'running' "
        "BEGIN SELECT RAISE(ABORT, 'no'); END;");
    x.answer = [](int) { return makePage(1, 5); };
    EXPECT_EQ(sync(SyncRun::Kind::manual, BookmarkSyncMode::full).created, 5);
    EXPECT_EQ(lastRun().status, SyncRun::Status::completed);
    EXPECT_EQ(lastRun().created, 5);
    EXPECT_TRUE(story().empty());
}

TEST_F(MirelSync, AFailingFinalUpdateMakesTheRunFail)
{
    connection->execute("CREATE TRIGGER refuse BEFORE UPDATE ON sync_runs WHEN new.status = 'completed' "
                        "BEGIN SELECT RAISE(ABORT, 'no'); END");
    x.answer = [](int) { return makePage(1, 5); };
    errorOf<SQLiteStoreError>([&] { sync(SyncRun::Kind::manual, BookmarkSyncMode::full); });
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().created, 5);
    EXPECT_EQ(storedCount(), 5);
}

TEST_F(MirelSync, AFailureWhoseRecordCannotBeWrittenStillReachesTheCaller)
{
    connection->execute("CREATE TRIGGER refuse BEFORE UPDATE ON sync_runs WHEN new.status = 'failed' "
                        "BEGIN SELECT RAISE(ABORT, 'no'); END");
    x.answer = [](int) -> XBookmarkPage { throw XAPIError::invalidResponse(); };
    EXPECT_EQ(errorOf<XAPIError>([&] { sync(SyncRun::Kind::manual, BookmarkSyncMode::full); }),
              XAPIError::invalidResponse());
    EXPECT_EQ(story().back(), "failed: X returned an unreadable response.");
}

} // namespace
} // namespace mirel
