#include "testing/Printing.h"

#include "x/Gate.h"
#include "x/MirelSyncBench.h"

#include "library/OrganizationError.h"
#include "library/SQLiteStoreError.h"
#include "x/XAPIError.h"

#include <gmock/gmock.h>

namespace mirel {
namespace {

using testing::errorOf;
using testing::makePage;
using testing::makePost;
using testing::makeThread;

// What follows the bookmarks in a sync: folders, threads, rules. X has two pages of bookmarks, one folder
// with the first post, and a thread around each post.
class SyncPhases : public testing::MirelSyncBench
{
protected:
    void SetUp() override
    {
        x.answer = [](int call) {
            const bool isFirst = call % 2 == 0;
            return isFirst ? makePage(3, 4, QStringLiteral("a")) : makePage(1, 2);
        };
        x.folders = [](std::optional<QString>) {
            return XPage<XBookmarkFolder>{.items = {{QStringLiteral("F1"), QStringLiteral("Kitchen")}}};
        };
        x.folderPosts = [](const QString&, std::optional<QString>) {
            return XPage<QString>{.items = {makePost(1).tweetID}};
        };
        x.thread = [](const QString&) { return makeThread(2); };
        preferThreads();
    }

    void createRule(const QString& name, const QString& query)
    {
        onStore([name, query](LocalLibraryStore& it) {
            const Tag label = it.createTag(name, QStringLiteral("#123456"), Tag::Source::manual);
            it.createRule(name, query, BookmarkRule::Action::tag, label.id, true);
        });
    }
    // The names of the labels of the post of that number.
    QStringList labels(int number)
    {
        QStringList names;
        for (const Tag& label : stored(number).tags)
            names.append(label.name);
        return names;
    }

    // What a full sync asks.
    const QStringList everything{
        QStringLiteral("bookmarks"),
        QStringLiteral("bookmarks after a"),
        QStringLiteral("folders"),
        QStringLiteral("folder F1"),
        QStringLiteral("conversation 20004 of 42"),
        QStringLiteral("conversation 20003 of 42"),
        QStringLiteral("conversation 20002 of 42"),
        QStringLiteral("conversation 20001 of 42"),
    };
};

TEST_F(SyncPhases, ComeInOrder)
{
    syncFully();
    EXPECT_EQ(x.asked, everything);
}

TEST_F(SyncPhases, TheRulesSeeWhatTheSyncBrought)
{
    createRule(QStringLiteral("Filed"), QStringLiteral("folder:kitchen"));
    createRule(QStringLiteral("Threads"), QStringLiteral("has:thread"));
    syncFully();
    EXPECT_EQ(labels(1), (QStringList{QStringLiteral("Filed"), QStringLiteral("Threads")}));
    EXPECT_EQ(labels(4), QStringList(QStringLiteral("Threads")));
}

TEST_F(SyncPhases, AQuickSyncRunsTheRulesToo)
{
    createRule(QStringLiteral("Posts"), QStringLiteral("post"));
    syncQuickly();
    EXPECT_EQ(labels(2), QStringList(QStringLiteral("Posts")));
}

TEST_F(SyncPhases, ARuleThatIsOffIsNotRun)
{
    createRule(QStringLiteral("Posts"), QStringLiteral("post"));
    onStore([](LocalLibraryStore& it) { it.setRuleEnabled(it.rules().first().id, false); });
    syncFully();
    EXPECT_EQ(labels(2), QStringList());
}

TEST_F(SyncPhases, TheRunIsCompletedAfterTheLastOfThem)
{
    x.meanwhile = [this](const QString&) -> QCoro::Task<> {
        const auto row = connection->firstRow("SELECT status FROM sync_runs");
        EXPECT_EQ(row->text("status"), QStringLiteral("running"));
        co_return;
    };
    const BookmarkSyncSummary summary = syncFully();
    EXPECT_EQ(summary.created, 4);
    EXPECT_EQ(lastRun().status, SyncRun::Status::completed);
    EXPECT_EQ(lastRun().fetched, 4);
    EXPECT_EQ(story().back(), "completed: Completed full sync of 4 bookmarks across 2 pages.");
    EXPECT_EQ(story().size(), 4U) << "folders, threads and rules have no lines";
}

TEST_F(SyncPhases, PreferencesAreReadOnceTheBookmarksAreIn)
{
    x.meanwhile = [this](const QString& asked) -> QCoro::Task<> {
        if (asked == u"bookmarks after a")
            library.open()->savePreferences({});
        co_return;
    };
    syncFully();
    EXPECT_EQ(x.asked, everything.first(4));
}

TEST_F(SyncPhases, PreferencesThatChangeLaterCountForTheNextRun)
{
    x.meanwhile = [this](const QString& asked) -> QCoro::Task<> {
        if (asked == u"folders")
            library.open()->savePreferences({});
        co_return;
    };
    syncFully();
    EXPECT_EQ(x.asked, everything);
    x.asked.clear();
    syncFully();
    EXPECT_EQ(x.asked, everything.first(4));
}

TEST_F(SyncPhases, PreferencesThatCannotBeReadFailTheRunWithItsBookmarks)
{
    connection->execute("UPDATE app_state SET value_json = '{'");
    EXPECT_THROW(syncFully(), Error);
    EXPECT_EQ(x.asked, everything.first(2));
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().created, 4);
    EXPECT_EQ(lastRun().pages, 2);
    EXPECT_TRUE(lastRun().errorMessage);
    EXPECT_EQ(storedCount(), 4);
}

TEST_F(SyncPhases, ARuleThatFailsFailsTheRunAndNothingIsRolledBack)
{
    createRule(QStringLiteral("Gone"), QStringLiteral("post"));
    createRule(QStringLiteral("Applied first"), QStringLiteral("post"));
    connection->execute("DELETE FROM tags WHERE name = 'Gone'");
    EXPECT_EQ(errorOf<OrganizationError>([this] { syncFully(); })->errorCase(),
              OrganizationError::Case::missingTarget);
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().errorMessage, QStringLiteral("The rule target no longer exists."));
    EXPECT_EQ(lastRun().created, 4);
    EXPECT_EQ(story().back(), "failed: The rule target no longer exists.");
    EXPECT_EQ(folderOf(1), "Kitchen");
    EXPECT_EQ(stored(2).thread.size(), 2);
    EXPECT_EQ(labels(2), QStringList(QStringLiteral("Applied first")));
}

