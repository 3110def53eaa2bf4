#include "testing/Printing.h"

#include "model/ModelTestBench.h"

#include "testing/LibraryChecks.h"
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

// The parameter is the table that cannot be read.
class UnreadableHistory : public SyncControl, public ::testing::WithParamInterface<const char*>
{
protected:
    void rename(const QByteArray& from, const QByteArray& to) const
    {
        library.connect()->execute("ALTER TABLE " + from + " RENAME TO " + to);
    }
    // A run of which the model has not heard.
    void addRun() const
    {
        library.clock.advance(1);
        const auto opened = library.open();
        const qint64 id = opened->createSyncRun(SyncRun::Kind::automatic).id;
        opened->appendSyncLogEntry(id, SyncLogEntry::Event::started, QStringLiteral("later"));
    }
};

TEST_P(UnreadableHistory, KeepsTheOldOne)
{
    x->answer = [](int) { return makePage(1, 5); };
    blockOn(model->syncNow({}, false));
    const QList<SyncRun> runs = model->syncRuns();
    const QList<SyncLogEntry> entries = model->syncLogEntries();
    ASSERT_EQ(runs.size(), 1);
    ASSERT_EQ(entries.size(), 3);
    addRun();
    rename(GetParam(), "gone");
    blockOn(model->refreshSyncRuns());
    ASSERT_TRUE(model->lastError());
    EXPECT_TRUE(model->lastError()->contains(QString::fromLatin1(GetParam())))
        << model->lastError()->toStdString();
    EXPECT_EQ(model->syncRuns(), runs);
    EXPECT_EQ(model->syncLogEntries(), entries);
    rename("gone", GetParam());
    blockOn(model->refreshSyncRuns());
    ASSERT_EQ(model->syncRuns().size(), 2);
    EXPECT_EQ(model->syncRuns().first().kind, SyncRun::Kind::automatic);
    ASSERT_EQ(model->syncLogEntries().size(), 4);
    EXPECT_EQ(model->syncLogEntries().first().message, QStringLiteral("later"));
}

