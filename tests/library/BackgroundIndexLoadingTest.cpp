#include "testing/Printing.h"

#include "library/ConnectionWatcher.h"
#include "library/IndexBench.h"
#include "library/LibraryFilling.h"
#include "library/SQLiteStoreError.h"
#include "testing/FailingThreads.h"

#include <QFile>
#include <QThread>

#include <numeric>

namespace mirel {
namespace {

using testing::ConnectionWatcher;

QList<qint64> newestFirst(int count)
{
    QList<qint64> ids(count);
    std::iota(ids.rbegin(), ids.rend(), 1);
    return ids;
}

qint64 countOf(LocalLibraryStore& store, const char* query)
{
    return store
        .searchBookmarksPage(LibraryFilter::all, {.query = QString::fromUtf8(query)}, 50, 0,
                             LibrarySort::newest)
        .totalCount;
}

class LoadingAhead : public testing::IndexBench
{
protected:
    void SetUp() override
    {
        if (QThread::idealThreadCount() < 2)
            GTEST_SKIP() << "this machine has one processor";
    }

    // Until all has been read, and none of it taken in.
    void loadAhead()
    {
        const ConnectionWatcher watcher;
        index->beginLoadingAhead();
        ConnectionWatcher::waitUntilClosed(1);
    }
};

TEST_F(LoadingAhead, LeavesNothingToReadForTheFirstSearch)
{
    testing::addBookmarks(*connection, 450);
    loadAhead();
    index->endLoadingAhead();
    // One statement finds out whether anything was written.
    testing::failingStatements().arm(1);
    EXPECT_EQ(found("type:tweet post"), newestFirst(450));
    EXPECT_FALSE(testing::failingStatements().fired());
}

TEST_F(LoadingAhead, LeavesTheRestToTheFirstSearchWhenItIsEndedEarly)
{
    testing::addBookmarks(*connection, 5'000);
    index->beginLoadingAhead();
    index->endLoadingAhead();
    EXPECT_EQ(found("type:tweet post"), newestFirst(5'000));
}

TEST_F(LoadingAhead, TakesInWhatItsConnectionWroteMeanwhile)
{
    testing::addBookmarks(*connection, 6);
    connection->execute("INSERT INTO tags (id, name, slug, color_hex) VALUES (1, 'Old', 'old', '#000000');"
                        "INSERT INTO folders (id, name, slug) VALUES (1, 'Drawer', 'drawer');"
                        "INSERT INTO bookmark_tags (bookmark_id, tag_id) VALUES (1, 1), (2, 1);"
                        "INSERT INTO bookmark_folders (bookmark_id, folder_id) VALUES (3, 1)");
    loadAhead();
    connection->execute("UPDATE tags SET name = 'New', slug = 'new';"
                        "DELETE FROM bookmark_tags WHERE bookmark_id = 2;"
                        "UPDATE folders SET name = 'Box', slug = 'box';"
                        "UPDATE bookmarks SET text = 'changed', is_read = 1 WHERE id = 4;"
                        "UPDATE bookmarks SET deleted_at = 1 WHERE id = 5;"
                        "UPDATE authors SET username = 'lovelace'");
    index->endLoadingAhead();
    EXPECT_EQ(found("label:new"), QList<qint64>{1});
    EXPECT_EQ(found("label:old"), QList<qint64>());
    EXPECT_EQ(found("folder:box"), QList<qint64>{3});
    EXPECT_EQ(found("changed is:read"), QList<qint64>{4});
    EXPECT_EQ(found("author:lovelace"), (QList<qint64>{6, 4, 3, 2, 1}));
}

TEST_F(LoadingAhead, TakesInWhatAnotherConnectionWroteMeanwhile)
{
    testing::addBookmarks(*connection, 3);
    loadAhead();
    other->execute("UPDATE bookmarks SET text = 'changed' WHERE id = 2; DELETE FROM bookmarks WHERE id = 1");
    index->endLoadingAhead();
    EXPECT_EQ(found("changed"), QList<qint64>{2});
    EXPECT_EQ(found("post"), QList<qint64>{3});
}

TEST_F(LoadingAhead, TakesInWhatIsWrittenAfterIt)
{
    testing::addBookmarks(*connection, 3);
    loadAhead();
    index->endLoadingAhead();
    connection->execute("UPDATE bookmarks SET text = 'mine' WHERE id = 2");
    other->execute("UPDATE bookmarks SET text = 'theirs' WHERE id = 3");
    EXPECT_EQ(found("mine"), QList<qint64>{2});
    EXPECT_EQ(found("theirs"), QList<qint64>{3});
}

TEST_F(LoadingAhead, FindsLongTextsThatItDoesNotKeep)
{
    testing::addBookmarks(*connection, 50, QStringLiteral("long ").repeated(4'000));
    loadAhead();
    index->endLoadingAhead();
    EXPECT_LE(index->size().bytes, 50 * 2'048);
    EXPECT_EQ(found("\"short 17\""), QList<qint64>());
    EXPECT_EQ(found("\"long 17\""), QList<qint64>{17});
}

TEST_F(LoadingAhead, ReportsAnUnreadableBookmarkToTheSearchThatComesToIt)
{
    testing::addBookmarks(*connection, 3);
    connection->execute("UPDATE bookmarks SET media_json = 'damaged', is_archived = 1 WHERE id = 2");
    loadAhead();
    index->endLoadingAhead();
    EXPECT_THROW(found("post"), Error);
    connection->execute("UPDATE bookmarks SET media_json = '[]' WHERE id = 2");
    EXPECT_EQ(found("post"), newestFirst(3));
}

TEST_F(LoadingAhead, StaysAwayFromALibraryThatAReaderWouldBlock)
{
    testing::addBookmarks(*connection, 3);
    other.reset();
    connection->execute("PRAGMA journal_mode = DELETE");
    const ConnectionWatcher watcher;
    index->beginLoadingAhead();
    index->endLoadingAhead();
    EXPECT_EQ(ConnectionWatcher::opened, 0);
    EXPECT_EQ(found("post"), newestFirst(3));
}

TEST_F(LoadingAhead, ReadsNothingWhenItGetsNoConnection)
{
    testing::addBookmarks(*connection, 3);
    {
        const ConnectionWatcher watcher;
        ConnectionWatcher::refuses = true;
        index->beginLoadingAhead();
        index->endLoadingAhead();
    }
    EXPECT_EQ(found("post"), newestFirst(3));
}

TEST_F(LoadingAhead, LeavesAllToTheFirstSearchWhenItGetsNoThread)
{
    testing::addBookmarks(*connection, 3);
    testing::failingThreads().arm(0);
    index->beginLoadingAhead();
    EXPECT_TRUE(testing::failingThreads().fired());
    index->endLoadingAhead();
    EXPECT_EQ(found("post"), newestFirst(3));
}

TEST_F(LoadingAhead, EndsWithItsIndex)
{
    testing::addBookmarks(*connection, 5'000);
    const ConnectionWatcher watcher;
    index->beginLoadingAhead();
    index.reset();
    EXPECT_EQ(ConnectionWatcher::closed, ConnectionWatcher::opened);
}

TEST(OpeningForSearching, CreatesANewLibrary)
{
    const testing::TemporaryLibrary library;
    const auto store = library.open(SearchPreparation::whileOpening);
    store->upsertFromX(testing::makePost(1), Instant());
    EXPECT_EQ(countOf(*store, "post"), 1);
}

TEST(OpeningForSearching, FindsWhatIsInTheLibrary)
{
    const testing::TemporaryLibrary library;
    auto store = library.open();
    for (int number = 1; number <= 300; ++number)
        store->upsertFromX(testing::makePost(number), Instant());
    store = library.open(SearchPreparation::whileOpening);
    EXPECT_EQ(countOf(*store, "post type:tweet"), 300);
    EXPECT_EQ(store->libraryCounts().all, 300);
}

TEST(OpeningForSearching, FailsForADamagedFileAsAnyOpeningDoes)
{
    const testing::TemporaryLibrary library;
    QFile file(library.path());
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(QByteArray(8'192, 'x'));
    file.close();
    const auto failureOf = [&library](SearchPreparation preparation) {
        try {
            static_cast<void>(library.open(preparation));
            return QString();
        } catch (const SQLiteStoreError& error) {
            return error.description();
        }
    };
    EXPECT_FALSE(failureOf(SearchPreparation::onDemand).isEmpty());
    EXPECT_EQ(failureOf(SearchPreparation::whileOpening), failureOf(SearchPreparation::onDemand));
}

} // namespace
} // namespace mirel