// The last page of bookmarks is recorded when the sync fails.
class LostCounters : public SyncPhases
{
protected:
    void failAfter(const char* change)
    {
        x.folderPosts = [this, change](const QString&, std::optional<QString>) -> XPage<QString> {
            EXPECT_EQ(connection->firstRow("SELECT fetched FROM sync_runs WHERE id = 1")->integer("fetched"),
                      4);
            connection->execute(change);
            throw XAPIError::invalidResponse();
        };
        EXPECT_EQ(errorOf<XAPIError>([this] { syncFully(); }), XAPIError::invalidResponse());
    }

    void expectZeros()
    {
        const SyncRun run = onStore([](LocalLibraryStore& it) { return it.syncRun(1); });
        EXPECT_EQ(run.status, SyncRun::Status::failed);
        EXPECT_EQ(run.errorMessage, XAPIError::invalidResponse().description());
        EXPECT_EQ(run.pages, 0);
        EXPECT_EQ(run.fetched, 0);
        EXPECT_EQ(run.created, 0);
    }
};

TEST_F(LostCounters, AreRecordedAsZerosWhenAHundredOtherRunsAreNewer)
{
    failAfter("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 100) "
              "INSERT INTO sync_runs (kind, status, created_at) SELECT 'manual', 'queued', 1.0e10 FROM n");
    expectZeros();
}

TEST_F(LostCounters, AreRecordedAsZerosWhenTheyCannotBeRead)
{
    failAfter("ALTER TABLE sync_runs RENAME COLUMN created_at TO gone");
    EXPECT_THROW(onStore([](LocalLibraryStore& it) { return it.syncRuns(100); }), Error);
    connection->execute("ALTER TABLE sync_runs RENAME COLUMN gone TO created_at");
    expectZeros();
}

// A sync that is canceled while X is asked for something.
class CanceledSync : public SyncPhases, public ::testing::WithParamInterface<int>
{
protected:
    QObject context;

    void syncAndCancelDuring(const QString& question)
    {
        const SyncCancellation cancellation;
        x.meanwhile = [cancellation, question](const QString& asked) -> QCoro::Task<> {
            if (asked == question)
                cancellation.request();
            co_return;
        };
        const auto error = errorOf<SyncCanceled>(
            [&] { blockOn(service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {}, cancellation)); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->description(), QStringLiteral("Sync canceled."));
    }

