#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include "library/SQLiteStoreError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace mirel {
namespace {

using ::testing::UnorderedElementsAre;

// One line a column: name, type, "NOT NULL", default, "KEY" and its place in the primary key.
std::vector<std::string> columnsOf(SQLiteConnection& connection, const char* table)
{
    std::vector<std::string> lines;
    for (const SQLiteRow& row : connection.rows(QByteArray("PRAGMA table_info(") + table + ")")) {
        QString line = *row.text("name") + u' ' + *row.text("type");
        if (row.boolean("notnull"))
            line += QStringLiteral(" NOT NULL");
        if (const auto defaultValue = row.text("dflt_value"))
            line += QStringLiteral(" DEFAULT ") + *defaultValue;
        if (const auto place = row.integer("pk"); place && *place > 0)
            line += QStringLiteral(" KEY ") + QString::number(*place);
        lines.push_back(line.toStdString());
    }
    return lines;
}

std::vector<std::string> foreignKeysOf(SQLiteConnection& connection, const char* table)
{
    std::vector<std::string> lines;
    for (const SQLiteRow& row : connection.rows(QByteArray("PRAGMA foreign_key_list(") + table + ")")) {
        lines.push_back((*row.text("from") + QStringLiteral(" > ") + *row.text("table") + u'.' +
                         *row.text("to") + u' ' + *row.text("on_delete"))
                            .toStdString());
    }
    return lines;
}

// One line an index: its origin ("u" unique, "pk" primary key, "c" explicit) and its columns.
std::vector<std::string> indexesOf(SQLiteConnection& connection, const char* table)
{
    std::vector<std::string> lines;
    for (const SQLiteRow& index : connection.rows(QByteArray("PRAGMA index_list(") + table + ")")) {
        QString line = *index.text("origin");
        if (line == QStringLiteral("c"))
            line += u' ' + *index.text("name");
        for (const SQLiteRow& column :
             connection.rows("PRAGMA index_xinfo(" + index.utf8("name").value() + ")")) {
            if (!column.boolean("key"))
                continue;
            line += u' ' + *column.text("name");
            if (*column.text("coll") != QStringLiteral("BINARY"))
                line += u' ' + *column.text("coll");
        }
        lines.push_back(line.toStdString());
    }
    return lines;
}

struct TableCase
{
    const char* name;
    std::vector<std::string> columns;
    std::vector<std::string> foreignKeys;
    std::vector<std::string> indexes;
};

void PrintTo(const TableCase& table, std::ostream* stream)
{
    *stream << table.name;
}

class LibraryTable : public ::testing::TestWithParam<TableCase>
{
};

TEST_P(LibraryTable, HasItsColumnsForeignKeysAndIndexes)
{
    const testing::TemporaryLibrary library;
    library.open();
    const auto connection = library.connect();
    EXPECT_THAT(columnsOf(*connection, GetParam().name), ::testing::ElementsAreArray(GetParam().columns));
    EXPECT_THAT(foreignKeysOf(*connection, GetParam().name),
                ::testing::UnorderedElementsAreArray(GetParam().foreignKeys));
    EXPECT_THAT(indexesOf(*connection, GetParam().name),
                ::testing::UnorderedElementsAreArray(GetParam().indexes));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, LibraryTable,
    ::testing::Values(
        TableCase{"authors",
                  {"id INTEGER KEY 1", "x_id TEXT NOT NULL", "name TEXT NOT NULL", "username TEXT NOT NULL",
                   "profile_image_url TEXT"},
                  {},
                  {"u x_id"}},
        TableCase{"bookmarks",
                  {"id INTEGER KEY 1",
                   "tweet_id TEXT NOT NULL",
                   "conversation_id TEXT",
                   "author_id INTEGER NOT NULL",
                   "text TEXT NOT NULL",
                   "content_title TEXT",
                   "content_text TEXT",
                   "language TEXT",
                   "source_url TEXT NOT NULL",
                   "post_created_at REAL NOT NULL",
                   "synced_at REAL NOT NULL",
                   "view_count INTEGER NOT NULL DEFAULT 0",
                   "repost_count INTEGER NOT NULL DEFAULT 0",
                   "bookmark_count INTEGER NOT NULL DEFAULT 0",
                   "reply_count INTEGER NOT NULL DEFAULT 0",
                   "quote_count INTEGER NOT NULL DEFAULT 0",
                   "like_count INTEGER NOT NULL DEFAULT 0",
                   "media_json TEXT NOT NULL DEFAULT '[]'",
                   "quoted_json TEXT NOT NULL DEFAULT 'null'",
                   "thread_json TEXT NOT NULL DEFAULT '[]'",
                   "thread_enriched_at REAL",
                   "raw_json TEXT NOT NULL DEFAULT '{}'",
                   "note TEXT",
                   "is_read INTEGER NOT NULL DEFAULT 0",
                   "is_favorite INTEGER NOT NULL DEFAULT 0",
                   "is_archived INTEGER NOT NULL DEFAULT 0",
                   "reviewed_at REAL",
                   "deleted_at REAL"},
                  {"author_id > authors.id NO ACTION"},
                  {"u tweet_id"}},
        TableCase{"tags",
                  {"id INTEGER KEY 1", "name TEXT NOT NULL", "slug TEXT NOT NULL", "color_hex TEXT NOT NULL",
                   "source TEXT NOT NULL DEFAULT 'manual'"},
                  {},
                  {"u name NOCASE", "u slug"}},
        TableCase{"bookmark_tags",
                  {"bookmark_id INTEGER NOT NULL KEY 1", "tag_id INTEGER NOT NULL KEY 2"},
                  {"bookmark_id > bookmarks.id CASCADE", "tag_id > tags.id CASCADE"},
                  {"pk bookmark_id tag_id"}},
        TableCase{"folders",
                  {"id INTEGER KEY 1", "name TEXT NOT NULL", "slug TEXT NOT NULL", "description TEXT",
                   "parent_id INTEGER", "source TEXT NOT NULL DEFAULT 'local'", "x_folder_id TEXT"},
                  {"parent_id > folders.id SET NULL"},
                  {"u name NOCASE", "u slug", "u x_folder_id"}},
        TableCase{"bookmark_folders",
                  {"bookmark_id INTEGER KEY 1", "folder_id INTEGER NOT NULL"},
                  {"bookmark_id > bookmarks.id CASCADE", "folder_id > folders.id CASCADE"},
                  {}},
        TableCase{"highlights",
                  {"id INTEGER KEY 1", "bookmark_id INTEGER NOT NULL", "selected_text TEXT NOT NULL",
                   "context_text TEXT", "start_offset INTEGER NOT NULL DEFAULT 0",
                   "end_offset INTEGER NOT NULL DEFAULT 0", "color_hex TEXT NOT NULL DEFAULT '#fde68a'",
                   "created_at REAL NOT NULL"},
                  {"bookmark_id > bookmarks.id CASCADE"},
                  {}},
        TableCase{"bookmark_rules",
                  {"id INTEGER KEY 1", "name TEXT NOT NULL", "query TEXT NOT NULL", "action TEXT NOT NULL",
                   "target_id INTEGER NOT NULL", "is_enabled INTEGER NOT NULL DEFAULT 1", "last_run_at REAL",
                   "last_match_count INTEGER NOT NULL DEFAULT 0"},
                  {},
                  {"u name NOCASE"}},
        TableCase{"app_state", {"key TEXT KEY 1", "value_json TEXT NOT NULL"}, {}, {"pk key"}},
        TableCase{"sync_runs",
                  {"id INTEGER KEY 1", "kind TEXT NOT NULL", "status TEXT NOT NULL",
                   "pages INTEGER NOT NULL DEFAULT 0", "fetched INTEGER NOT NULL DEFAULT 0",
                   "created INTEGER NOT NULL DEFAULT 0", "updated INTEGER NOT NULL DEFAULT 0",
                   "error_message TEXT", "rate_limit_reset_at REAL", "started_at REAL", "completed_at REAL",
                   "created_at REAL NOT NULL"},
                  {},
                  {}},
        TableCase{"sync_log_entries",
                  {"id INTEGER KEY 1", "sync_run_id INTEGER NOT NULL", "event TEXT NOT NULL",
                   "message TEXT NOT NULL", "page INTEGER", "requested INTEGER", "received INTEGER",
                   "reported INTEGER", "cumulative INTEGER", "has_next_page INTEGER",
                   "created_at REAL NOT NULL"},
                  {"sync_run_id > sync_runs.id CASCADE"},
                  {"c sync_log_entries_run_id_created_at sync_run_id created_at id"}},
        TableCase{"bookmark_insights",
                  {"bookmark_id INTEGER KEY 1", "summary TEXT NOT NULL", "key_idea TEXT NOT NULL",
                   "labels_json TEXT NOT NULL DEFAULT '[]'", "model TEXT NOT NULL",
                   "generated_at REAL NOT NULL"},
                  {"bookmark_id > bookmarks.id CASCADE"},
                  {}},
        TableCase{"tag_suggestions",
                  {"id INTEGER KEY 1", "bookmark_id INTEGER NOT NULL", "label_name TEXT NOT NULL",
                   "status TEXT NOT NULL DEFAULT 'pending'", "applied_tag_id INTEGER",
                   "assignment_created INTEGER NOT NULL DEFAULT 0", "created_at REAL NOT NULL",
                   "reviewed_at REAL"},
                  {"bookmark_id > bookmarks.id CASCADE", "applied_tag_id > tags.id SET NULL"},
                  {"u bookmark_id label_name"}},
        TableCase{"auto_label_runs",
                  {"id TEXT KEY 1", "status TEXT NOT NULL DEFAULT 'queued'",
                   "existing_labels_only INTEGER NOT NULL DEFAULT 1", "total INTEGER NOT NULL DEFAULT 0",
                   "processed INTEGER NOT NULL DEFAULT 0", "failed INTEGER NOT NULL DEFAULT 0",
                   "last_error TEXT", "started_at REAL", "finished_at REAL", "created_at REAL NOT NULL",
                   "updated_at REAL NOT NULL"},
                  {},
                  {"pk id"}},
        TableCase{"chats",
                  {"id TEXT KEY 1", "title TEXT NOT NULL", "is_archived INTEGER NOT NULL DEFAULT 0",
                   "created_at REAL NOT NULL", "updated_at REAL NOT NULL"},
                  {},
                  {"pk id"}},
        TableCase{"chat_messages",
                  {"id INTEGER KEY 1", "chat_id TEXT NOT NULL", "role TEXT NOT NULL", "content TEXT NOT NULL",
                   "citations_json TEXT NOT NULL DEFAULT '[]'", "created_at REAL NOT NULL"},
                  {"chat_id > chats.id CASCADE"},
                  {}},
        TableCase{"chat_sources",
                  {"chat_message_id INTEGER NOT NULL KEY 1", "bookmark_id INTEGER NOT NULL KEY 2"},
                  {"chat_message_id > chat_messages.id CASCADE", "bookmark_id > bookmarks.id CASCADE"},
                  {"pk chat_message_id bookmark_id"}},
        TableCase{"ai_usage",
                  {"id INTEGER KEY 1", "feature TEXT NOT NULL", "model TEXT NOT NULL",
                   "input_tokens INTEGER NOT NULL DEFAULT 0", "output_tokens INTEGER NOT NULL DEFAULT 0",
                   "reasoning_tokens INTEGER NOT NULL DEFAULT 0", "latency_ms INTEGER NOT NULL DEFAULT 0",
                   "succeeded INTEGER NOT NULL", "error_message TEXT",
                   "estimated_cost_usd REAL NOT NULL DEFAULT 0", "created_at REAL NOT NULL"},
                  {},
                  {}}),
    [](const auto& row) { return row.param.name; });

TEST(LibrarySchema, HasTheseTablesTriggersAndIndexesAndNoOthers)
{
    const testing::TemporaryLibrary library;
    library.open();
    std::vector<std::string> names;
    for (const SQLiteRow& row : library.connect()->rows(
             "SELECT type || ' ' || name AS entry FROM sqlite_master WHERE name NOT LIKE 'sqlite_%' "
             "AND name NOT LIKE 'bookmark_search_%'"))
        names.push_back(row.text("entry")->toStdString());
    EXPECT_THAT(names,
                UnorderedElementsAre(
                    "table authors", "table bookmarks", "table bookmark_search",
                    "trigger bookmarks_search_insert", "trigger bookmarks_search_update",
                    "trigger bookmarks_search_delete", "table tags", "table bookmark_tags", "table folders",
                    "table bookmark_folders", "table highlights", "table bookmark_rules", "table app_state",
                    "table sync_runs", "table sync_log_entries", "index sync_log_entries_run_id_created_at",
                    "table bookmark_insights", "table tag_suggestions", "table auto_label_runs",
                    "table chats", "table chat_messages", "table chat_sources", "table ai_usage"));
}

class LibrarySchemaOnOneLibrary : public ::testing::Test
{
protected:
    testing::TemporaryLibrary library;
    std::unique_ptr<LocalLibraryStore> store = library.open();
    std::unique_ptr<SQLiteConnection> connection = library.connect();

