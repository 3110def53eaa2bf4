#include "library/LocalLibraryStore.h"

#include "library/RowDecoding.h"
#include "library/SQLiteStoreError.h"

namespace mirel {

namespace {

// The columns hold what was bound to them.
void appendStored(SQLiteRow& row, std::initializer_list<const char*> names, SQLiteValues values)
{
    Q_ASSERT(names.size() == values.size());
    const auto* value = values.begin();
    for (const char* const name : names)
        row.append(name, (value++)->storage());
}

} // namespace

qint64 LocalLibraryStore::upsertAuthor(SQLiteValues columns)
{
    // Most posts are by an author whom the library knows already: reading is far cheaper than writing the
    // same.
    const auto unchanged = m_database.firstRow(
        "SELECT id FROM authors WHERE x_id = ? AND name = ? AND username = ? AND profile_image_url IS ?",
        columns);
    if (const auto id = unchanged ? unchanged->integer("id") : std::nullopt)
        return *id;
    m_database.run("INSERT INTO authors (x_id, name, username, profile_image_url) VALUES (?, ?, ?, ?) "
                   "ON CONFLICT(x_id) DO UPDATE SET name = excluded.name, username = excluded.username, "
                   "profile_image_url = excluded.profile_image_url",
                   columns);
    const auto row = m_database.firstRow("SELECT id FROM authors WHERE x_id = ?", {*columns.begin()});
    const auto id = row ? row->integer("id") : std::nullopt;
    if (!id) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The synchronized author could not be loaded."));
    }
    return *id;
}

// `columns` begin with the post's id. Two statements instead of one that tries both: preparing that one takes
// as long as all other statements of an upsert. The transaction keeps other writers out between them.
qint64 LocalLibraryStore::upsertBookmark(const QString& tweetID, SQLiteValues columns)
{
    const QByteArray find = "SELECT id FROM bookmarks WHERE tweet_id = ?";
    const auto known = m_database.firstRow(find, {tweetID});
    if (known) {
        m_database.run(
            "UPDATE bookmarks SET conversation_id = ?2, author_id = ?3, text = ?4, content_title = ?5, "
            "content_text = ?6, language = ?7, source_url = ?8, post_created_at = ?9, synced_at = ?10, "
            "view_count = ?11, repost_count = ?12, bookmark_count = ?13, reply_count = ?14, "
            "quote_count = ?15, like_count = ?16, media_json = ?17, quoted_json = ?18, raw_json = ?19 "
            "WHERE tweet_id = ?1",
            columns);
    } else {
        m_database.run(
            "INSERT INTO bookmarks (tweet_id, conversation_id, author_id, text, content_title, content_text, "
            "language, source_url, post_created_at, synced_at, view_count, repost_count, bookmark_count, "
            "reply_count, quote_count, like_count, media_json, quoted_json, raw_json) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
            columns);
    }
    const auto row = known ? known : m_database.firstRow(find, {tweetID});
    const auto id = row ? row->integer("id") : std::nullopt;
    if (!id) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The synchronized bookmark could not be loaded."));
    }
    return *id;
}

Bookmark LocalLibraryStore::upsertFromX(const SyncedBookmark& synced, Instant syncedAt)
{
    std::optional<QString> profileImageURL;
    if (synced.author.profileImageURL)
        profileImageURL = absoluteString(*synced.author.profileImageURL);
    const SQLiteValues authorColumns = {synced.author.xID, synced.author.name, synced.author.username,
                                        profileImageURL};
    SQLiteTransaction transaction(m_database);
    const qint64 authorID = upsertAuthor(authorColumns);
    const SQLiteValues bookmarkColumns = {synced.tweetID,
                                          synced.conversationID,
                                          authorID,
                                          synced.text,
                                          synced.contentTitle,
                                          synced.contentText,
                                          synced.language,
                                          absoluteString(synced.sourceURL),
                                          synced.createdAt,
                                          syncedAt,
                                          synced.metrics.views,
                                          synced.metrics.reposts,
                                          synced.metrics.bookmarks,
                                          synced.metrics.replies,
                                          synced.metrics.quotes,
                                          synced.metrics.likes,
                                          encodeJSON(synced.media),
                                          encodeJSON(synced.quotedPost),
                                          synced.rawJSON};
    const qint64 id = upsertBookmark(synced.tweetID, bookmarkColumns);
    transaction.commit();
    return storedBookmark(id, authorID, authorColumns, bookmarkColumns);
}

// What bookmark(id) would read. The columns from X were just written and are in hand; only those of the user
// are read back, since most of all the envelope costs more to read than all else together.
Bookmark LocalLibraryStore::storedBookmark(qint64 id, qint64 authorID, SQLiteValues authorColumns,
                                           SQLiteValues bookmarkColumns)
{
    auto row = m_database.firstRow(
        "SELECT b.id, b.thread_json, b.thread_enriched_at, b.note, b.is_read, b.is_favorite, b.is_archived, "
        "b.reviewed_at, EXISTS (SELECT 1 FROM bookmark_tags bt WHERE bt.bookmark_id = b.id) AS has_tags, "
        "EXISTS (SELECT 1 FROM bookmark_folders bf WHERE bf.bookmark_id = b.id) AS has_folder "
        "FROM bookmarks b WHERE b.id = ? AND b.deleted_at IS NULL",
        {id});
    if (!row)
        throw SQLiteStoreError::bookmarkNotFound();
    row->append("author_local_id", authorID);
    appendStored(*row, {"author_x_id", "author_name", "author_username", "author_profile_image_url"},
                 authorColumns);
    appendStored(*row,
                 {"tweet_id", "conversation_id", "author_id", "text", "content_title", "content_text",
                  "language", "source_url", "post_created_at", "synced_at", "view_count", "repost_count",
                  "bookmark_count", "reply_count", "quote_count", "like_count", "media_json", "quoted_json",
                  "raw_json"},
                 bookmarkColumns);
    return decodeBookmark(*row, row->boolean("has_tags") ? tagsOf(id) : QList<Tag>(),
                          row->boolean("has_folder") ? folderOf(id) : std::nullopt);
}

