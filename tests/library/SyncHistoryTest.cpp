#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include "library/SQLiteStoreError.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

class SyncHistory : public ::testing::Test
{
protected:
    SyncRun run(qint64 id)
    {
        for (const SyncRun& each : store->syncRuns(100)) {
            if (each.id == id)
                return each;
        }
        ADD_FAILURE() << "no run " << id;
        return {};
    }

    testing::TemporaryLibrary library;
    std::unique_ptr<LocalLibraryStore> store = library.open();
    std::unique_ptr<SQLiteConnection> connection = library.connect();
};

TEST_F(SyncHistory, ANewRunIsQueuedWithZeros)
{
    const SyncRun created = store->createSyncRun(SyncRun::Kind::automatic);
    EXPECT_EQ(created, (SyncRun{.id = 1,
                                .kind = SyncRun::Kind::automatic,
                                .status = SyncRun::Status::queued,
                                .createdAt = library.clock.now()}));
    EXPECT_EQ(run(created.id), created);
}

TEST_F(SyncHistory, TheStartStaysAtTheFirstRunningThroughAnyNumberOfPages)
{
    const qint64 id = store->createSyncRun(SyncRun::Kind::manual).id;
    library.clock.advance(1);
    const Instant started = library.clock.now();
    store->updateSyncRun(id, SyncRun::Status::running, 0, 0, 0, 0);
    for (qint64 page = 1; page <= 3; ++page) {
        library.clock.advance(1);
        store->updateSyncRun(id, SyncRun::Status::running, page, page * 50, page * 40, page * 10);
    }
    EXPECT_EQ(run(id).startedAt, started);
    EXPECT_EQ(run(id).completedAt, std::nullopt) << "running leaves it";
    EXPECT_EQ(run(id).pages, 3);
    EXPECT_EQ(run(id).fetched, 150);
    EXPECT_EQ(run(id).created, 120);
    EXPECT_EQ(run(id).updated, 30);
}

TEST_F(SyncHistory, EveryFinalStatusSetsTheCompletion)
{
    for (const SyncRun::Status status :
         {SyncRun::Status::completed, SyncRun::Status::rateLimited, SyncRun::Status::failed}) {
        const qint64 id = store->createSyncRun(SyncRun::Kind::manual).id;
        library.clock.advance(1);
        store->updateSyncRun(id, status, 1, 2, 3, 4, QStringLiteral("why"), Instant::fromSecondsSince1970(9));
        EXPECT_EQ(run(id).status, status);
        EXPECT_EQ(run(id).completedAt, library.clock.now());
        EXPECT_EQ(run(id).errorMessage, QStringLiteral("why"));
        EXPECT_EQ(run(id).rateLimitResetAt, Instant::fromSecondsSince1970(9));
    }
}

TEST_F(SyncHistory, UpdatingWithAbsentValuesClearsMessageAndReset)
{
    const qint64 id = store->createSyncRun(SyncRun::Kind::manual).id;
    store->updateSyncRun(id, SyncRun::Status::failed, 0, 0, 0, 0, QStringLiteral("why"), Instant());
    store->updateSyncRun(id, SyncRun::Status::running, 0, 0, 0, 0);
    EXPECT_EQ(run(id).errorMessage, std::nullopt);
    EXPECT_EQ(run(id).rateLimitResetAt, std::nullopt);
}

TEST_F(SyncHistory, RunsComeNewestFirstUpToTheLimit)
{
    const qint64 first = store->createSyncRun(SyncRun::Kind::initial).id;
    const qint64 twin = store->createSyncRun(SyncRun::Kind::manual).id;
    library.clock.advance(1);
    const qint64 last = store->createSyncRun(SyncRun::Kind::manual).id;
    QList<qint64> ids;
    for (const SyncRun& each : store->syncRuns(100))
        ids.append(each.id);
    EXPECT_EQ(ids, (QList<qint64>{last, twin, first}));
    EXPECT_EQ(store->syncRuns(2).size(), 2);
}

TEST_F(SyncHistory, AnEntryKeepsItsNumbers)
{
    const qint64 id = store->createSyncRun(SyncRun::Kind::manual).id;
    const SyncLogEntry entry = store->appendSyncLogEntry(
        id, SyncLogEntry::Event::page, QStringLiteral("Bookmark page 2"),
        {.page = 2, .requested = 50, .received = 49, .reported = 48, .cumulative = 99, .hasNextPage = false});
    EXPECT_EQ(entry, (SyncLogEntry{.id = 1,
                                   .runID = id,
                                   .event = SyncLogEntry::Event::page,
                                   .message = QStringLiteral("Bookmark page 2"),
                                   .page = 2,
                                   .requested = 50,
                                   .received = 49,
                                   .reported = 48,
                                   .cumulative = 99,
                                   .hasNextPage = false,
                                   .createdAt = library.clock.now()}));
    EXPECT_EQ(store->syncLogEntries(id, 10), QList<SyncLogEntry>{entry});
    const SyncLogEntry bare =
        store->appendSyncLogEntry(id, SyncLogEntry::Event::started, QStringLiteral("a"));
    EXPECT_FALSE(bare.page || bare.requested || bare.received || bare.reported || bare.cumulative ||
                 bare.hasNextPage);
}

