#include "library/LocalLibraryStore.h"

namespace mirel {

namespace {

// Every statement leaves alone what exists, so the script runs on new files and on old ones. All dates are
// REAL seconds since 1970.
constexpr const char* schema = R"sql(
PRAGMA foreign_keys = ON;
PRAGMA journal_mode = WAL;

CREATE TABLE IF NOT EXISTS authors (
    id INTEGER PRIMARY KEY,
    x_id TEXT NOT NULL UNIQUE,
    name TEXT NOT NULL,
    username TEXT NOT NULL,
    profile_image_url TEXT
);

CREATE TABLE IF NOT EXISTS bookmarks (
    id INTEGER PRIMARY KEY,
    tweet_id TEXT NOT NULL UNIQUE,
    conversation_id TEXT,
    author_id INTEGER NOT NULL REFERENCES authors(id),
    text TEXT NOT NULL,
    content_title TEXT,
    content_text TEXT,
    language TEXT,
    source_url TEXT NOT NULL,
    post_created_at REAL NOT NULL,
    synced_at REAL NOT NULL,
    view_count INTEGER NOT NULL DEFAULT 0,
    repost_count INTEGER NOT NULL DEFAULT 0,
    bookmark_count INTEGER NOT NULL DEFAULT 0,
    reply_count INTEGER NOT NULL DEFAULT 0,
    quote_count INTEGER NOT NULL DEFAULT 0,
    like_count INTEGER NOT NULL DEFAULT 0,
    media_json TEXT NOT NULL DEFAULT '[]',
    quoted_json TEXT NOT NULL DEFAULT 'null',
    thread_json TEXT NOT NULL DEFAULT '[]',
    thread_enriched_at REAL,
    raw_json TEXT NOT NULL DEFAULT '{}',
    note TEXT,
    is_read INTEGER NOT NULL DEFAULT 0 CHECK (is_read IN (0, 1)),
    is_favorite INTEGER NOT NULL DEFAULT 0 CHECK (is_favorite IN (0, 1)),
    is_archived INTEGER NOT NULL DEFAULT 0 CHECK (is_archived IN (0, 1)),
    reviewed_at REAL,
    deleted_at REAL
);

CREATE VIRTUAL TABLE IF NOT EXISTS bookmark_search USING fts5(
    bookmark_id UNINDEXED,
    title,
    body,
    note,
    author_name,
    author_username,
    tokenize = 'unicode61 remove_diacritics 2'
);

CREATE TRIGGER IF NOT EXISTS bookmarks_search_insert AFTER INSERT ON bookmarks BEGIN
    INSERT INTO bookmark_search (bookmark_id, title, body, note, author_name, author_username)
    SELECT new.id, COALESCE(new.content_title, ''),
           trim(new.text || ' ' || COALESCE(new.content_text, '')), COALESCE(new.note, ''),
           a.name, a.username
    FROM authors a WHERE a.id = new.author_id;
END;

CREATE TRIGGER IF NOT EXISTS bookmarks_search_update
AFTER UPDATE OF author_id, text, content_title, content_text, note ON bookmarks BEGIN
    DELETE FROM bookmark_search WHERE bookmark_id = old.id;
    INSERT INTO bookmark_search (bookmark_id, title, body, note, author_name, author_username)
    SELECT new.id, COALESCE(new.content_title, ''),
           trim(new.text || ' ' || COALESCE(new.content_text, '')), COALESCE(new.note, ''),
           a.name, a.username
    FROM authors a WHERE a.id = new.author_id;
END;

CREATE TRIGGER IF NOT EXISTS bookmarks_search_delete AFTER DELETE ON bookmarks BEGIN
    DELETE FROM bookmark_search WHERE bookmark_id = old.id;
END;

CREATE TABLE IF NOT EXISTS tags (
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL COLLATE NOCASE UNIQUE,
    slug TEXT NOT NULL UNIQUE,
    color_hex TEXT NOT NULL,
    source TEXT NOT NULL DEFAULT 'manual'
);

CREATE TABLE IF NOT EXISTS bookmark_tags (
    bookmark_id INTEGER NOT NULL REFERENCES bookmarks(id) ON DELETE CASCADE,
    tag_id INTEGER NOT NULL REFERENCES tags(id) ON DELETE CASCADE,
    PRIMARY KEY (bookmark_id, tag_id)
);

CREATE TABLE IF NOT EXISTS folders (
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL COLLATE NOCASE UNIQUE,
    slug TEXT NOT NULL UNIQUE,
    description TEXT,
    parent_id INTEGER REFERENCES folders(id) ON DELETE SET NULL,
    source TEXT NOT NULL DEFAULT 'local',
    x_folder_id TEXT UNIQUE
);

CREATE TABLE IF NOT EXISTS bookmark_folders (
    bookmark_id INTEGER PRIMARY KEY REFERENCES bookmarks(id) ON DELETE CASCADE,
    folder_id INTEGER NOT NULL REFERENCES folders(id) ON DELETE CASCADE
);

CREATE TABLE IF NOT EXISTS highlights (
    id INTEGER PRIMARY KEY,
    bookmark_id INTEGER NOT NULL REFERENCES bookmarks(id) ON DELETE CASCADE,
    selected_text TEXT NOT NULL,
    context_text TEXT,
    start_offset INTEGER NOT NULL DEFAULT 0,
    end_offset INTEGER NOT NULL DEFAULT 0,
    color_hex TEXT NOT NULL DEFAULT '#fde68a',
    created_at REAL NOT NULL
);

CREATE TABLE IF NOT EXISTS bookmark_rules (
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL COLLATE NOCASE UNIQUE,
    query TEXT NOT NULL,
    action TEXT NOT NULL CHECK (action IN ('tag', 'folder')),
    target_id INTEGER NOT NULL,
    is_enabled INTEGER NOT NULL DEFAULT 1 CHECK (is_enabled IN (0, 1)),
    last_run_at REAL,
    last_match_count INTEGER NOT NULL DEFAULT 0
);

CREATE TABLE IF NOT EXISTS app_state (
    key TEXT PRIMARY KEY,
    value_json TEXT NOT NULL
);

CREATE TABLE IF NOT EXISTS sync_runs (
    id INTEGER PRIMARY KEY,
    kind TEXT NOT NULL,
    status TEXT NOT NULL,
    pages INTEGER NOT NULL DEFAULT 0,
    fetched INTEGER NOT NULL DEFAULT 0,
    created INTEGER NOT NULL DEFAULT 0,
    updated INTEGER NOT NULL DEFAULT 0,
    error_message TEXT,
    rate_limit_reset_at REAL,
    started_at REAL,
    completed_at REAL,
    created_at REAL NOT NULL
);

CREATE TABLE IF NOT EXISTS sync_log_entries (
    id INTEGER PRIMARY KEY,
    sync_run_id INTEGER NOT NULL REFERENCES sync_runs(id) ON DELETE CASCADE,
    event TEXT NOT NULL CHECK (event IN ('started', 'page', 'completed', 'failed')),
    message TEXT NOT NULL,
    page INTEGER,
    requested INTEGER,
    received INTEGER,
    reported INTEGER,
    cumulative INTEGER,
    has_next_page INTEGER CHECK (has_next_page IN (0, 1)),
    created_at REAL NOT NULL
);

CREATE INDEX IF NOT EXISTS sync_log_entries_run_id_created_at
ON sync_log_entries(sync_run_id, created_at, id);

CREATE TABLE IF NOT EXISTS bookmark_insights (
    bookmark_id INTEGER PRIMARY KEY REFERENCES bookmarks(id) ON DELETE CASCADE,
    summary TEXT NOT NULL,
    key_idea TEXT NOT NULL,
    labels_json TEXT NOT NULL DEFAULT '[]',
    model TEXT NOT NULL,
    generated_at REAL NOT NULL
);

CREATE TABLE IF NOT EXISTS tag_suggestions (
    id INTEGER PRIMARY KEY,
    bookmark_id INTEGER NOT NULL REFERENCES bookmarks(id) ON DELETE CASCADE,
    label_name TEXT NOT NULL,
    status TEXT NOT NULL DEFAULT 'pending',
    applied_tag_id INTEGER REFERENCES tags(id) ON DELETE SET NULL,
    assignment_created INTEGER NOT NULL DEFAULT 0 CHECK (assignment_created IN (0, 1)),
    created_at REAL NOT NULL,
    reviewed_at REAL,
    UNIQUE(bookmark_id, label_name)
);

CREATE TABLE IF NOT EXISTS auto_label_runs (
    id TEXT PRIMARY KEY,
    status TEXT NOT NULL DEFAULT 'queued',
    existing_labels_only INTEGER NOT NULL DEFAULT 1 CHECK (existing_labels_only IN (0, 1)),
    total INTEGER NOT NULL DEFAULT 0,
    processed INTEGER NOT NULL DEFAULT 0,
    failed INTEGER NOT NULL DEFAULT 0,
    last_error TEXT,
    started_at REAL,
    finished_at REAL,
    created_at REAL NOT NULL,
    updated_at REAL NOT NULL
);

CREATE TABLE IF NOT EXISTS chats (
    id TEXT PRIMARY KEY,
    title TEXT NOT NULL,
    is_archived INTEGER NOT NULL DEFAULT 0 CHECK (is_archived IN (0, 1)),
    created_at REAL NOT NULL,
    updated_at REAL NOT NULL
);

CREATE TABLE IF NOT EXISTS chat_messages (
    id INTEGER PRIMARY KEY,
    chat_id TEXT NOT NULL REFERENCES chats(id) ON DELETE CASCADE,
    role TEXT NOT NULL CHECK (role IN ('user', 'assistant')),
    content TEXT NOT NULL,
    citations_json TEXT NOT NULL DEFAULT '[]',
    created_at REAL NOT NULL
);

CREATE TABLE IF NOT EXISTS chat_sources (
    chat_message_id INTEGER NOT NULL REFERENCES chat_messages(id) ON DELETE CASCADE,
    bookmark_id INTEGER NOT NULL REFERENCES bookmarks(id) ON DELETE CASCADE,
    PRIMARY KEY (chat_message_id, bookmark_id)
);

CREATE TABLE IF NOT EXISTS ai_usage (
    id INTEGER PRIMARY KEY,
    feature TEXT NOT NULL,
    model TEXT NOT NULL,
    input_tokens INTEGER NOT NULL DEFAULT 0,
    output_tokens INTEGER NOT NULL DEFAULT 0,
    reasoning_tokens INTEGER NOT NULL DEFAULT 0,
    latency_ms INTEGER NOT NULL DEFAULT 0,
    succeeded INTEGER NOT NULL CHECK (succeeded IN (0, 1)),
    error_message TEXT,
    estimated_cost_usd REAL NOT NULL DEFAULT 0,
    created_at REAL NOT NULL
);

-- Here deleted bookmarks leave the index, and changed names of authors reach it.
DELETE FROM bookmark_search;
INSERT INTO bookmark_search (bookmark_id, title, body, note, author_name, author_username)
SELECT b.id, COALESCE(b.content_title, ''),
       trim(b.text || ' ' || COALESCE(b.content_text, '')), COALESCE(b.note, ''),
       a.name, a.username
FROM bookmarks b JOIN authors a ON a.id = b.author_id
WHERE b.deleted_at IS NULL;
)sql";

} // namespace

