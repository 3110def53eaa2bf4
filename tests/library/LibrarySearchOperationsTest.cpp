#include "testing/Printing.h"

#include "library/PlainEvaluation.h"
#include "support/Error.h"
#include "testing/TemporaryLibrary.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

class LibrarySearchOperations : public ::testing::Test
{
protected:
    void addPosts(int count)
    {
        for (int number = 1; number <= count; ++number)
            store->upsertFromX(testing::makePost(number), library.clock.now());
    }

    qint64 idOf(int number) { return store->bookmark(testing::makePost(number).tweetID).value().id; }

    QList<qint64> idsOf(const QList<Bookmark>& bookmarks)
    {
        QList<qint64> ids;
        for (const Bookmark& bookmark : bookmarks)
            ids.append(bookmark.id);
        return ids;
    }

    // What every operation says of one search, which must agree with its definition.
    QList<qint64> found(const LibraryRefinements& refinements, LibraryFilter filter = LibraryFilter::all,
                        LibrarySort sort = LibrarySort::newest)
    {
        plain.renew();
        const QList<qint64> ids = plain.matchingIDs(filter, refinements, sort);
        const QList<Bookmark> matching = plain.bookmarks(ids);
        EXPECT_EQ(store->searchAllBookmarks(filter, refinements, sort), matching);
        EXPECT_EQ(store->matchingBookmarkIDs(filter, refinements, sort), ids);
        EXPECT_EQ(store->countBookmarks(filter, refinements), matching.size());
        const BookmarkSearchPage page = store->searchBookmarksPage(filter, refinements, 500, 0, sort);
        EXPECT_EQ(page,
                  (BookmarkSearchPage{.items = matching.first(std::min<qsizetype>(500, matching.size())),
                                      .totalCount = matching.size()}));
        EXPECT_EQ(store->searchBookmarks(filter, refinements, 500, 0, sort), page.items);
        return ids;
    }

    testing::TemporaryLibrary library;
    std::unique_ptr<LocalLibraryStore> store = library.open();
    std::unique_ptr<SQLiteConnection> connection = library.connect();
    testing::PlainEvaluation plain{library.path()};
};

TEST_F(LibrarySearchOperations, AnEmptyLibraryHoldsNothingToFind)
{
    EXPECT_TRUE(found({}).isEmpty());
    EXPECT_TRUE(found({.query = QStringLiteral("a")}).isEmpty());
}

TEST_F(LibrarySearchOperations, WithoutRefinementsFindTheMailboxInItsOrder)
{
    addPosts(5);
    store->updateLocalState(idOf(2), {}, true, true, false);
    store->updateLocalState(idOf(4), {}, false, true, true);
    for (const LibraryFilter filter : {LibraryFilter::all, LibraryFilter::inbox, LibraryFilter::read,
                                       LibraryFilter::favorites, LibraryFilter::archive}) {
        for (const LibrarySort sort : {LibrarySort::newest, LibrarySort::oldest, LibrarySort::author})
            EXPECT_EQ(found({}, filter, sort), store->allBookmarkIDs(filter, sort));
    }
    EXPECT_EQ(found({}, LibraryFilter::favorites), (QList<qint64>{idOf(4), idOf(2)}));
}

TEST_F(LibrarySearchOperations, FindWhatPassesTheQueryAndTheRefinements)
{
    addPosts(12);
    EXPECT_EQ(found({.query = QStringLiteral("\"number 1\" NOT \"number 12\"")}),
              (QList<qint64>{idOf(11), idOf(10), idOf(1)}));
    EXPECT_EQ(found({.query = QStringLiteral("\"number 1\"")}, LibraryFilter::all, LibrarySort::oldest),
              (QList<qint64>{idOf(1), idOf(10), idOf(11), idOf(12)}));

    store->updateLocalState(idOf(3), QStringLiteral("mine"), false, false, false);
    store->updateLocalState(idOf(4), QStringLiteral("  "), false, false, false);
    EXPECT_EQ(found({.hasNotes = true}), QList<qint64>{idOf(3)});
    EXPECT_EQ(found({.hasNotes = false}).size(), 11);
    EXPECT_EQ(found({.source = LibrarySourceRefinement::xBookmarks}), found({}));

    const Instant third = testing::makePost(3).createdAt;
    EXPECT_EQ(found({.dateFrom = third, .dateTo = third}), QList<qint64>{idOf(3)});
    EXPECT_TRUE(found({.query = QStringLiteral("source:other")}).isEmpty());
}

TEST_F(LibrarySearchOperations, FindByRowsOfTheLibrary)
{
    addPosts(3);
    connection->execute(
        "INSERT INTO tags (id, name, slug, color_hex) VALUES (11, 'My Label', 'my-label', '#111111');"
        "INSERT INTO folders (id, name, slug) VALUES (21, 'Later', 'later');");
    connection->run("INSERT INTO bookmark_tags (bookmark_id, tag_id) VALUES (?, 11)", {idOf(1)});
    connection->run("INSERT INTO bookmark_folders (bookmark_id, folder_id) VALUES (?, 21)", {idOf(2)});
    EXPECT_EQ(found({.tagID = 11}), QList<qint64>{idOf(1)});
    EXPECT_EQ(found({.query = QStringLiteral("label:\"my label\"")}), QList<qint64>{idOf(1)});
    EXPECT_EQ(found({.folderID = 21}), QList<qint64>{idOf(2)});
    EXPECT_EQ(found({.query = QStringLiteral("folder:later OR label:my-label")}),
              (QList<qint64>{idOf(2), idOf(1)}));
    EXPECT_EQ(found({.query = QStringLiteral("is:inbox")}), found({}, LibraryFilter::inbox));
    EXPECT_EQ(found({.authorID = store->bookmark(idOf(1)).author.id}).size(), 3);
    EXPECT_TRUE(found({.authorID = 999}).isEmpty());
}