    void expectRecordedAsCanceled()
    {
        EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
        EXPECT_EQ(lastRun().errorMessage, QStringLiteral("Sync canceled."));
        EXPECT_EQ(lastRun().rateLimitResetAt, std::nullopt);
        EXPECT_EQ(lastRun().fetched, storedCount());
        EXPECT_EQ(story().back(), "failed: Sync canceled.");
    }
};

TEST_P(CanceledSync, AsksForNothingMoreAndKeepsWhatCame)
{
    syncAndCancelDuring(everything[GetParam()]);
    EXPECT_EQ(x.asked, everything.first(GetParam() + 1));
    EXPECT_EQ(storedCount(), GetParam() == 0 ? 2 : 4);
    expectRecordedAsCanceled();

    x.meanwhile = {};
    syncFully();
    EXPECT_EQ(lastRun().status, SyncRun::Status::completed);
    EXPECT_EQ(folderOf(1), "Kitchen");
    for (int number = 1; number <= 4; ++number)
        EXPECT_EQ(stored(number).thread.size(), 2);
}

TEST_P(CanceledSync, IsCanceledAlsoWhenTheRequestThenFails)
{
    const auto fail = [] { throw XAPIError::rateLimited(Instant::fromSecondsSince1970(1'800'000'000)); };
    int remaining = GetParam();
    const SyncCancellation cancellation;
    x.meanwhile = [&](const QString&) -> QCoro::Task<> {
        if (remaining-- == 0) {
            cancellation.request();
            fail();
        }
        co_return;
    };
    EXPECT_TRUE(errorOf<SyncCanceled>(
        [&] { blockOn(service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {}, cancellation)); }));
    expectRecordedAsCanceled();
}

TEST_P(CanceledSync, EndsWithoutTheAnswerAndDropsItWhenItComes)
{
    Gate gate;
    int remaining = GetParam();
    const SyncCancellation cancellation;
    x.meanwhile = [&](const QString&) -> QCoro::Task<> {
        if (remaining-- != 0)
            co_return;
        QMetaObject::invokeMethod(
            &context, [cancellation] { cancellation.request(); }, Qt::QueuedConnection);
        co_await gate.opened();
    };
    EXPECT_TRUE(errorOf<SyncCanceled>(
        [&] { blockOn(service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {}, cancellation)); }));
    expectRecordedAsCanceled();
    const auto listed = [](LocalLibraryStore& it) {
        return it.listBookmarks(LibraryFilter::all, 100, 0, LibrarySort::newest);
    };
    const QList<Bookmark> kept = onStore(listed);
    gate.open();
    blockOn(cancellation.leftBehind());
    EXPECT_EQ(onStore(listed), kept);
    EXPECT_EQ(x.asked, everything.first(GetParam() + 1)) << "nothing follows";
}

INSTANTIATE_TEST_SUITE_P(Requests, CanceledSync, ::testing::Range(0, 8));

TEST_F(CanceledSync, DuringTheRulesIsRecordedAsSuchToo)
{
    createRule(QStringLiteral("Posts"), QStringLiteral("post"));
    prefer([](AppPreferences& it) { it.threadEnrichment = AppPreferences::ThreadEnrichment::onDemand; });
    const SyncCancellation cancellation;
    std::atomic_bool areBookmarksIn = false;
    // Once the pages are recorded, the first to ask for the time is the rule that notes its run.
    const Clock clock = [&] {
        if (areBookmarksIn)
            cancellation.request();
        return library.clock.now();
    };
    Serial<LocalLibraryStore> watched(std::make_shared<ServiceThread>(QStringLiteral("library")), [&] {
        return std::make_unique<LocalLibraryStore>(library.path(), clock);
    });
    MirelSyncService overWatched(x, watched, library.clock.clock());
    const auto progress = [&](BookmarkSyncProgress page) -> QCoro::Task<> {
        areBookmarksIn = !page.hasNextPage;
        co_return;
    };
    EXPECT_TRUE(errorOf<SyncCanceled>([&] {
        blockOn(
            overWatched.sync(SyncRun::Kind::manual, BookmarkSyncMode::incremental, progress, cancellation));
    }));
    EXPECT_EQ(labels(1), QStringList(QStringLiteral("Posts")));
    expectRecordedAsCanceled();
}

TEST_F(CanceledSync, ThatHasCompletedStaysCompleted)
{
    const SyncCancellation cancellation;
    blockOn(service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {}, cancellation));
    cancellation.request();
    EXPECT_EQ(lastRun().status, SyncRun::Status::completed);
}

} // namespace
} // namespace mirel
