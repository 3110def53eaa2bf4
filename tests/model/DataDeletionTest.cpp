#include "testing/Printing.h"

#include "model/ConnectionBench.h"
#include "testing/Eventually.h"

#include <QFile>
#include <QSemaphore>

namespace mirel {
namespace {

using testing::eventually;

const QString deleted = QStringLiteral("All local Mirel data and credentials were deleted.");

class DataDeletion : public testing::ConnectionBench
{
protected:
    void SetUp() override
    {
        const auto opened = library.open();
        for (int number = 1; number <= 3; ++number)
            opened->upsertFromX(testing::makePost(number), library.clock.now());
        AppPreferences preferences = smallPages();
        // A sync that nobody asked for would run beside what is tested.
        preferences.automaticSync = false;
        opened->savePreferences(preferences);
        makeModel(storedCredentials());
        blockOn(model->start());
        waitForQuestions(1);
        ASSERT_EQ(model->bookmarks().size(), 3);
    }

    QString caches() const { return QDir(library.directory()).filePath(QStringLiteral("caches")); }

    void makeCaches() const
    {
        ASSERT_TRUE(QDir().mkpath(caches() + QStringLiteral("/pictures")));
        QFile file(caches() + QStringLiteral("/pictures/one"));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
    }
};

TEST_F(DataDeletion, LeavesNothing)
{
    makeCaches();
    blockOn(model->openBookmark(model->bookmarks().first().id));
    blockOn(model->refreshMedia());
    blockOn(model->selectAllLibraryResults());
    blockOn(model->deleteAllData());
    EXPECT_EQ(status(), deleted);
    EXPECT_EQ(error(), QString());
    EXPECT_TRUE(model->bookmarks().isEmpty());
    EXPECT_TRUE(model->mediaBookmarks().isEmpty());
    EXPECT_EQ(model->counts().all, 0);
    EXPECT_EQ(model->libraryResultCount(), 0);
    EXPECT_EQ(model->selectedBookmarkID(), std::nullopt);
    EXPECT_TRUE(model->selectedBookmarkIDs().isEmpty());
    EXPECT_FALSE(model->isReaderOpen());
    EXPECT_FALSE(model->canGoBack()) << "a place behind may name what is gone";
    EXPECT_EQ(model->preferences(), AppPreferences());
    EXPECT_EQ(library.open()->libraryCounts().all, 0);
    EXPECT_EQ(inVault(), std::nullopt);
    EXPECT_FALSE(QFile::exists(caches()));
    blockOn(model->refreshCredentialState());
    EXPECT_FALSE(model->xConfigured());
}

TEST_F(DataDeletion, GoesWellWithoutCaches)
{
    ASSERT_FALSE(QFile::exists(caches()));
    blockOn(model->deleteAllData());
    EXPECT_EQ(status(), deleted);
}

TEST_F(DataDeletion, ALibraryThatCannotBeEmptiedIsToldAndAllElseStays)
{
    makeCaches();
    library.connect()->execute("ALTER TABLE app_state RENAME TO gone");
    blockOn(model->deleteAllData());
    EXPECT_TRUE(error().startsWith(QStringLiteral("Local library command failed"))) << qPrintable(error());
    EXPECT_EQ(status(), QString());
    EXPECT_EQ(model->bookmarks().size(), 3);
    EXPECT_EQ(model->preferences().pageSize, 20);
    EXPECT_EQ(inVault(), storedCredentials());
    EXPECT_TRUE(QFile::exists(caches()));
    library.connect()->execute("ALTER TABLE gone RENAME TO app_state");
}

TEST_F(DataDeletion, SecretsThatCannotBeRemovedAreToldAndWhatWasPurgedStaysPurged)
{
    makeCaches();
    vault->failing = vault->calls.load();
    blockOn(model->deleteAllData());
    EXPECT_EQ(error(), QStringLiteral("The vault is locked."));
    EXPECT_EQ(status(), QString());
    EXPECT_EQ(model->bookmarks().size(), 3) << "until the next refresh";
    EXPECT_EQ(library.open()->libraryCounts().all, 0);
    EXPECT_TRUE(QFile::exists(caches()));
    blockOn(model->refreshLibrary());
    EXPECT_TRUE(model->bookmarks().isEmpty());
}

TEST_F(DataDeletion, SecretsThatAreRemovedInPartShowAsGone)
{
    ASSERT_TRUE(eventually([this] { return model->xConfigured(); }));
    vault->failsHalfWay = true;
    blockOn(model->deleteAllData());
    EXPECT_EQ(error(), QStringLiteral("The vault is locked."));
    EXPECT_EQ(inVault(), std::nullopt);
    EXPECT_FALSE(model->xConfigured());
}

// A question about a post that X answers when everything is deleted.
class DeletionDuring : public DataDeletion
{
protected:
    void SetUp() override
    {
        DataDeletion::SetUp();
        m_released.start();
        x->meanwhile = [this](const QString&) -> QCoro::Task<> {
            isAsked = true;
            const QFuture<void> released = m_released.future();
            co_await released;
        };
    }

