#include "CommandBench.h"

namespace mirel::testing {
namespace {

class History : public CommandBench
{
protected:
    // A run that was stopped by X on its second page, and then one that found nothing.
    void recordRuns()
    {
        inLibrary([](LocalLibraryStore& it) {
            const qint64 first = it.createSyncRun(SyncRun::Kind::initial).id;
            it.appendSyncLogEntry(first, SyncLogEntry::Event::started, QStringLiteral("Started."));
            it.appendSyncLogEntry(first, SyncLogEntry::Event::page, QStringLiteral("Bookmark page 1"),
                                  {1, 50, 48, 50, 48, true});
            it.appendSyncLogEntry(first, SyncLogEntry::Event::failed, QStringLiteral("X is\ntired."));
            it.updateSyncRun(first, SyncRun::Status::rateLimited, 1, 48, 7, 41,
                             QStringLiteral("X is\ntired."));
        });
        test.library.clock.advance(3600);
        inLibrary([](LocalLibraryStore& it) {
            const qint64 second = it.createSyncRun(SyncRun::Kind::automatic).id;
            it.updateSyncRun(second, SyncRun::Status::completed, 1, 50, 0, 50);
        });
    }
};

TEST_F(History, ListsTheRunsNewestFirst)
{
    recordRuns();
    EXPECT_EQ(text("history"),
              "#2  2023-11-14 23:13  automatic  completed     1 pages, 50 received, 0 new\n"
              "#1  2023-11-14 22:13  initial    rate limited  1 pages, 48 received, 7 new. X is tired.");
    EXPECT_EQ(text("history --limit 1"),
              "#2  2023-11-14 23:13  automatic  completed  1 pages, 50 received, 0 new");
}

TEST_F(History, TellsWhatHappenedInOneRun)
{
    recordRuns();
    const QByteArray story =
        "2023-11-14 22:13  started  Started.\n"
        "2023-11-14 22:13  page     Bookmark page 1: 48 of at most 50 received, 48 so far\n"
        "2023-11-14 22:13  failed   X is tired.";
    EXPECT_EQ(text("history 1"), story);
    EXPECT_EQ(text("history #1"), story);
    EXPECT_EQ(text("history 2"), "Nothing was noted of that sync.");
}

TEST_F(History, GivesMachinesTheRecords)
{
    recordRuns();
    EXPECT_EQ(json<QList<SyncRun>>("history"),
              inLibrary([](LocalLibraryStore& it) { return it.syncRuns(10); }));
    EXPECT_EQ(json<QList<SyncLogEntry>>("history 1"),
              inLibrary([](LocalLibraryStore& it) { return it.syncLogEntries(1, 10); }));
    EXPECT_EQ(output("history 2", forMachines), "[]\n");
}

TEST_F(History, MayBeEmpty)
{
    EXPECT_EQ(text("history"), "There was no sync yet.");
    EXPECT_EQ(output("history", forMachines), "[]\n");
}

TEST_F(History, OfARunThatDoesNotExistIsAnError)
{
    recordRuns();
    EXPECT_EQ(failure("history 3"), "There is no sync \"3\".");
    EXPECT_EQ(failure("history #0"), "There is no sync \"#0\".");
    EXPECT_EQ(failure("history latest"), "There is no sync \"latest\".");
    EXPECT_EQ(failure("history ##1"), "There is no sync \"##1\".");
}

} // namespace
} // namespace mirel::testing
