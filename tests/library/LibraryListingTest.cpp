#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

class LibraryListing : public ::testing::Test
{
protected:
    qint64 add(int number) { return store->upsertFromX(testing::makePost(number), library.clock.now()).id; }

    qint64 addBy(const char* username, int number, double createdAt)
    {
        SyncedBookmark post = testing::makePost(number);
        post.author.xID = QStringLiteral("author-") + QString::fromLatin1(username);
        post.author.username = QString::fromLatin1(username);
        post.createdAt = Instant::fromSecondsSince1970(createdAt);
        return store->upsertFromX(post, library.clock.now()).id;
    }

    QList<qint64> listedIDs(LibraryFilter filter, qint64 limit = 500, qint64 offset = 0,
                            LibrarySort sort = LibrarySort::newest)
    {
        QList<qint64> ids;
        for (const Bookmark& bookmark : store->listBookmarks(filter, limit, offset, sort))
            ids.append(bookmark.id);
        return ids;
    }

    testing::TemporaryLibrary library;
    std::unique_ptr<LocalLibraryStore> store = library.open();
    std::unique_ptr<SQLiteConnection> connection = library.connect();
};

TEST_F(LibraryListing, AnEmptyLibraryListsNothingAndCountsNothing)
{
    EXPECT_TRUE(listedIDs(LibraryFilter::all).isEmpty());
    EXPECT_TRUE(store->allBookmarkIDs(LibraryFilter::all, LibrarySort::newest).isEmpty());
    EXPECT_EQ(store->libraryCounts(), LibraryCounts{});
}

TEST_F(LibraryListing, OrdersByTheDateOfThePostAndThenByTheRow)
{
    const qint64 old = addBy("a", 1, 100);
    const qint64 twinOne = addBy("a", 2, 200);
    const qint64 twinTwo = addBy("a", 3, 200);
    const qint64 recent = addBy("a", 4, 300);
    EXPECT_EQ(listedIDs(LibraryFilter::all), (QList<qint64>{recent, twinTwo, twinOne, old}));
    EXPECT_EQ(listedIDs(LibraryFilter::all, 500, 0, LibrarySort::oldest),
              (QList<qint64>{old, twinOne, twinTwo, recent}));
}

TEST_F(LibraryListing, OrdersByAuthorWithoutRegardToCaseAndThenNewestFirst)
{
    const qint64 zoe = addBy("zoe", 1, 100);
    const qint64 bobOld = addBy("Bob", 2, 200);
    const qint64 alice = addBy("alice", 3, 300);
    const qint64 bobNew = addBy("Bob", 4, 400);
    EXPECT_EQ(listedIDs(LibraryFilter::all, 500, 0, LibrarySort::author),
              (QList<qint64>{alice, bobNew, bobOld, zoe}));
}

TEST_F(LibraryListing, EachMailboxHoldsItsBookmarks)
{
    const qint64 plain = add(1);
    const qint64 read = add(2);
    const qint64 favorite = add(3);
    const qint64 archived = add(4);
    const qint64 filed = add(5);
    const qint64 deleted = add(6);
    const qint64 everything = add(7);
    store->updateLocalState(read, {}, true, false, false);
    store->updateLocalState(favorite, {}, true, true, false);
    store->updateLocalState(archived, {}, false, false, true);
    store->updateLocalState(everything, {}, true, true, true);
    connection->execute("INSERT INTO folders (name, slug) VALUES ('a', 'a')");
    connection->run("INSERT INTO bookmark_folders VALUES (?, 1)", {filed});
    store->deleteBookmarkLocally(deleted);

    EXPECT_EQ(listedIDs(LibraryFilter::all),
              (QList<qint64>{everything, filed, archived, favorite, read, plain}));
    EXPECT_EQ(listedIDs(LibraryFilter::inbox), (QList<qint64>{read, plain})) << "reading takes nothing out";
    EXPECT_EQ(listedIDs(LibraryFilter::read), (QList<qint64>{everything, favorite, read}));
    EXPECT_EQ(listedIDs(LibraryFilter::favorites), (QList<qint64>{everything, favorite}));
    EXPECT_EQ(listedIDs(LibraryFilter::archive), (QList<qint64>{everything, archived}));
    EXPECT_EQ(store->libraryCounts(),
              (LibraryCounts{.all = 6, .inbox = 2, .read = 3, .favorites = 2, .archive = 2}));
}

TEST_F(LibraryListing, ClampsTheLimitAndTheOffset)
{
    for (int number = 1; number <= 503; ++number)
        add(number);
    EXPECT_EQ(listedIDs(LibraryFilter::all, 0).size(), 1);
    EXPECT_EQ(listedIDs(LibraryFilter::all, -5).size(), 1);
    EXPECT_EQ(listedIDs(LibraryFilter::all, 10'000).size(), 500);
    EXPECT_EQ(listedIDs(LibraryFilter::all, 10, -3), listedIDs(LibraryFilter::all, 10, 0));
    EXPECT_EQ(listedIDs(LibraryFilter::all, 500, 500).size(), 3);
    EXPECT_TRUE(listedIDs(LibraryFilter::all, 10, 503).isEmpty());
    EXPECT_EQ(store->allBookmarkIDs(LibraryFilter::all, LibrarySort::newest).size(), 503);
}

TEST_F(LibraryListing, PagesFollowOneAnotherWithoutGapOrRepeat)
{
    for (int number = 1; number <= 7; ++number)
        add(number);
    QList<qint64> paged;
    for (qint64 offset = 0; offset < 7; offset += 3)
        paged += listedIDs(LibraryFilter::all, 3, offset);
    EXPECT_EQ(paged, store->allBookmarkIDs(LibraryFilter::all, LibrarySort::newest));
}

TEST_F(LibraryListing, AListedBookmarkEqualsTheOneThatIsReadAlone)
{
    const qint64 id = add(1);
    const qint64 other = add(2);
    connection->execute(
        "INSERT INTO tags (name, slug, color_hex) VALUES ('b', 'b', '#111111'), ('A', 'a', '#222222');"
        "INSERT INTO bookmark_tags SELECT 1, id FROM tags;"
        "INSERT INTO folders (name, slug) VALUES ('a', 'a');"
        "INSERT INTO bookmark_folders VALUES (1, 1);");
    const QList<Bookmark> listed = store->listBookmarks(LibraryFilter::all, 10, 0, LibrarySort::oldest);
    ASSERT_EQ(listed.size(), 2);
    EXPECT_EQ(listed[0], store->bookmark(id));
    EXPECT_EQ(listed[1], store->bookmark(other));
}

TEST(MailboxesAndOrders, HaveTheirNamesInTheirOrder)
{
    QStringList names;
    for (const auto& mailbox : rawValues(LibraryFilter()))
        names.append(mailbox.text);
    EXPECT_EQ(names.join(u' '), QStringLiteral("all inbox read favorites archive"));
    names.clear();
    for (const auto& order : rawValues(LibrarySort()))
        names.append(order.text);
    EXPECT_EQ(names.join(u' '), QStringLiteral("newest oldest author"));
}

} // namespace
} // namespace mirel
