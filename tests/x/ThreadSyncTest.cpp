#include "testing/Printing.h"

#include "x/MirelSyncBench.h"

#include "library/SQLiteStoreError.h"
#include "x/XAPIError.h"

#include <gmock/gmock.h>

namespace mirel {
namespace {

using testing::errorOf;
using testing::makePost;
using testing::makeThread;

QString conversationOf(int number)
{
    return QStringLiteral("conversation 2000%1 of 42").arg(number);
}

// The threads around bookmarks, one by one and in syncs.
class ThreadSync : public testing::MirelSyncBench
{
protected:
    void storePost(const SyncedBookmark& post)
    {
        onStore([post, now = library.clock.now()](LocalLibraryStore& it) { it.upsertFromX(post, now); });
    }
    void storePosts(int first, int last)
    {
        for (int number = first; number <= last; ++number)
            storePost(makePost(number));
    }
    Bookmark enrich(int number) { return blockOn(service.enrichThread(stored(number).id)); }
};

TEST_F(ThreadSync, AThreadIsStoredEarliestFirst)
{
    storePosts(1, 1);
    x.thread = [](const QString&) { return makeThread(3); };
    library.clock.advance(60);
    const Bookmark enriched = enrich(1);
    EXPECT_EQ(x.asked, QStringList(conversationOf(1)));
    QStringList texts;
    for (const ThreadPost& post : enriched.thread)
        texts.append(post.text);
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Thread post 1"), QStringLiteral("Thread post 2"),
                                  QStringLiteral("Thread post 3")}));
    EXPECT_EQ(enriched.threadEnrichedAt, library.clock.now());
    EXPECT_EQ(enriched, stored(1));
}

TEST_F(ThreadSync, ASinglePostIsNoThread)
{
    storePosts(1, 2);
    x.thread = [](const QString& conversation) { return makeThread(conversation == u"20001" ? 1 : 0); };
    for (const int number : {1, 2}) {
        const Bookmark enriched = enrich(number);
        EXPECT_TRUE(enriched.thread.isEmpty());
        EXPECT_EQ(enriched.threadEnrichedAt, library.clock.now());
    }
    EXPECT_EQ(x.asked.size(), 2);
}

TEST_F(ThreadSync, TwoPostsAreAThread)
{
    storePosts(1, 1);
    x.thread = [](const QString&) { return makeThread(2); };
    EXPECT_EQ(enrich(1).thread.size(), 2);
}

TEST_F(ThreadSync, AThreadIsFetchedOnceWhateverItHolds)
{
    storePosts(1, 2);
    x.thread = [](const QString& conversation) { return makeThread(conversation == u"20001" ? 3 : 0); };
    const Bookmark withThread = enrich(1);
    const Bookmark withoutThread = enrich(2);
    x.asked.clear();
    library.clock.advance(1000);
    EXPECT_EQ(enrich(1), withThread);
    EXPECT_EQ(enrich(2), withoutThread);
    EXPECT_EQ(x.asked, QStringList());
}

TEST_F(ThreadSync, WithoutAConversationThereIsNothingToAskFor)
{
    SyncedBookmark none = makePost(1);
    none.conversationID.reset();
    SyncedBookmark empty = makePost(2);
    empty.conversationID = QString();
    storePost(none);
    storePost(empty);
    EXPECT_EQ(enrich(1).threadEnrichedAt, library.clock.now());
    EXPECT_EQ(enrich(2).threadEnrichedAt, library.clock.now());
    EXPECT_EQ(x.asked, QStringList());
}

TEST_F(ThreadSync, AfterAFailureTheThreadCanBeAskedForAgain)
{
    storePosts(1, 1);
    x.thread = [](const QString&) -> QList<ThreadPost> { throw XAPIError::invalidResponse(); };
    EXPECT_EQ(errorOf<XAPIError>([this] { enrich(1); }), XAPIError::invalidResponse());
    EXPECT_EQ(stored(1).threadEnrichedAt, std::nullopt);
    x.thread = [](const QString&) { return makeThread(2); };
    EXPECT_EQ(enrich(1).thread.size(), 2);
}

