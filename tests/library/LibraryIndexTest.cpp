#include "testing/Printing.h"

#include "library/IndexBench.h"
#include "library/LibraryFilling.h"
#include "support/Error.h"

#include <sqlite3.h>

namespace mirel {
namespace {

class LibraryIndexOfAConnection : public testing::IndexBench
{
};

TEST_F(LibraryIndexOfAConnection, HoldsNothingUntilItIsAsked)
{
    testing::addBookmarks(*connection, 3);
    EXPECT_EQ(index->size().bookmarks, 0);
    EXPECT_EQ(index->ids(LibraryFilter::all, LibrarySort::newest), (QList<qint64>{3, 2, 1}));
    EXPECT_EQ(index->size().bookmarks, 3);
    index->forget();
    EXPECT_EQ(index->size().bookmarks, 0);
}

TEST_F(LibraryIndexOfAConnection, TakesInWhatItsConnectionRolledBack)
{
    testing::addBookmarks(*connection, 3);
    const QList<qint64> all{3, 2, 1};
    EXPECT_EQ(found("post NOT type:article"), all);
    connection->execute("BEGIN; UPDATE bookmarks SET text = 'changed'; DELETE FROM bookmarks WHERE id = 2;"
                        "UPDATE bookmarks SET deleted_at = 1 WHERE id = 1; ROLLBACK");
    EXPECT_EQ(found("post NOT type:article"), all);
    EXPECT_EQ(found("changed"), QList<qint64>());
}

TEST_F(LibraryIndexOfAConnection, ReportsAnUnreadableBookmarkToEverySearchThatComesToIt)
{
    testing::addBookmarks(*connection, 3);
    connection->execute("UPDATE bookmarks SET is_read = 1 WHERE id <> 2;"
                        "UPDATE bookmarks SET is_archived = 1, media_json = 'damaged' WHERE id = 2");
    for (int time = 0; time < 2; ++time) {
        for (const char* query : {"post", "nowhere", "type:tweet"}) {
            EXPECT_THROW(found(query), Error);
            EXPECT_THROW(found(query, LibraryFilter::archive), Error);
        }
        EXPECT_EQ(found("post", LibraryFilter::read), (QList<qint64>{3, 1}));
        EXPECT_EQ(found("nowhere", LibraryFilter::favorites), QList<qint64>());
        EXPECT_EQ(index->ids(LibraryFilter::all, LibrarySort::newest), (QList<qint64>{3, 2, 1}));
        EXPECT_EQ(index->counts().all, 3);
    }
    connection->execute("UPDATE bookmarks SET media_json = '[]' WHERE id = 2");
    EXPECT_EQ(found("post"), (QList<qint64>{3, 2, 1}));
    other->execute("UPDATE bookmarks SET thread_json = '{' WHERE id = 3");
    EXPECT_THROW(found("post", LibraryFilter::read), Error);
    EXPECT_EQ(found("post", LibraryFilter::archive), QList<qint64>{2});
}

// References that another process left behind, to rows that come only later.
TEST_F(LibraryIndexOfAConnection, FindsAnAuthorALabelAndAFolderThatComeAfterTheirBookmarks)
{
    testing::addBookmarks(*connection, 2);
    other->execute("UPDATE bookmarks SET author_id = 9 WHERE id = 1;"
                   "INSERT INTO bookmark_tags (bookmark_id, tag_id) VALUES (2, 8);"
                   "INSERT INTO bookmark_folders (bookmark_id, folder_id) VALUES (2, 7)");
    EXPECT_EQ(found("post"), QList<qint64>{2});
    EXPECT_EQ(index->counts().all, 2);
    EXPECT_EQ(found("label:late OR folder:late OR NOT is:inbox"), QList<qint64>());
    EXPECT_EQ(found({.folderID = 7}), QList<qint64>()) << "there is no such folder";
    EXPECT_EQ(found("post", LibraryFilter::inbox), QList<qint64>()) << "the mailbox is told by the link";

    connection->execute("INSERT INTO authors (id, x_id, name, username) VALUES (9, '9', 'Mia', 'mia')");
    EXPECT_EQ(found("post"), (QList<qint64>{2, 1}));
    EXPECT_EQ(found("author:mia"), QList<qint64>{1});
    connection->execute("INSERT INTO tags (id, name, slug, color_hex) VALUES (8, 'Late', 'late', '#111111')");
    EXPECT_EQ(found("label:late"), QList<qint64>{2});
    EXPECT_EQ(found({.tagID = 8}), QList<qint64>{2});
    connection->execute("INSERT INTO folders (id, name, slug) VALUES (7, 'Late', 'late')");
    EXPECT_EQ(found("folder:late"), QList<qint64>{2});
    EXPECT_EQ(found({.folderID = 7}), QList<qint64>{2});
}

TEST_F(LibraryIndexOfAConnection, ListsAnAuthorThatComesLaterWithoutASearch)
{
    testing::addBookmarks(*connection, 2);
    other->execute("UPDATE bookmarks SET author_id = 9 WHERE id = 1");
    EXPECT_EQ(index->ids(LibraryFilter::all, LibrarySort::author), QList<qint64>{2});
    connection->execute("INSERT INTO authors (id, x_id, name, username) VALUES (9, '9', 'Abe', 'Abe')");
    EXPECT_EQ(index->ids(LibraryFilter::all, LibrarySort::author), (QList<qint64>{1, 2}));
}

// Of another process: the column takes texts, and SQL orders them after all numbers.
TEST_F(LibraryIndexOfAConnection, OrdersDatesThatAreNoNumbersAsTheTableDoes)
{
    testing::addBookmarks(*connection, 6);
    other->execute("UPDATE bookmarks SET post_created_at = 'b' WHERE id IN (2, 5);"
                   "UPDATE bookmarks SET post_created_at = 'a' WHERE id = 4;"
                   "UPDATE bookmarks SET post_created_at = x'00' WHERE id = 1;"
                   "UPDATE bookmarks SET post_created_at = 9e999 WHERE id = 3");
    const auto all = LibraryFilter::all;
    const auto store = library.open();
    const auto expectOrder = [&](const QList<qint64>& newest) {
        EXPECT_EQ(index->ids(all, LibrarySort::newest), newest);
        for (const LibrarySort sort : {LibrarySort::newest, LibrarySort::oldest})
            EXPECT_EQ(index->ids(all, sort), store->allBookmarkIDs(all, sort));
    };
    expectOrder({1, 5, 2, 4, 3, 6});
    connection->execute("UPDATE bookmarks SET post_created_at = 'c' WHERE id = 2");
    expectOrder({1, 2, 5, 4, 3, 6});
}

// What the other connection does when the first one begins to read labels, its outlines being read.
int deleteMeanwhile(unsigned int, void* other, void*, void* sql)
{
    if (QByteArrayView(static_cast<const char*>(sql)).startsWith("SELECT bt.rowid"))
        static_cast<SQLiteConnection*>(other)->execute("UPDATE bookmarks SET deleted_at = 1, author_id = 1");
    return 0;
}

TEST_F(LibraryIndexOfAConnection, PassesOverWhatAnotherProcessDeletesWhileItIsLoaded)
{
    testing::addBookmarks(*connection, 2);
    sqlite3_trace_v2(connection->handle(), SQLITE_TRACE_STMT, deleteMeanwhile, other.get());
    EXPECT_EQ(found("post OR NOT post OR type:tweet"), QList<qint64>());
    sqlite3_trace_v2(connection->handle(), 0, nullptr, nullptr);
    EXPECT_EQ(index->counts().all, 0);
}

// A label, a folder and three bookmarks, of which the second is all that the changes leave.
void fill(SQLiteConnection& connection)
{
    testing::addBookmarks(connection, 3);
    connection.execute("INSERT INTO authors (id, x_id, name, username) VALUES (2, '2', 'Zoe', 'zoe');"
                       "UPDATE bookmarks SET author_id = 2 WHERE id = 1;"
                       "INSERT INTO tags (id, name, slug, color_hex) VALUES (5, 'a', 'a', '#111111');"
                       "INSERT INTO folders (id, name, slug) VALUES (6, 'b', 'b')");
}

void change(SQLiteConnection& connection)
{
    connection.execute("INSERT INTO bookmark_tags (bookmark_id, tag_id) VALUES (2, 5);"
                       "INSERT INTO bookmark_folders (bookmark_id, folder_id) VALUES (2, 6);"
                       "UPDATE tags SET name = 'Work', slug = 'work';"
                       "UPDATE folders SET name = 'Later', slug = 'later';"
                       "UPDATE authors SET username = 'mia' WHERE id = 1;"
                       "UPDATE bookmarks SET deleted_at = 1 WHERE id = 3;"
                       "UPDATE bookmarks SET is_read = 1 WHERE id = 1;");
}

enum class Writer { own, another };

// Each statement fails in turn, until none does.
class FailingLibraryIndex : public LibraryIndexOfAConnection, public ::testing::WithParamInterface<Writer>
{
};

TEST_P(FailingLibraryIndex, AnswersTheNextTimeWhicheverStatementFailed)
{
    const auto answer = [this] {
        return QList{index->ids(LibraryFilter::all, LibrarySort::author),
                     found("label:work folder:later author:mia is:unread type:tweet"), found("post"),
                     index->ids(LibraryFilter::read, LibrarySort::author)};
    };
    const QList<QList<qint64>> right{{2, 1}, {2}, {2, 1}, {1}};
    fill(*connection);
    int failures = 0;
    for (int statement = 0;; ++statement) {
        index->forget();
        EXPECT_EQ(found("type:tweet").size(), 3) << "loaded before the changes";
        change(GetParam() == Writer::own ? *connection : *other);
        testing::failingStatements().arm(statement);
        try {
            EXPECT_EQ(answer(), right);
        } catch (const Error&) {
            ++failures;
        }
        testing::failingStatements().disarm();
        EXPECT_EQ(answer(), right) << "after the failure of statement " << statement;
        if (!testing::failingStatements().fired())
            break;
        connection->execute(
            "DELETE FROM bookmark_tags; DELETE FROM bookmark_folders;"
            "UPDATE bookmarks SET deleted_at = NULL, is_read = 0;"
            "UPDATE authors SET username = 'ada' WHERE id = 1; UPDATE tags SET slug = 'a', name = 'a'");
    }
    EXPECT_GT(failures, 5);
}

INSTANTIATE_TEST_SUITE_P(Writers, FailingLibraryIndex, ::testing::Values(Writer::own, Writer::another),
                         [](const auto& row) { return row.param == Writer::own ? "Own" : "Another"; });

// More than are kept of each.
QString longArticle(int characters)
{
    return QStringLiteral("The quick brown fox. ").repeated(characters / 21) + QStringLiteral("The end of ");
}

TEST_F(LibraryIndexOfAConnection, FindsInTextsThatAreTooLongToBeKept)
{
    testing::addBookmarks(*connection, 50, longArticle(20'000));
    EXPECT_EQ(found("\"the end of 37\""), QList<qint64>{37});
    EXPECT_EQ(found("\"the end of\"").size(), 50);
    EXPECT_EQ(found("\"post 37 the quick\""), QList<qint64>()) << "two spaces stand between";
    EXPECT_EQ(found("url:x.com/37"), QList<qint64>{37});
    EXPECT_EQ(found("url:x.com/nowhere"), QList<qint64>());
    EXPECT_LT(index->size().bytes, 50 * 2'000);

    connection->execute("UPDATE bookmarks SET content_text = content_text || 'changed' WHERE id = 20");
    EXPECT_EQ(found("of 20changed\""), QList<qint64>{20});
    connection->execute("UPDATE bookmarks SET content_text = NULL WHERE id > 1");
    EXPECT_EQ(found("\"the end of\""), QList<qint64>{1});
}

TEST_F(LibraryIndexOfAConnection, StaysWithinItsBudgetWhenBookmarksGo)
{
    testing::addBookmarks(*connection, 100);
    connection->run("UPDATE bookmarks SET content_text = ? WHERE id = 1", {longArticle(150'000)});
    EXPECT_EQ(found("\"the end of\""), QList<qint64>{1});
    EXPECT_GT(index->size().bytes, 150'000) << "the others leave room for it";
    connection->execute("UPDATE bookmarks SET deleted_at = 1 WHERE id > 10");
    EXPECT_EQ(found("\"the end of\""), QList<qint64>{1});
    EXPECT_LT(index->size().bytes, 100'000);
}

TEST_F(LibraryIndexOfAConnection, TakesAtMostTwoKilobytesForEachOfManyLongArticles)
{
    constexpr int count = 1'030;
    testing::addBookmarks(*connection, count, longArticle(1'500));
    connection->execute("INSERT INTO authors (id, x_id, name, username) "
                        "SELECT id + 10, 'x' || id, 'Ada Lovelace ' || id, 'username' || id FROM bookmarks;"
                        "UPDATE bookmarks SET author_id = id + 10;"
                        "INSERT INTO tags (id, name, slug, color_hex) VALUES (5, 'a', 'a', '#111111');"
                        "INSERT INTO tags (id, name, slug, color_hex) VALUES (6, 'b', 'b', '#111111');"
                        "INSERT INTO bookmark_tags SELECT id, 5 FROM bookmarks;"
                        "INSERT INTO bookmark_tags SELECT id, 6 FROM bookmarks WHERE id % 2 = 0;");
    EXPECT_EQ(found("type:article").size(), count);
    for (const LibrarySort sort : {LibrarySort::newest, LibrarySort::oldest, LibrarySort::author})
        EXPECT_EQ(index->ids(LibraryFilter::all, sort).size(), count);
    const LibraryIndex::Size size = index->size();
    EXPECT_EQ(size.bookmarks, count);
    EXPECT_GT(size.bytes, count * 1'000) << "most of the budget is used";
    EXPECT_LE(size.bytes, count * 2'000);
}

} // namespace
} // namespace mirel