TEST_F(SyncHistory, OneRunReadsAsAStoryAndAllRunsAsARecentView)
{
    const qint64 one = store->createSyncRun(SyncRun::Kind::manual).id;
    const qint64 two = store->createSyncRun(SyncRun::Kind::manual).id;
    const auto append = [&](qint64 id) {
        return store->appendSyncLogEntry(id, SyncLogEntry::Event::page, QStringLiteral("a")).id;
    };
    const qint64 first = append(one);
    const qint64 second = append(one);
    library.clock.advance(1);
    const qint64 other = append(two);
    const qint64 third = append(one);
    const auto idsOf = [](const QList<SyncLogEntry>& entries) {
        QList<qint64> ids;
        for (const SyncLogEntry& entry : entries)
            ids.append(entry.id);
        return ids;
    };
    EXPECT_EQ(idsOf(store->syncLogEntries(one, 100)), (QList<qint64>{first, second, third}));
    EXPECT_EQ(idsOf(store->syncLogEntries({}, 100)), (QList<qint64>{third, other, second, first}));
}

TEST_F(SyncHistory, TheLimitOfEntriesIsClamped)
{
    store->createSyncRun(SyncRun::Kind::manual);
    connection->execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5001) "
                        "INSERT INTO sync_log_entries (sync_run_id, event, message, created_at) "
                        "SELECT 1, 'page', 'a', i FROM n");
    EXPECT_EQ(store->syncLogEntries({}, 0).size(), 1);
    EXPECT_EQ(store->syncLogEntries({}, -1).size(), 1);
    EXPECT_EQ(store->syncLogEntries({}, 1'000'000).size(), 5000);
    EXPECT_EQ(store->syncLogEntries(1, 1'000'000).size(), 5000);
}

TEST_F(SyncHistory, AStrangeRowIsReadLeniently)
{
    connection->execute("INSERT INTO sync_runs (kind, status, pages, started_at, created_at) "
                        "VALUES ('sometimes', 'paused', 'many', 'soon', 'never')");
    EXPECT_EQ(run(1), (SyncRun{.id = 1, .kind = SyncRun::Kind::manual, .status = SyncRun::Status::queued}));
    connection->execute(
        "PRAGMA ignore_check_constraints = ON;"
        "INSERT INTO sync_log_entries (sync_run_id, event, message, has_next_page, created_at) "
        "VALUES (1, 'paused', x'00', 7, 'never')");
    EXPECT_EQ(store->syncLogEntries(1, 10),
              (QList<SyncLogEntry>{
                  {.id = 1, .runID = 1, .event = SyncLogEntry::Event::failed, .hasNextPage = true}}));
}

TEST_F(SyncHistory, ARunOrAnEntryThatVanishesIsReported)
{
    connection->execute("CREATE TRIGGER a AFTER INSERT ON sync_runs BEGIN DELETE FROM sync_runs; END");
    try {
        store->createSyncRun(SyncRun::Kind::manual);
        FAIL();
    } catch (const SQLiteStoreError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("The sync run no longer exists."));
    }
    connection->execute("DROP TRIGGER a");
    const qint64 id = store->createSyncRun(SyncRun::Kind::manual).id;
    connection->execute(
        "CREATE TRIGGER b AFTER INSERT ON sync_log_entries BEGIN DELETE FROM sync_log_entries; END");
    try {
        store->appendSyncLogEntry(id, SyncLogEntry::Event::page, QStringLiteral("a"));
        FAIL();
    } catch (const SQLiteStoreError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("The sync diagnostic entry no longer exists."));
    }
}

TEST_F(SyncHistory, EntriesGoWithTheirRun)
{
    const qint64 id = store->createSyncRun(SyncRun::Kind::manual).id;
    store->appendSyncLogEntry(id, SyncLogEntry::Event::page, QStringLiteral("a"));
    store->purgeAllLocalData();
    EXPECT_TRUE(store->syncLogEntries({}, 10).isEmpty());
}

} // namespace
} // namespace mirel
