#include "testing/Printing.h"

#include "x/SyncTestBench.h"

#include "library/SQLiteStoreError.h"
#include "x/BookmarkSyncError.h"
#include "x/XAPIError.h"

#include <gmock/gmock.h>

namespace mirel {
namespace {

using testing::errorOf;
using testing::makePage;
using testing::makePost;

class BookmarkSync : public testing::SyncTestBench
{
protected:
    BookmarkSyncSummary sync(BookmarkSyncMode mode) { return blockOn(service.sync(mode, collectReports())); }

    BookmarkSyncService service{x, *store, library.clock.clock()};
};

QString token(int number)
{
    return QStringLiteral("token-%1").arg(number);
}

TEST_F(BookmarkSync, TheFirstRequestHasNoTokenAndEveryRequestAsksFor50)
{
    x.answer = [](int call) { return call == 0 ? makePage(51, 100, token(1)) : makePage(1, 50); };
    sync(BookmarkSyncMode::incremental);
    ASSERT_EQ(x.calls.size(), 2U);
    EXPECT_EQ(x.calls[0].token, std::nullopt);
    EXPECT_EQ(x.calls[1].token, token(1));
    EXPECT_EQ(x.calls[0].maxResults, 50);
    EXPECT_EQ(x.calls[1].maxResults, 50);
}

TEST_F(BookmarkSync, IntoAnEmptyLibraryEveryPostIsCreatedAndTheWalkGoesOn)
{
    x.answer = [](int call) { return call == 0 ? makePage(11, 60, token(1)) : makePage(1, 10); };
    const BookmarkSyncSummary summary = sync(BookmarkSyncMode::incremental);
    EXPECT_EQ(summary.pages, 2);
    EXPECT_EQ(summary.fetched, 60);
    EXPECT_EQ(summary.created, 60);
    EXPECT_EQ(summary.updated, 0);
    EXPECT_EQ(summary.createdBookmarkIDs.size(), 60);
    EXPECT_EQ(summary.mode, BookmarkSyncMode::incremental);
    EXPECT_TRUE(summary.reachedRemoteEnd) << "a last page with new posts and no token";
    EXPECT_EQ(summary.completedAt, library.clock.now());
    EXPECT_EQ(storedCount(), 60);
}

TEST_F(BookmarkSync, TheCreatedIdentifiersComeInTheOrderOfSaving)
{
    x.answer = [](int) { return makePage(1, 3); };
    const BookmarkSyncSummary summary = sync(BookmarkSyncMode::full);
    QStringList posts;
    for (const qint64 id : summary.createdBookmarkIDs)
        posts.append(onStore([id](LocalLibraryStore& it) { return it.bookmark(id).tweetID; }));
    EXPECT_EQ(posts, (QStringList{makePost(1).tweetID, makePost(2).tweetID, makePost(3).tweetID}));
}

TEST_F(BookmarkSync, WithNothingNewAnIncrementalWalkIsOneRequest)
{
    x.answer = [](int) { return makePage(1, 50, token(1)); };
    errorOf<BookmarkSyncError>([&] { sync(BookmarkSyncMode::full); });
    x.calls.clear();
    reports.clear();
    const BookmarkSyncSummary summary = sync(BookmarkSyncMode::incremental);
    EXPECT_EQ(x.calls.size(), 1U);
    EXPECT_EQ(summary.pages, 1);
    EXPECT_EQ(summary.created, 0);
    EXPECT_EQ(summary.updated, 50);
    EXPECT_FALSE(summary.reachedRemoteEnd);
    ASSERT_EQ(reports.size(), 1);
    EXPECT_FALSE(reports[0].hasNextPage) << "although X gave a token";
}

TEST_F(BookmarkSync, OneNewPostAmong49KnownOnesKeepsTheWalkGoing)
{
    x.answer = [](int) { return makePage(1, 49); };
    sync(BookmarkSyncMode::full);
    x.calls.clear();
    x.answer = [](int call) {
        XBookmarkPage page = makePage(1, 49, token(1));
        if (call == 0)
            page.items.append(makePost(100));
        return page;
    };
    EXPECT_EQ(sync(BookmarkSyncMode::incremental).pages, 2);
    EXPECT_EQ(x.calls.size(), 2U);
}

TEST_F(BookmarkSync, AnEmptyPageStopsAnIncrementalWalkButNotAFullOne)
{
    x.answer = [](int call) { return call == 0 ? makePage(1, 0, token(1)) : makePage(1, 5); };
    EXPECT_EQ(sync(BookmarkSyncMode::incremental).pages, 1);
    x.calls.clear();
    const BookmarkSyncSummary summary = sync(BookmarkSyncMode::full);
    EXPECT_EQ(summary.pages, 2);
    EXPECT_EQ(summary.created, 5);
    EXPECT_TRUE(summary.reachedRemoteEnd);
}

TEST_F(BookmarkSync, NothingNewAndNoTokenReachesTheEnd)
{
    x.answer = [](int) { return makePage(1, 5); };
    sync(BookmarkSyncMode::incremental);
    const BookmarkSyncSummary summary = sync(BookmarkSyncMode::incremental);
    EXPECT_EQ(summary.updated, 5);
    EXPECT_TRUE(summary.reachedRemoteEnd);
}

TEST_F(BookmarkSync, EveryPageIsReportedOnceWithTheCountersSoFar)
{
    x.answer = [](int call) {
        XBookmarkPage page = call == 0 ? makePage(1, 50, token(1)) : makePage(41, 60);
        page.resultCount = 7;
        return page;
    };
    sync(BookmarkSyncMode::full);
    EXPECT_EQ(reports, (QList<BookmarkSyncProgress>{
                           {.pages = 1,
                            .fetched = 50,
                            .created = 50,
                            .updated = 0,
                            .requested = 50,
                            .received = 50,
                            .reported = 7,
                            .hasNextPage = true},
                           {.pages = 2,
                            .fetched = 70,
                            .created = 60,
                            .updated = 10,
                            .requested = 50,
                            .received = 20,
                            .reported = 7,
                            .hasNextPage = false},
                       }));
}

TEST_F(BookmarkSync, WorksWithoutAReportHandler)
{
    x.answer = [](int) { return makePage(1, 5); };
    EXPECT_EQ(blockOn(service.sync(BookmarkSyncMode::full, {})).created, 5);
}

TEST_F(BookmarkSync, EveryPostHasASyncTimeOfItsOwn)
{
    const auto seconds = std::make_shared<std::atomic<int>>(0);
    BookmarkSyncService ticking(x, *store, [seconds] { return Instant::fromSecondsSince1970(++*seconds); });
    x.answer = [](int) { return makePage(1, 3); };
    blockOn(ticking.sync(BookmarkSyncMode::full, {}));
    std::vector<double> times;
    for (const SQLiteRow& row : connection->rows("SELECT synced_at FROM bookmarks ORDER BY id"))
        times.push_back(row.number("synced_at").value());
    EXPECT_THAT(times, ::testing::ElementsAre(1, 2, 3));
}

TEST_F(BookmarkSync, ARepeatedTokenEndsTheWalkAndKeepsWhatCame)
{
    x.answer = [](int call) { return makePage(call * 10 + 1, call * 10 + 10, token(call % 2)); };
    const auto error = errorOf<BookmarkSyncError>([&] { sync(BookmarkSyncMode::full); });
    EXPECT_EQ(error, BookmarkSyncError(BookmarkSyncError::Case::paginationCycle));
    EXPECT_EQ(error->description(), QStringLiteral("X returned a repeated bookmark page token."));
    EXPECT_EQ(storedCount(), 30);
    EXPECT_EQ(x.calls.size(), 3U);
}

TEST_F(BookmarkSync, Page1000WithATokenFailsAndItsItemsAreSaved)
{
    x.answer = [](int call) { return makePage(call + 1, call + 1, token(call)); };
    const auto error = errorOf<BookmarkSyncError>([&] { sync(BookmarkSyncMode::incremental); });
    EXPECT_EQ(error, BookmarkSyncError(BookmarkSyncError::Case::pageLimitExceeded));
    EXPECT_EQ(error->description(), QStringLiteral("The X bookmark sync exceeded its safety page limit."));
    EXPECT_EQ(storedCount(), 1000);
    EXPECT_EQ(reports.size(), 1000);
}

TEST_F(BookmarkSync, Page1000WithoutATokenSucceeds)
{
    x.answer = [](int call) {
        return makePage(call + 1, call + 1, call == 999 ? std::nullopt : std::optional(token(call)));
    };
    EXPECT_EQ(sync(BookmarkSyncMode::incremental).pages, 1000);
}

TEST_F(BookmarkSync, ARateLimitIsPassedOnAndEarlierPagesStay)
{
    x.answer = [](int call) {
        if (call == 2)
            throw XAPIError::rateLimited(Instant::fromSecondsSince1970(5));
        return makePage(call * 50 + 1, call * 50 + 50, token(call));
    };
    EXPECT_EQ(errorOf<XAPIError>([&] { sync(BookmarkSyncMode::incremental); }),
              XAPIError::rateLimited(Instant::fromSecondsSince1970(5)));
    EXPECT_EQ(storedCount(), 100);
    EXPECT_EQ(reports.size(), 2);
}

TEST_F(BookmarkSync, AnUnreadablePageLosesNoneOfTheEarlierOnes)
{
    x.answer = [](int call) {
        if (call == 1)
            throw XAPIError::invalidResponse();
        return makePage(1, 50, token(call));
    };
    EXPECT_EQ(errorOf<XAPIError>([&] { sync(BookmarkSyncMode::full); }), XAPIError::invalidResponse());
    EXPECT_EQ(storedCount(), 50);
}

TEST_F(BookmarkSync, AFailedWriteKeepsTheItemsBeforeIt)
{
    connection->execute("CREATE TRIGGER refuse BEFORE INSERT ON bookmarks WHEN new.text = 'Post number 4' "
                        "BEGIN SELECT RAISE(ABORT, 'disk on fire'); END");
    x.answer = [](int) { return makePage(1, 10); };
    const auto error = errorOf<SQLiteStoreError>([&] { sync(BookmarkSyncMode::full); });
    EXPECT_EQ(error->description(), QStringLiteral("Local library command failed: disk on fire"));
    EXPECT_EQ(storedCount(), 3);
    EXPECT_TRUE(reports.isEmpty());
}

TEST_F(BookmarkSync, APostThatWasDeletedHereAndStillStandsOnXEndsEveryWalkThatReachesIt)
{
    x.answer = [](int) { return makePage(1, 10); };
    sync(BookmarkSyncMode::full);
    onStore([](LocalLibraryStore& it) { it.deleteBookmarkLocally(it.bookmark(makePost(5).tweetID)->id); });
    for (int walk = 0; walk < 2; ++walk) {
        const auto error = errorOf<SQLiteStoreError>([&] { sync(BookmarkSyncMode::incremental); });
        EXPECT_EQ(error->description(), QStringLiteral("The bookmark no longer exists."));
    }
}

TEST_F(BookmarkSync, AFailingReportHandlerEndsTheWalkWithItsError)
{
    x.answer = [](int) { return makePage(1, 10, token(1)); };
    errorOf<std::out_of_range>([&] {
        blockOn(service.sync(BookmarkSyncMode::full, [](BookmarkSyncProgress) -> QCoro::Task<> {
            throw std::out_of_range("closed");
            co_return;
        }));
    });
    EXPECT_EQ(storedCount(), 10);
    EXPECT_EQ(x.calls.size(), 1U);
}

TEST_F(BookmarkSync, AWalkAfterAFailedOneBeginsAtTheFirstPage)
{
    x.answer = [](int call) -> XBookmarkPage {
        if (call == 1)
            throw XAPIError::rateLimited({});
        return makePage(1, 50, token(call));
    };
    errorOf<XAPIError>([&] { sync(BookmarkSyncMode::incremental); });
    x.answer = [](int) { return makePage(1, 50); };
    sync(BookmarkSyncMode::incremental);
    EXPECT_EQ(x.calls.back().token, std::nullopt);
}

TEST_F(BookmarkSync, ModesHaveTheirNames)
{
    EXPECT_EQ(rawValue(BookmarkSyncMode::incremental), QStringLiteral("incremental"));
    EXPECT_EQ(rawValue(BookmarkSyncMode::full), QStringLiteral("full"));
}

TEST_F(BookmarkSync, ReportsAndSummariesHaveTheirFieldNamesAsKeys)
{
    const BookmarkSyncProgress progress{1, 2, 3, 4, 50, 6, 7, true};
    const QByteArray progressJSON = R"({"created":3,"fetched":2,"hasNextPage":true,"pages":1,"received":6,)"
                                    R"("reported":7,"requested":50,"updated":4})";
    EXPECT_EQ(encodeJSON(progress), progressJSON);
    EXPECT_EQ(decodeJSON<BookmarkSyncProgress>(progressJSON), progress);

    const BookmarkSyncSummary summary{
        1, 2, 3, 4, {9, 8}, Instant::fromSecondsSince2001(5.5), BookmarkSyncMode::full, true};
    const QByteArray summaryJSON =
        R"({"completedAt":5.5,"created":3,"createdBookmarkIDs":[9,8],"fetched":2,"mode":"full","pages":1,)"
        R"("reachedRemoteEnd":true,"updated":4})";
    EXPECT_EQ(encodeJSON(summary), summaryJSON);
    EXPECT_EQ(decodeJSON<BookmarkSyncSummary>(summaryJSON), summary);
}

} // namespace
} // namespace mirel