    // The columns of the index for one bookmark, joined; empty when it is not there.
    std::string indexed(qint64 id)
    {
        const auto row = connection->firstRow(
            "SELECT title || '|' || body || '|' || note || '|' || author_name || '|' || author_username "
            "AS line FROM bookmark_search WHERE bookmark_id = ?",
            {id});
        return row ? row->text("line")->toStdString() : std::string();
    }

    void expectRejected(const char* sql)
    {
        connection->execute("PRAGMA foreign_keys = ON");
        EXPECT_THROW(connection->execute(sql), SQLiteStoreError) << sql;
    }
};

TEST_F(LibrarySchemaOnOneLibrary, UsesForeignKeysAndAWriteAheadLog)
{
    EXPECT_EQ(connection->firstRow("PRAGMA journal_mode")->text("journal_mode"), QStringLiteral("wal"));
    store->upsertFromX(testing::makePost(1), library.clock.now());
    connection->run("INSERT INTO highlights (bookmark_id, selected_text, created_at) VALUES (1, 'a', 0)");
    store->purgeAllLocalData();
    EXPECT_EQ(connection->firstRow("SELECT COUNT(*) AS n FROM highlights")->integer("n"), 0);
}

TEST_F(LibrarySchemaOnOneLibrary, ChecksItsFlagsAndEnumerations)
{
    store->upsertFromX(testing::makePost(1), library.clock.now());
    expectRejected("UPDATE bookmarks SET is_read = 2");
    expectRejected("UPDATE bookmarks SET is_favorite = 2");
    expectRejected("UPDATE bookmarks SET is_archived = -1");
    expectRejected(
        "INSERT INTO bookmark_rules (name, query, action, target_id) VALUES ('a', 'b', 'move', 1)");
    expectRejected("INSERT INTO bookmark_rules (name, query, action, target_id, is_enabled) "
                   "VALUES ('a', 'b', 'tag', 1, 2)");
    connection->execute("INSERT INTO sync_runs (kind, status, created_at) VALUES ('manual', 'queued', 0)");
    expectRejected("INSERT INTO sync_log_entries (sync_run_id, event, message, created_at) "
                   "VALUES (1, 'paused', 'a', 0)");
    expectRejected("INSERT INTO sync_log_entries (sync_run_id, event, message, has_next_page, created_at) "
                   "VALUES (1, 'page', 'a', 2, 0)");
    expectRejected("INSERT INTO tag_suggestions (bookmark_id, label_name, assignment_created, created_at) "
                   "VALUES (1, 'a', 2, 0)");
    expectRejected("INSERT INTO auto_label_runs (id, existing_labels_only, created_at, updated_at) "
                   "VALUES ('a', 2, 0, 0)");
    expectRejected("INSERT INTO chats (id, title, is_archived, created_at, updated_at) "
                   "VALUES ('a', 'b', 2, 0, 0)");
    connection->execute("INSERT INTO chats (id, title, created_at, updated_at) VALUES ('a', 'b', 0, 0)");
    expectRejected("INSERT INTO chat_messages (chat_id, role, content, created_at) "
                   "VALUES ('a', 'system', 'c', 0)");
    expectRejected("INSERT INTO ai_usage (feature, model, succeeded, created_at) VALUES ('a', 'b', 2, 0)");
}

TEST_F(LibrarySchemaOnOneLibrary, IndexesABookmarkAsItIsInsertedUpdatedAndDeleted)
{
    SyncedBookmark post = testing::makePost(1);
    post.contentTitle = QStringLiteral("Title");
    post.contentText = QStringLiteral("Body");
    post.text = QStringLiteral("Text");
    const qint64 id = store->upsertFromX(post, library.clock.now()).id;
    EXPECT_EQ(indexed(id), "Title|Text Body||Ada Lovelace|ada");

    store->updateLocalState(id, QStringLiteral("mine"), false, false, false);
    EXPECT_EQ(indexed(id), "Title|Text Body|mine|Ada Lovelace|ada");
    EXPECT_EQ(connection->rows("SELECT rowid FROM bookmark_search").size(), 1U);

    connection->run("DELETE FROM bookmarks WHERE id = ?", {id});
    EXPECT_EQ(indexed(id), "");
}

TEST_F(LibrarySchemaOnOneLibrary, TheIndexFindsWordsWithoutTheirAccents)
{
    SyncedBookmark post = testing::makePost(1);
    post.text = QStringLiteral("Crème brûlée");
    store->upsertFromX(post, library.clock.now());
    EXPECT_TRUE(
        connection->firstRow("SELECT bookmark_id FROM bookmark_search WHERE bookmark_search MATCH 'creme'"));
}

TEST_F(LibrarySchemaOnOneLibrary, ADeletedBookmarkLeavesTheIndexAtTheNextOpenAndKeepsItsRowAndLabels)
{
    const qint64 id = store->upsertFromX(testing::makePost(1), library.clock.now()).id;
    connection->execute("INSERT INTO tags (name, slug, color_hex) VALUES ('a', 'a', '#000000');"
                        "INSERT INTO bookmark_tags VALUES (1, 1);");
    store->deleteBookmarkLocally(id);
    EXPECT_NE(indexed(id), "") << "until the next open it stays";
    store.reset();
    store = library.open();
    EXPECT_EQ(indexed(id), "");
    EXPECT_TRUE(connection->firstRow("SELECT id FROM bookmarks WHERE id = ?", {id}));
    EXPECT_TRUE(connection->firstRow("SELECT tag_id FROM bookmark_tags WHERE bookmark_id = ?", {id}));
}

TEST_F(LibrarySchemaOnOneLibrary, ResyncingADeletedBookmarkPutsItBackInTheIndexUntilTheNextOpen)
{
    const qint64 id = store->upsertFromX(testing::makePost(1), library.clock.now()).id;
    store->deleteBookmarkLocally(id);
    store.reset();
    store = library.open();
    EXPECT_THROW(store->upsertFromX(testing::makePost(1), library.clock.now()), SQLiteStoreError);
    EXPECT_NE(indexed(id), "");
    store.reset();
    store = library.open();
    EXPECT_EQ(indexed(id), "");
}

TEST_F(LibrarySchemaOnOneLibrary, AChangedNameOfAnAuthorReachesTheIndexAtTheNextOpen)
{
    const qint64 first = store->upsertFromX(testing::makePost(1), library.clock.now()).id;
    SyncedBookmark second = testing::makePost(2);
    second.author.name = QStringLiteral("Countess");
    store->upsertFromX(second, library.clock.now());
    EXPECT_THAT(indexed(first), ::testing::HasSubstr("Ada Lovelace"));
    store.reset();
    store = library.open();
    EXPECT_THAT(indexed(first), ::testing::HasSubstr("Countess"));
}

TEST_F(LibrarySchemaOnOneLibrary, OpeningTwiceAddsNothing)
{
    store->upsertFromX(testing::makePost(1), library.clock.now());
    store->upsertFromX(testing::makePost(2), library.clock.now());
    const auto before = connection->rows("SELECT type, name, sql FROM sqlite_master ORDER BY name").size();
    store.reset();
    store = library.open();
    const auto second = library.open();
    EXPECT_EQ(connection->rows("SELECT type, name, sql FROM sqlite_master ORDER BY name").size(), before);
    EXPECT_EQ(connection->rows("SELECT id FROM bookmarks").size(), 2U);
    EXPECT_EQ(connection->rows("SELECT rowid FROM bookmark_search").size(), 2U);
}

TEST_F(LibrarySchemaOnOneLibrary, PurgingEmptiesEveryTableAndTheIndex)
{
    store->upsertFromX(testing::makePost(1), library.clock.now());
    connection->execute(
        "INSERT INTO tags (name, slug, color_hex) VALUES ('a', 'a', '#000000');"
        "INSERT INTO bookmark_tags VALUES (1, 1);"
        "INSERT INTO folders (name, slug) VALUES ('a', 'a');"
        "INSERT INTO bookmark_folders VALUES (1, 1);"
        "INSERT INTO highlights (bookmark_id, selected_text, created_at) VALUES (1, 'a', 0);"
        "INSERT INTO bookmark_rules (name, query, action, target_id) VALUES ('a', 'b', 'tag', 1);"
        "INSERT INTO app_state VALUES ('preferences', '{}');"
        "INSERT INTO sync_runs (kind, status, created_at) VALUES ('manual', 'queued', 0);"
        "INSERT INTO sync_log_entries (sync_run_id, event, message, created_at) VALUES (1, 'page', 'a', 0);"
        "INSERT INTO bookmark_insights (bookmark_id, summary, key_idea, model, generated_at) "
        "VALUES (1, 'a', 'b', 'c', 0);"
        "INSERT INTO tag_suggestions (bookmark_id, label_name, created_at) VALUES (1, 'a', 0);"
        "INSERT INTO auto_label_runs (id, created_at, updated_at) VALUES ('a', 0, 0);"
        "INSERT INTO chats (id, title, created_at, updated_at) VALUES ('a', 'b', 0, 0);"
        "INSERT INTO chat_messages (chat_id, role, content, created_at) VALUES ('a', 'user', 'c', 0);"
        "INSERT INTO chat_sources VALUES (1, 1);"
        "INSERT INTO ai_usage (feature, model, succeeded, created_at) VALUES ('a', 'b', 1, 0);");
    store->purgeAllLocalData();
    for (const SQLiteRow& table : connection->rows(
             "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'bookmark_search_%'")) {
        const QByteArray name = table.utf8("name").value();
        EXPECT_EQ(connection->firstRow("SELECT COUNT(*) AS n FROM " + name)->integer("n"), 0) << name.data();
    }
}

TEST_F(LibrarySchemaOnOneLibrary, AFailedPurgeLeavesTheStoreUsableAndTheDataWhole)
{
    store->upsertFromX(testing::makePost(1), library.clock.now());
    connection->execute(
        "CREATE TRIGGER refuse BEFORE DELETE ON authors BEGIN SELECT RAISE(ABORT, 'no'); END");
    EXPECT_THROW(store->purgeAllLocalData(), SQLiteStoreError);
    EXPECT_EQ(store->libraryCounts().all, 1);
    connection->execute("DROP TRIGGER refuse");
    store->upsertFromX(testing::makePost(2), library.clock.now());
    EXPECT_EQ(store->libraryCounts().all, 2);
}

TEST_F(LibrarySchemaOnOneLibrary, ASecondStoreReadsWhileTheFirstWrites)
{
    const auto second = library.open();
    connection->execute("BEGIN IMMEDIATE");
    connection->execute("INSERT INTO app_state VALUES ('a', 'b')");
    EXPECT_EQ(second->libraryCounts().all, 0);
    connection->execute("COMMIT");
}

} // namespace
} // namespace mirel