INSTANTIATE_TEST_SUITE_P(Tables, UnreadableHistory, ::testing::Values("sync_runs", "sync_log_entries"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(SyncControl, AFailureBeforeTheFirstPageReloadsTheHistoryAndNotTheLibrary)
{
    x->answer = [](int) -> XBookmarkPage { throw XAPIError::invalidResponse(); };
    blockOn(model->start());
    int listings = 0;
    int organizations = 0;
    QObject::connect(model.get(), &MirelAppModel::libraryChanged, [&] { ++listings; });
    QObject::connect(model.get(), &MirelAppModel::organizationChanged, [&] { ++organizations; });
    blockOn(model->syncNow({}, false));
    EXPECT_EQ(listings, 0);
    EXPECT_EQ(organizations, 0);
    ASSERT_EQ(model->syncRuns().size(), 1);
    EXPECT_EQ(model->syncRuns().first().errorMessage, QStringLiteral("X returned an unreadable response."));
    x->answer = [](int) { return makePage(1, 5); };
    blockOn(model->syncNow({}, false));
    EXPECT_GT(listings, 0);
    EXPECT_EQ(organizations, 1);
}

TEST_F(SyncControl, KeepsTwentyRunsAndAThousandLogEntries)
{
    {
        const auto opened = library.open();
        for (int run = 0; run < 25; ++run) {
            library.clock.advance(1);
            const qint64 id = opened->createSyncRun(SyncRun::Kind::manual).id;
            for (int entry = 0; entry < 45; ++entry)
                opened->appendSyncLogEntry(id, SyncLogEntry::Event::page, QString::number(entry));
        }
    }
    int changes = 0;
    QObject::connect(model.get(), &MirelAppModel::syncRunsChanged, [&] { ++changes; });
    blockOn(model->refreshSyncRuns());
    EXPECT_EQ(changes, 1);
    ASSERT_EQ(model->syncRuns().size(), 20);
    EXPECT_EQ(model->syncRuns().first().id, 25) << "the newest first";
    EXPECT_EQ(model->syncRuns().last().id, 6);
    ASSERT_EQ(model->syncLogEntries().size(), 1000);
    EXPECT_EQ(model->syncLogEntries().first().runID, 25);
    EXPECT_EQ(model->syncLogEntries().first().message, QStringLiteral("44"));
}

TEST_F(SyncControl, TheScreensGetTheHistoryWithItsDates)
{
    x->answer = [this](int) -> XBookmarkPage {
        throw XAPIError::rateLimited(library.clock.now().addingSeconds(900));
    };
    blockOn(model->syncNow({}, false));
    const QVariantMap run = model->property("syncRuns").toList().value(0).toMap();
    EXPECT_EQ(run[QStringLiteral("status")], QStringLiteral("rate_limited"));
    EXPECT_EQ(run[QStringLiteral("kind")], QStringLiteral("initial"));
    const QDateTime now = library.clock.now().toDateTime();
    EXPECT_EQ(run[QStringLiteral("createdAt")].toDateTime(), now);
    EXPECT_EQ(run[QStringLiteral("rateLimitResetAt")].toDateTime(), now.addSecs(900));
    const QVariantMap entry = model->property("syncLogEntries").toList().value(0).toMap();
    EXPECT_EQ(entry[QStringLiteral("event")], QStringLiteral("failed"));
    EXPECT_EQ(entry[QStringLiteral("runID")], run[QStringLiteral("id")]);
    EXPECT_EQ(entry[QStringLiteral("createdAt")].toDateTime(), now);
    EXPECT_FALSE(entry.contains(QStringLiteral("page")));
}

TEST_F(SyncControl, ACanceledSyncIsRecordedAsFailedAndKeepsWhatCame)
{
    QSemaphore secondPage;
    x->answer = [&](int call) {
        if (call == 1) {
            EXPECT_TRUE(secondPage.tryAcquire(1, 30'000));
        }
        return makePage(call * 5 + 1, call * 5 + 5, QString::number(call));
    };
    QObject::connect(model->bookmarkList(), &QAbstractItemModel::rowsInserted, model.get(), [&] {
        model->cancelSync();
        secondPage.release();
    });
    blockOn(model->syncNow({}, true));
    EXPECT_EQ(model->statusMessage(),
              QStringLiteral("The sync was canceled. What had arrived is in the library."));
    EXPECT_EQ(model->lastError(), std::nullopt) << "what the user wanted is no error";
    const SyncRun run = model->syncRuns().value(0);
    EXPECT_EQ(run.status, SyncRun::Status::failed);
    EXPECT_EQ(run.errorMessage, QStringLiteral("Sync canceled."));
    EXPECT_EQ(run.pages, 2);
    EXPECT_EQ(model->syncLogEntries().first().message, QStringLiteral("Sync canceled."));
    EXPECT_EQ(model->bookmarks().size(), 10);
    EXPECT_EQ(x->calls.size(), 2U) << "no further page is asked for";
    EXPECT_FALSE(model->isSyncing());
}

TEST_F(SyncControl, CancelingWhenNothingRunsDoesNothing)
{
    model->cancelSync();
    blockOn(model->endSyncEarly());
    x->answer = [](int) { return makePage(1, 5); };
    blockOn(model->syncNow({}, false));
    EXPECT_EQ(model->syncRuns().value(0).status, SyncRun::Status::completed);
}

TEST_F(SyncControl, AWindowThatClosesDuringASyncLeavesTheLibraryWhole)
{
    QSemaphore secondPage;
    x->answer = [&](int call) {
        if (call == 1) {
            EXPECT_TRUE(secondPage.tryAcquire(1, 30'000));
        }
        return makePage(call * 50 + 1, call * 50 + 50,
                        call < 3 ? std::optional(QString::number(call)) : std::nullopt);
    };
    auto syncing = model->syncNow({}, true);
    QEventLoop loop;
    QObject::connect(model->bookmarkList(), &QAbstractItemModel::rowsInserted, &loop, &QEventLoop::quit);
    loop.exec();
    auto closing = model->shutDown();
    secondPage.release();
    blockOn(std::move(closing));
    blockOn(std::move(syncing));
    model.reset();

    EXPECT_EQ(library.open()->libraryCounts().all, 100) << "both pages that had come";
    testing::expectWhole(library.path());
    EXPECT_EQ(library.open()->syncRuns(1).value(0).status, SyncRun::Status::running);

    syncsAutomatically = true;
    prefer([](AppPreferences& preferences) { preferences.automaticSync = true; });
    makeModel();
    x->answer = [](int call) {
        return makePage(call * 50 + 1, call * 50 + 50,
                        call < 3 ? std::optional(QString::number(call)) : std::nullopt);
    };
    blockOn(model->load());
    blockOn(model->refreshCredentialState());
    blockOn(model->syncIfDue());
    EXPECT_EQ(model->syncRuns().value(0).status, SyncRun::Status::completed)
        << "a run that the end of the program cut off does not put off the next";
    blockOn(model->syncNow({}, true));
    EXPECT_EQ(model->counts().all, 200);
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