// There is no version number: the script creates what is missing, and the column checks after it bring old
// tables up to date. The order is what keeps an old file valid.
void LocalLibraryStore::migrate()
{
    m_database.execute(schema);

    const QSet<QString> suggestionColumns = columnsOf("PRAGMA table_info(tag_suggestions)");
    if (!suggestionColumns.contains(QStringLiteral("applied_tag_id"))) {
        m_database.run("ALTER TABLE tag_suggestions ADD COLUMN applied_tag_id INTEGER "
                       "REFERENCES tags(id) ON DELETE SET NULL");
    }
    if (!suggestionColumns.contains(QStringLiteral("assignment_created"))) {
        m_database.run("ALTER TABLE tag_suggestions ADD COLUMN assignment_created INTEGER "
                       "NOT NULL DEFAULT 0 CHECK (assignment_created IN (0, 1))");
    }

    const QSet<QString> bookmarkColumns = columnsOf("PRAGMA table_info(bookmarks)");
    if (!bookmarkColumns.contains(QStringLiteral("thread_enriched_at")))
        m_database.run("ALTER TABLE bookmarks ADD COLUMN thread_enriched_at REAL");
    m_database.run("UPDATE bookmarks SET thread_enriched_at = synced_at "
                   "WHERE thread_enriched_at IS NULL AND trim(thread_json) NOT IN ('', '[]')");
}

QSet<QString> LocalLibraryStore::columnsOf(const QByteArray& tableInfoQuery)
{
    QSet<QString> names;
    for (const SQLiteRow& row : m_database.rows(tableInfoQuery)) {
        if (const auto name = row.text("name"))
            names.insert(*name);
    }
    return names;
}

} // namespace mirel