TEST_F(ThreadSync, TheThreadOfAMissingBookmarkIsAnError)
{
    const auto error = errorOf<SQLiteStoreError>([this] { blockOn(service.enrichThread(7)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description(), QStringLiteral("The bookmark no longer exists."));
    EXPECT_EQ(x.asked, QStringList());
}

TEST_F(ThreadSync, OnDemandNoSyncAsksForThreads)
{
    bookmarkPosts(1, 3);
    syncQuickly();
    syncFully();
    EXPECT_EQ(x.asked.filter(QStringLiteral("conversation")), QStringList());
    EXPECT_EQ(stored(1).threadEnrichedAt, std::nullopt);
}

TEST_F(ThreadSync, AQuickSyncFetchesTheThreadsOfWhatItCreatedAlone)
{
    bookmarkPosts(1, 2);
    syncQuickly();
    preferThreads();
    bookmarkPosts(1, 4);
    x.asked.clear();
    x.thread = [](const QString&) { return makeThread(2); };
    syncQuickly();
    EXPECT_EQ(x.asked, (QStringList{QStringLiteral("bookmarks"), conversationOf(3), conversationOf(4)}));
    EXPECT_TRUE(stored(1).thread.isEmpty());
    EXPECT_EQ(stored(4).thread.size(), 2);
}

TEST_F(ThreadSync, APostWithoutAConversationIsPassedOverInASync)
{
    preferThreads();
    x.answer = [](int) {
        XBookmarkPage page = testing::makePage(1, 2);
        page.items[0].conversationID.reset();
        return page;
    };
    syncQuickly();
    syncFully();
    EXPECT_EQ(x.asked.filter(QStringLiteral("conversation")), QStringList(conversationOf(2)));
    EXPECT_EQ(stored(1).threadEnrichedAt, std::nullopt);
}

TEST_F(ThreadSync, AFullSyncFetchesEveryThreadThatIsMissingNewestFirstAndFoldersBefore)
{
    bookmarkPosts(1, 3);
    x.thread = [](const QString& conversation) { return makeThread(conversation == u"20003" ? 2 : 1); };
    syncFully();
    preferThreads();
    x.asked.clear();
    syncFully();
    EXPECT_EQ(x.asked, (QStringList{QStringLiteral("bookmarks"), QStringLiteral("folders"), conversationOf(3),
                                    conversationOf(2), conversationOf(1)}));
    x.asked.clear();
    syncFully();
    EXPECT_EQ(x.asked, (QStringList{QStringLiteral("bookmarks"), QStringLiteral("folders")}))
        << "a thread is fetched once, also when there was none";
}

TEST_F(ThreadSync, AFullSyncReachesBeyondTheFirst500Bookmarks)
{
    storePosts(1, 1003);
    preferThreads();
    bookmarkPosts(1000, 1003);
    syncFully();
    const QStringList threads = x.asked.filter(QStringLiteral("conversation"));
    EXPECT_EQ(threads.size(), 1003);
    EXPECT_EQ(QSet<QString>(threads.begin(), threads.end()).size(), 1003);
    EXPECT_EQ(connection->firstRow("SELECT COUNT(*) AS n FROM bookmarks WHERE thread_enriched_at IS NULL")
                  ->integer("n"),
              0);
}

TEST_F(ThreadSync, AFullSyncOfExactly500BookmarksMissesNone)
{
    storePosts(1, 500);
    preferThreads();
    bookmarkPosts(1, 1);
    syncFully();
    EXPECT_EQ(x.asked.filter(QStringLiteral("conversation")).size(), 500);
}

// Both kinds of sync.
class ThreadsOfASync : public ThreadSync, public ::testing::WithParamInterface<BookmarkSyncMode>
{
};

TEST_P(ThreadsOfASync, TheFirstFailureLeavesTheRestWithoutThreads)
{
    preferThreads();
    x.answer = [](int call) {
        return testing::makePage(call * 50 + 1, call * 50 + 50,
                                 call == 1 ? std::nullopt : std::optional(QStringLiteral("a")));
    };
    int fetched = 0;
    x.thread = [&fetched](const QString&) {
        if (++fetched == 3)
            throw XAPIError::http(503, QStringLiteral("Service Unavailable"));
        return makeThread(2);
    };
    errorOf<XAPIError>([this] { sync(SyncRun::Kind::manual, GetParam()); });
    EXPECT_EQ(fetched, 3);
    EXPECT_EQ(connection->firstRow("SELECT COUNT(*) AS n FROM bookmarks WHERE thread_enriched_at IS NOT NULL")
                  ->integer("n"),
              2);
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().created, 100);
    EXPECT_EQ(lastRun().fetched, 100);
    EXPECT_EQ(lastRun().pages, 2);
    EXPECT_EQ(lastRun().rateLimitResetAt, std::nullopt);
    EXPECT_EQ(story().back(), "failed: X returned HTTP 503: Service Unavailable");
    EXPECT_EQ(storedCount(), 100);
}

INSTANTIATE_TEST_SUITE_P(Modes, ThreadsOfASync,
                         ::testing::Values(BookmarkSyncMode::incremental, BookmarkSyncMode::full),
                         [](const auto& row) { return rawValue(row.param).toStdString(); });

} // namespace
} // namespace mirel