Bookmark LocalLibraryStore::bookmark(qint64 id)
{
    const auto row = m_database.firstRow(
        "SELECT b.*, a.id AS author_local_id, a.x_id AS author_x_id, a.name AS author_name, "
        "a.username AS author_username, a.profile_image_url AS author_profile_image_url "
        "FROM bookmarks b JOIN authors a ON a.id = b.author_id "
        "WHERE b.id = ? AND b.deleted_at IS NULL",
        {id});
    if (!row)
        throw SQLiteStoreError::bookmarkNotFound();
    return decodeBookmark(*row, tagsOf(id), folderOf(id));
}

QList<Tag> LocalLibraryStore::tagsOf(qint64 bookmarkID)
{
    QList<Tag> tags;
    for (const SQLiteRow& row :
         m_database.rows("SELECT t.id, t.name, t.slug, t.color_hex, t.source FROM tags t "
                         "JOIN bookmark_tags bt ON bt.tag_id = t.id WHERE bt.bookmark_id = ? "
                         "ORDER BY t.name COLLATE NOCASE",
                         {bookmarkID}))
        tags.append(decodeTag(row));
    return tags;
}

std::optional<Folder> LocalLibraryStore::folderOf(qint64 bookmarkID)
{
    const auto row = m_database.firstRow(
        "SELECT f.id, f.name, f.slug, f.description, f.parent_id, f.source, f.x_folder_id "
        "FROM folders f JOIN bookmark_folders bf ON bf.folder_id = f.id WHERE bf.bookmark_id = ?",
        {bookmarkID});
    return row ? std::optional(decodeFolder(*row)) : std::nullopt;
}

std::optional<Bookmark> LocalLibraryStore::bookmark(const QString& tweetID)
{
    const auto row =
        m_database.firstRow("SELECT id FROM bookmarks WHERE tweet_id = ? AND deleted_at IS NULL", {tweetID});
    const auto id = row ? row->integer("id") : std::nullopt;
    if (!id)
        return std::nullopt;
    return bookmark(*id);
}

QSet<QString> LocalLibraryStore::allBookmarkTweetIDs()
{
    QSet<QString> ids;
    for (const SQLiteRow& row : m_database.rows("SELECT tweet_id FROM bookmarks WHERE deleted_at IS NULL")) {
        if (const auto id = row.text("tweet_id"))
            ids.insert(*id);
    }
    return ids;
}

QHash<qint64, QString> LocalLibraryStore::tweetIDs()
{
    QHash<qint64, QString> ids;
    for (const SQLiteRow& row :
         m_database.rows("SELECT id, tweet_id FROM bookmarks WHERE deleted_at IS NULL"))
        ids.insert(row.integer("id").value_or(0), row.text("tweet_id").value_or(QString()));
    return ids;
}

void LocalLibraryStore::updateLocalState(qint64 id, const std::optional<QString>& note, bool isRead,
                                         bool isFavorite, bool isArchived)
{
    m_database.run("UPDATE bookmarks SET note = ?, is_read = ?, is_favorite = ?, is_archived = ?, "
                   "reviewed_at = CASE WHEN ? = 1 THEN COALESCE(reviewed_at, ?) ELSE reviewed_at END "
                   "WHERE id = ?",
                   {note, isRead, isFavorite, isArchived, isRead, m_now(), id});
}

void LocalLibraryStore::replaceThread(qint64 bookmarkID, QList<ThreadPost> posts)
{
    std::stable_sort(posts.begin(), posts.end(),
                     [](const ThreadPost& a, const ThreadPost& b) { return a.createdAt < b.createdAt; });
    m_database.run("UPDATE bookmarks SET thread_json = ?, thread_enriched_at = ? WHERE id = ?",
                   {encodeJSON(posts), m_now(), bookmarkID});
}

void LocalLibraryStore::markThreadEnriched(qint64 bookmarkID, Instant instant)
{
    m_database.run("UPDATE bookmarks SET thread_enriched_at = ? WHERE id = ?", {instant, bookmarkID});
}

void LocalLibraryStore::updateMetrics(qint64 bookmarkID, const PostMetrics& metrics)
{
    m_database.run("UPDATE bookmarks SET view_count = ?, repost_count = ?, bookmark_count = ?, "
                   "reply_count = ?, quote_count = ?, like_count = ? WHERE id = ?",
                   {metrics.views, metrics.reposts, metrics.bookmarks, metrics.replies, metrics.quotes,
                    metrics.likes, bookmarkID});
}

void LocalLibraryStore::deleteBookmarkLocally(qint64 id)
{
    m_database.run("UPDATE bookmarks SET deleted_at = ? WHERE id = ?", {m_now(), id});
}

} // namespace mirel