TEST_F(LibrarySearchOperations, FindNoDeletedBookmark)
{
    addPosts(2);
    const qint64 deleted = idOf(1);
    store->deleteBookmarkLocally(deleted);
    EXPECT_EQ(found({}), QList<qint64>{idOf(2)});
}

TEST_F(LibrarySearchOperations, PageWithTheFullCount)
{
    addPosts(7);
    const LibraryRefinements refinements{.query = QStringLiteral("post NOT \"number 4\"")};
    const auto page = [&](qint64 limit, qint64 offset) {
        const auto all = LibraryFilter::all;
        const auto sort = LibrarySort::oldest;
        const BookmarkSearchPage result = store->searchBookmarksPage(all, refinements, limit, offset, sort);
        EXPECT_EQ(result.totalCount, 6);
        EXPECT_EQ(store->searchBookmarks(all, refinements, limit, offset, sort), result.items);
        return idsOf(result.items);
    };
    EXPECT_EQ(page(2, 0), (QList<qint64>{idOf(1), idOf(2)}));
    EXPECT_EQ(page(2, 2), (QList<qint64>{idOf(3), idOf(5)}));
    EXPECT_EQ(page(4, 4), (QList<qint64>{idOf(6), idOf(7)}));
    EXPECT_TRUE(page(2, 6).isEmpty());
    EXPECT_TRUE(page(2, 1'000).isEmpty());
    EXPECT_TRUE(page(2, std::numeric_limits<qint64>::max()).isEmpty());
    EXPECT_EQ(page(2, -3), (QList<qint64>{idOf(1), idOf(2)})) << "a negative offset acts as 0";
    EXPECT_EQ(page(0, 0), QList<qint64>{idOf(1)});
    EXPECT_EQ(page(-1, 1), QList<qint64>{idOf(2)});
    EXPECT_EQ(page(std::numeric_limits<qint64>::max(), 5), QList<qint64>{idOf(7)});
}

TEST_F(LibrarySearchOperations, LimitOnlyPages)
{
    addPosts(503);
    const LibraryRefinements refinements{.query = QStringLiteral("post")};
    const auto all = LibraryFilter::all;
    const auto sort = LibrarySort::newest;
    EXPECT_EQ(store->searchBookmarks(all, refinements, 1'000, 0, sort).size(), 500);
    EXPECT_EQ(store->searchBookmarks(all, refinements, 1'000, 500, sort).size(), 3);
    EXPECT_EQ(store->searchBookmarksPage(all, refinements, 1'000, 600, sort),
              (BookmarkSearchPage{.totalCount = 503}));
    EXPECT_EQ(found(refinements).size(), 503);
}

TEST_F(LibrarySearchOperations, FindAllAtAndBeyondALargestPage)
{
    addPosts(500);
    EXPECT_EQ(found({}).size(), 500);
    addPosts(501);
    EXPECT_EQ(found({}).size(), 501);
}

// One that stands on no page and among no 500 newest, and that every search comes to all the same.
TEST_F(LibrarySearchOperations, PassOnTheErrorOfADamagedBookmark)
{
    addPosts(501);
    connection->execute("UPDATE bookmarks SET media_json = 'damaged' WHERE id = 1");
    connection->execute("INSERT INTO tags (id, name, slug, color_hex) VALUES (11, 'a', 'a', '#111111')");
    const auto all = LibraryFilter::all;
    const auto sort = LibrarySort::newest;
    for (const char* query : {"", "is:x", "post", "nowhere"}) {
        SCOPED_TRACE(query);
        const LibraryRefinements wanted{.query = QString::fromLatin1(query)};
        const qint64 rule =
            store->createRule(u'r' + wanted.query, wanted.query, BookmarkRule::Action::tag, 11, true).id;
        EXPECT_THROW(static_cast<void>(store->searchAllBookmarks(all, wanted, sort)), Error);
        EXPECT_THROW(static_cast<void>(store->searchBookmarksPage(all, wanted, 10, 0, sort)), Error);
        EXPECT_THROW(static_cast<void>(store->searchBookmarks(all, wanted, 10, 0, sort)), Error);
        EXPECT_THROW(static_cast<void>(store->matchingBookmarkIDs(all, wanted, sort)), Error);
        EXPECT_THROW(static_cast<void>(store->countBookmarks(all, wanted)), Error);
        EXPECT_THROW(static_cast<void>(store->previewRule(rule)), Error);
        EXPECT_THROW(static_cast<void>(store->runRule(rule)), Error);
    }
    EXPECT_EQ(connection->firstRow("SELECT COUNT(*) AS n FROM bookmark_tags")->integer("n"), 0);
    EXPECT_EQ(store->countBookmarks(LibraryFilter::read, {}), 0) << "another mailbox";
    EXPECT_EQ(store->listBookmarks(all, 10, 0, sort).size(), 10) << "a page of a listing";
}

} // namespace
} // namespace mirel
