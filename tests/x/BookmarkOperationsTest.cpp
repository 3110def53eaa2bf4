#include "testing/Printing.h"

#include "x/MirelSyncBench.h"

#include "library/SQLiteStoreError.h"
#include "x/XAPIError.h"

namespace mirel {
namespace {

using testing::errorOf;
using testing::makePost;

// What MirelSyncService does for one bookmark.
class BookmarkOperations : public testing::MirelSyncBench
{
protected:
    void SetUp() override
    {
        onStore([now = library.clock.now()](LocalLibraryStore& it) { it.upsertFromX(makePost(1), now); });
    }

    bool isLive()
    {
        return onStore([](LocalLibraryStore& it) { return it.bookmark(makePost(1).tweetID).has_value(); });
    }
    void remove(bool fromX) { blockOn(service.deleteBookmark(stored(1), fromX)); }
};

TEST_F(BookmarkOperations, RefreshingStoresAndReturnsTheCounters)
{
    const PostMetrics counters{
        .views = 60, .reposts = 50, .bookmarks = 40, .replies = 30, .quotes = 20, .likes = 10};
    x.counters = [counters](const QString&) { return counters; };
    const Bookmark refreshed = blockOn(service.refreshMetrics(stored(1).id));
    EXPECT_EQ(x.asked, QStringList(QStringLiteral("metrics 10001")));
    EXPECT_EQ(refreshed.metrics, counters);
    EXPECT_EQ(refreshed, stored(1));
}

TEST_F(BookmarkOperations, CountersThatXDoesNotTellStayAsTheyWere)
{
    x.counters = [](const QString&) -> PostMetrics { throw XAPIError::invalidResponse(); };
    EXPECT_EQ(errorOf<XAPIError>([this] { blockOn(service.refreshMetrics(stored(1).id)); }),
              XAPIError::invalidResponse());
    EXPECT_EQ(stored(1).metrics, makePost(1).metrics);
}

TEST_F(BookmarkOperations, TheCountersOfAMissingBookmarkAreAnError)
{
    const auto error = errorOf<SQLiteStoreError>([this] { blockOn(service.refreshMetrics(7)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->errorCase(), SQLiteStoreError::Case::notFound);
    EXPECT_EQ(x.asked, QStringList());
}

TEST_F(BookmarkOperations, DeletingHereAlonePutsNothingToX)
{
    remove(false);
    EXPECT_EQ(x.asked, QStringList());
    EXPECT_FALSE(isLive());
    EXPECT_EQ(storedCount(), 1) << "the row stays, hidden";
}

TEST_F(BookmarkOperations, DeletingOnXTooAsksXFirst)
{
    x.removal = [this](const QString&) { EXPECT_TRUE(isLive()); };
    remove(true);
    EXPECT_EQ(x.asked, QStringList(QStringLiteral("delete 10001")));
    EXPECT_FALSE(isLive());
}

TEST_F(BookmarkOperations, WhenXRefusesTheBookmarkStays)
{
    x.removal = [](const QString&) { throw XAPIError::http(403, QStringLiteral("Forbidden")); };
    EXPECT_EQ(errorOf<XAPIError>([this] { remove(true); }),
              XAPIError::http(403, QStringLiteral("Forbidden")));
    EXPECT_TRUE(isLive());
}

// While X is asked about a post, all data is deleted and another post comes to its id.
class LateAnswer : public BookmarkOperations
{
protected:
    void SetUp() override
    {
        BookmarkOperations::SetUp();
        x.meanwhile = [this](const QString&) -> QCoro::Task<> {
            onStore([now = library.clock.now()](LocalLibraryStore& it) {
                it.purgeAllLocalData();
                it.upsertFromX(makePost(2), now);
            });
            m_other = stored(2);
            co_return;
        };
    }

    template <typename Operation>
    void expectGone(Operation operation)
    {
        const auto error = errorOf<SQLiteStoreError>([&] { blockOn(operation(stored(1).id)); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->description(), QStringLiteral("The bookmark no longer exists."));
        expectOtherUntouched();
    }

    void expectOtherUntouched()
    {
        ASSERT_EQ(m_other.id, 1);
        EXPECT_EQ(stored(2), m_other);
    }

private:
    Bookmark m_other;
};

TEST_F(LateAnswer, OfCountersTouchesNoOtherPost)
{
    x.counters = [](const QString&) { return PostMetrics{.views = 60}; };
    expectGone([this](qint64 id) { return service.refreshMetrics(id); });
}

TEST_F(LateAnswer, OfAThreadTouchesNoOtherPost)
{
    x.thread = [](const QString&) { return testing::makeThread(3); };
    expectGone([this](qint64 id) { return service.enrichThread(id); });
}

TEST_F(LateAnswer, OfARemovalTouchesNoOtherPost)
{
    remove(true);
    expectOtherUntouched();
}

TEST_F(BookmarkOperations, LeaveNoTraceInTheHistory)
{
    blockOn(service.refreshMetrics(stored(1).id));
    blockOn(service.enrichThread(stored(1).id));
    remove(true);
    EXPECT_TRUE(onStore([](LocalLibraryStore& it) { return it.syncRuns(10); }).isEmpty());
}

} // namespace
} // namespace mirel