    void deleteAllDuring(QCoro::Task<> question)
    {
        ASSERT_TRUE(eventually([this] { return isAsked.load(); }));
        blockOn(model->deleteAllData());
        library.open()->upsertFromX(testing::makePost(9), library.clock.now());
        const Bookmark other = library.open()->bookmark(1);
        m_released.finish();
        blockOn(std::move(question));
        EXPECT_EQ(library.open()->bookmark(1), other) << "another post has come to that id";
        EXPECT_EQ(error(), QString()) << "of what is gone nothing is told";
        EXPECT_EQ(status(), deleted);
        EXPECT_FALSE(model->isWorking());
    }

    const qint64 first = 1;
    std::atomic<bool> isAsked = false;

private:
    QPromise<void> m_released;
};

TEST_F(DeletionDuring, AThreadStoresAndTellsNothing)
{
    x->thread = [](const QString&) { return testing::makeThread(3); };
    deleteAllDuring(model->enrichThread(first));
}

TEST_F(DeletionDuring, ARefreshOfCountersStoresAndTellsNothing)
{
    x->counters = [](const QString&) { return PostMetrics{.views = 60}; };
    deleteAllDuring(model->refreshMetrics(first));
}

TEST_F(DeletionDuring, ARemovalOnXHidesNoOtherPost)
{
    deleteAllDuring(model->deleteBookmark(library.open()->bookmark(first), true));
}

TEST_F(DataDeletion, GivesUpASignIn)
{
    begin();
    const QUrl callback = callbackOf(browser->page);
    blockOn(model->deleteAllData());
    EXPECT_FALSE(model->isAuthorizingX());
    prepareGrant();
    blockOn(model->handleOpenURL(callback));
    EXPECT_EQ(error(), QStringLiteral("Start the X connection again before opening this callback."));
    EXPECT_EQ(inVault(), std::nullopt);
}

TEST_F(DataDeletion, EndsASyncBeforeItDeletes)
{
    QSemaphore isAsked;
    QSemaphore goesOn;
    x->answer = [&](int call) {
        isAsked.release();
        EXPECT_TRUE(goesOn.tryAcquire(1, 60'000));
        return testing::makePage(call * 50 + 1, call * 50 + 50, QString::number(call));
    };
    auto syncing = model->syncNow({}, true);
    ASSERT_TRUE(eventually([&] { return isAsked.tryAcquire(1); }));
    auto deleting = model->deleteAllData();
    goesOn.release(2);
    blockOn(std::move(deleting));
    blockOn(std::move(syncing));
    EXPECT_FALSE(model->isSyncing());
    EXPECT_EQ(status(), deleted);
    EXPECT_EQ(error(), QString());
    EXPECT_EQ(library.open()->libraryCounts().all, 0);
    EXPECT_TRUE(library.open()->syncRuns(10).isEmpty());
    EXPECT_TRUE(model->bookmarks().isEmpty());
}

TEST(DataDeletionWithoutServices, DoesNothing)
{
    MirelAppModel model{MirelServices{}};
    blockOn(model.deleteAllData());
    EXPECT_EQ(model.statusMessage(), std::nullopt);
    EXPECT_EQ(model.lastError(), std::nullopt);
}

} // namespace
} // namespace mirel
