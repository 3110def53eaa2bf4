#include "testing/Printing.h"

#include "model/ModelTestBench.h"

#include "x/XAPIError.h"

#include <QSemaphore>

namespace mirel {
namespace {

using testing::makePage;

class SyncControl : public testing::ModelTestBench
{
protected:
    void SetUp() override { makeModel(); }
};

TEST_F(SyncControl, AFirstSyncIsInitialAndALaterOneManual)
{
    x->answer = [](int) { return makePage(1, 5); };
    blockOn(model->start());
    blockOn(model->syncNow({}, false));
    EXPECT_EQ(model->syncRuns().first().kind, SyncRun::Kind::initial);
    library.clock.advance(1);
    blockOn(model->syncNow({}, false));
    EXPECT_EQ(model->syncRuns().first().kind, SyncRun::Kind::manual);
    library.clock.advance(1);
    blockOn(model->syncNow(SyncRun::Kind::automatic, false));
    EXPECT_EQ(model->syncRuns().first().kind, SyncRun::Kind::automatic);
}

TEST_F(SyncControl, AQuickSyncTellsWhatItChecked)
{
    x->answer = [](int call) { return call == 0 ? makePage(1, 50, QStringLiteral("a")) : makePage(51, 60); };
    blockOn(model->syncNow({}, false));
    EXPECT_EQ(model->statusMessage(),
              QStringLiteral("Quick sync checked 60 recent bookmarks across 2 page(s), 60 new."));
    EXPECT_EQ(model->bookmarks().size(), 50);
    EXPECT_EQ(model->counts().all, 60);
    EXPECT_EQ(model->lastSyncSummary()->created, 60);
}

TEST_F(SyncControl, AFullSyncTellsThatItCheckedEveryPage)
{
    x->answer = [](int) { return makePage(1, 5); };
    blockOn(model->syncNow({}, true));
    EXPECT_EQ(model->statusMessage(),
              QStringLiteral("Full sync checked every page X made available: 5 bookmarks across 1 page(s), "
                             "5 new."));
}

TEST_F(SyncControl, ProgressIsPresentExactlyWhileASyncRuns)
{
    x->answer = [](int call) {
        return makePage(call * 50 + 1, call * 50 + 50,
                        call == 2 ? std::nullopt : std::optional(QString::number(call)));
    };
    QList<BookmarkSyncProgress> shown;
    QObject::connect(model.get(), &MirelAppModel::syncChanged, [&] {
        EXPECT_EQ(model->isSyncing(), model->syncProgress().has_value());
        if (model->syncProgress())
            shown.append(*model->syncProgress());
    });
    blockOn(model->syncNow({}, true));
    ASSERT_EQ(shown.size(), 4);
    EXPECT_EQ(shown[0], BookmarkSyncProgress{}) << "zeros until the first page";
    EXPECT_EQ(shown[1].pages, 1);
    EXPECT_TRUE(shown[1].hasNextPage);
    EXPECT_EQ(shown[3].fetched, 150);
    EXPECT_FALSE(shown[3].hasNextPage);
    EXPECT_FALSE(model->isSyncing());
    EXPECT_EQ(model->syncProgress(), std::nullopt);
}

TEST_F(SyncControl, RowsArriveWhileTheSyncStillRuns)
{
    QSemaphore rowsOnScreen;
    // The second page is held back until the rows of the first are on screen.
    x->answer = [&](int call) {
        if (call == 1) {
            EXPECT_TRUE(rowsOnScreen.tryAcquire(1, 30'000));
        }
        return makePage(call * 5 + 1, call * 5 + 5,
                        call == 0 ? std::optional(QStringLiteral("a")) : std::nullopt);
    };
    QObject::connect(model->bookmarkList(), &QAbstractItemModel::rowsInserted, [&] {
        EXPECT_TRUE(model->isSyncing());
        rowsOnScreen.release();
    });
    blockOn(model->syncNow({}, true));
    EXPECT_EQ(model->bookmarks().size(), 10);
}

TEST_F(SyncControl, AFailureIsToldRecordedAndKeepsWhatCame)
{
    x->answer = [](int call) {
        if (call == 1)
            throw XAPIError::http(503, QStringLiteral("Service Unavailable"));
        return makePage(1, 50, QStringLiteral("a"));
    };
    blockOn(model->syncNow({}, false));
    EXPECT_EQ(model->lastError(), QStringLiteral("X returned HTTP 503: Service Unavailable"));
    EXPECT_EQ(model->statusMessage(), std::nullopt);
    EXPECT_EQ(model->lastSyncSummary(), std::nullopt);
    EXPECT_EQ(model->syncRuns().first().status, SyncRun::Status::failed);
    EXPECT_FALSE(model->isSyncing());
    EXPECT_EQ(library.open()->libraryCounts().all, 50);
}

TEST_F(SyncControl, ANewSyncClearsAnOldError)
{
    x->answer = [](int call) -> XBookmarkPage {
        if (call == 0)
            throw XAPIError::rateLimited({});
        return makePage(1, 5);
    };
    blockOn(model->syncNow({}, false));
    EXPECT_EQ(model->lastError(), QStringLiteral("X rate limit reached."));
    blockOn(model->syncNow({}, false));
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(SyncControl, AHistoryThatCannotBeReadKeepsTheOldOne)
{
    x->answer = [](int) { return makePage(1, 5); };
    blockOn(model->syncNow({}, false));
    library.connect()->execute("ALTER TABLE sync_log_entries RENAME TO gone");
    blockOn(model->refreshSyncRuns());
    EXPECT_TRUE(model->lastError());
    EXPECT_EQ(model->syncRuns().size(), 1);
    library.connect()->execute("ALTER TABLE gone RENAME TO sync_log_entries");
}

TEST_F(SyncControl, WithCredentialsThatWorkXIsConfigured)
{
    blockOn(model->refreshCredentialState());
    EXPECT_TRUE(model->xConfigured());
}

TEST(SyncControlWithoutServices, CommandsDoNothing)
{
    MirelAppModel model{MirelServices{}};
    blockOn(model.start());
    blockOn(model.syncNow({}, true));
    blockOn(model.nextPage());
    blockOn(model.refreshCredentialState());
    EXPECT_FALSE(model.hasLibrary());
    EXPECT_FALSE(model.isSyncing());
    EXPECT_FALSE(model.xConfigured());
    EXPECT_EQ(model.lastError(), std::nullopt);
    EXPECT_EQ(model.statusMessage(), std::nullopt);
    blockOn(model.shutDown());
}

class UnconnectedX : public testing::ModelTestBench
{
};

TEST_F(UnconnectedX, IsNotConfiguredAndThatIsNoError)
{
    makeModel(std::nullopt);
    blockOn(model->refreshCredentialState());
    EXPECT_FALSE(model->xConfigured());
    EXPECT_EQ(model->lastError(), std::nullopt);
}

} // namespace
} // namespace mirel
