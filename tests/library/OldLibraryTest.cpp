#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include "library/SQLiteStoreError.h"

#include <QFile>

#include <gtest/gtest.h>

namespace mirel {
namespace {

// A library as the first versions wrote it: bookmarks without thread_enriched_at, suggestions without
// applied_tag_id and assignment_created.
void createOldLibrary(const QString& path)
{
    QFile script(QStringLiteral(MIREL_TEST_FIXTURES "/first-version.sql"));
    ASSERT_TRUE(script.open(QFile::ReadOnly));
    SQLiteConnection(path).execute(script.readAll().constData());
}

class OldLibrary : public ::testing::Test
{
protected:
    void SetUp() override { createOldLibrary(library.path()); }

    std::optional<double> enrichedAt(SQLiteConnection& connection, qint64 id)
    {
        return connection.firstRow("SELECT thread_enriched_at FROM bookmarks WHERE id = ?", {id})
            ->number("thread_enriched_at");
    }

    testing::TemporaryLibrary library;
};

TEST_F(OldLibrary, GainsTheColumnsThatItLacks)
{
    const auto store = library.open();
    const auto connection = library.connect();
    EXPECT_NO_THROW(connection->run(
        "INSERT INTO tag_suggestions (bookmark_id, label_name, applied_tag_id, assignment_created, "
        "created_at) VALUES (1, 'new', NULL, 1, 0)"));
    EXPECT_THROW(connection->run("INSERT INTO tag_suggestions (bookmark_id, label_name, "
                                 "assignment_created, created_at) VALUES (1, 'bad', 2, 0)"),
                 SQLiteStoreError);
    EXPECT_EQ(connection->firstRow("SELECT assignment_created FROM tag_suggestions WHERE label_name = 'old'")
                  ->integer("assignment_created"),
              0);
}

TEST_F(OldLibrary, TakesTheSyncTimeAsEnrichmentTimeWhereThereIsAThread)
{
    const auto store = library.open();
    const auto connection = library.connect();
    EXPECT_EQ(enrichedAt(*connection, 1), 1650000000.5) << "a thread with a post";
    EXPECT_EQ(enrichedAt(*connection, 2), std::nullopt) << "an empty array";
    EXPECT_EQ(enrichedAt(*connection, 3), std::nullopt) << "an empty text";
    EXPECT_EQ(enrichedAt(*connection, 4), std::nullopt) << "blanks around an empty array";
}

TEST_F(OldLibrary, IsBroughtUpToDateOnlyOnce)
{
    library.open();
    library.connect()->execute("UPDATE bookmarks SET thread_enriched_at = 7 WHERE id = 1");
    library.open();
    EXPECT_EQ(enrichedAt(*library.connect(), 1), 7.0);
}

TEST_F(OldLibrary, KeepsItsBookmarksAndIndexesThem)
{
    const auto store = library.open();
    const Bookmark bookmark = store->bookmark(1);
    EXPECT_EQ(bookmark.text, QStringLiteral("An old thread"));
    EXPECT_EQ(bookmark.note, QStringLiteral("kept"));
    EXPECT_EQ(bookmark.thread.size(), 1);
    EXPECT_EQ(library.connect()->rows("SELECT rowid FROM bookmark_search").size(), 4U);
}

TEST_F(OldLibrary, WithAnUpToDateSuggestionsTableOnlyTheOtherColumnIsAdded)
{
    library.connect()->execute("ALTER TABLE tag_suggestions ADD COLUMN applied_tag_id INTEGER");
    EXPECT_NO_THROW(library.open());
}

} // namespace
} // namespace mirel
