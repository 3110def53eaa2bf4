#include "testing/Printing.h"

#include "library/LibraryChanges.h"
#include "library/LibraryFilling.h"
#include "testing/TemporaryLibrary.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

class LibraryChangesOfAConnection : public ::testing::Test
{
protected:
    LibraryChangesOfAConnection()
    {
        static_cast<void>(library.open());
        connection.execute("PRAGMA foreign_keys = ON");
        testing::addBookmarks(connection, 3);
        connection.execute("INSERT INTO tags (id, name, slug, color_hex) VALUES (5, 'a', 'a', '#111111');"
                           "INSERT INTO folders (id, name, slug) VALUES (6, 'b', 'b');"
                           "INSERT INTO bookmark_tags (rowid, bookmark_id, tag_id) VALUES (21, 1, 5);"
                           "INSERT INTO bookmark_tags (rowid, bookmark_id, tag_id) VALUES (22, 2, 5);"
                           "INSERT INTO bookmark_folders (bookmark_id, folder_id) VALUES (3, 6);");
    }

    // After `sql`; what was written before is forgotten.
    ChangedRows changesOf(const char* sql)
    {
        static_cast<void>(changes.take());
        connection.execute(sql);
        return changes.take();
    }

    testing::TemporaryLibrary library;
    SQLiteConnection connection{(static_cast<void>(library.open()), library.path())};
    LibraryChanges changes{connection};
};

TEST_F(LibraryChangesOfAConnection, AreTheRowsOfTheSixTablesOnceEach)
{
    const ChangedRows rows = changes.take();
    EXPECT_EQ(rows.authors, QSet<qint64>{1});
    EXPECT_EQ(rows.bookmarks, (QSet<qint64>{1, 2, 3}));
    EXPECT_EQ(rows.tags, QSet<qint64>{5});
    EXPECT_EQ(rows.bookmarkTags, (QSet<qint64>{21, 22}));
    EXPECT_EQ(rows.folders, QSet<qint64>{6});
    EXPECT_EQ(rows.bookmarkFolders, QSet<qint64>{3});
    EXPECT_FALSE(rows.isEmpty());
    EXPECT_TRUE(changes.take().isEmpty()) << "they were taken";
}

TEST_F(LibraryChangesOfAConnection, AreThoseOfEveryKindOfWriting)
{
    EXPECT_EQ(changesOf("UPDATE bookmarks SET is_read = 1 WHERE id > 1").bookmarks, (QSet<qint64>{2, 3}));
    EXPECT_EQ(changesOf("DELETE FROM bookmark_tags WHERE bookmark_id = 2").bookmarkTags, QSet<qint64>{22});
    EXPECT_EQ(changesOf("INSERT INTO bookmark_folders VALUES (3, 6) ON CONFLICT (bookmark_id) DO UPDATE SET "
                        "folder_id = excluded.folder_id")
                  .bookmarkFolders,
              QSet<qint64>{3});
    EXPECT_EQ(changesOf("UPDATE folders SET id = 7 WHERE id = 8").folders, QSet<qint64>());
}

TEST_F(LibraryChangesOfAConnection, AreNotThoseOfOtherTables)
{
    EXPECT_TRUE(
        changesOf("INSERT INTO app_state VALUES ('key', '{}');"
                  "INSERT INTO highlights (bookmark_id, selected_text, created_at) VALUES (1, 'a', 0)")
            .isEmpty());
}

TEST_F(LibraryChangesOfAConnection, AreAlsoTheRowsThatForeignKeysDeleteAlong)
{
    const ChangedRows label = changesOf("DELETE FROM tags WHERE id = 5");
    EXPECT_EQ(label.tags, QSet<qint64>{5});
    EXPECT_EQ(label.bookmarkTags, (QSet<qint64>{21, 22}));
    const ChangedRows folder = changesOf("DELETE FROM folders WHERE id = 6");
    EXPECT_EQ(folder.folders, QSet<qint64>{6});
    EXPECT_EQ(folder.bookmarkFolders, QSet<qint64>{3});
}

TEST_F(LibraryChangesOfAConnection, AreAlsoWhatWasRolledBack)
{
    EXPECT_EQ(changesOf("BEGIN; UPDATE bookmarks SET is_read = 1 WHERE id = 2; ROLLBACK").bookmarks,
              QSet<qint64>{2});
}

// The reason for LibraryIndex::forget(). Where foreign keys are looked after, SQLite goes row by row.
TEST_F(LibraryChangesOfAConnection, AreNotTheRowsOfATableThatIsEmptiedWhole)
{
    EXPECT_TRUE(changesOf("PRAGMA foreign_keys = OFF; DELETE FROM bookmark_tags").isEmpty());
}

TEST_F(LibraryChangesOfAConnection, AreNotThoseOfAnotherConnectionWhichChangesTheVersion)
{
    const auto other = library.connect();
    static_cast<void>(changes.take());
    const qint64 version = changes.version();
    other->execute("UPDATE bookmarks SET is_read = 1 WHERE id = 1");
    EXPECT_TRUE(changes.take().isEmpty());
    const qint64 next = changes.version();
    EXPECT_NE(next, version);
    EXPECT_EQ(changes.version(), next);

    connection.execute("UPDATE bookmarks SET is_read = 0 WHERE id = 1");
    EXPECT_EQ(changes.version(), next) << "written by this connection";
    other->execute("BEGIN IMMEDIATE; UPDATE bookmarks SET is_read = 1 WHERE id = 1; ROLLBACK");
    EXPECT_EQ(changes.version(), next) << "nothing was written";
}

TEST_F(LibraryChangesOfAConnection, EndWithTheirWatcher)
{
    {
        const LibraryChanges last(connection);
    }
    EXPECT_NO_THROW(connection.execute("UPDATE bookmarks SET is_read = 1"));
}

} // namespace
} // namespace mirel
