#include "library/LocalLibraryStore.h"

#include "library/RowDecoding.h"
#include "library/SQLiteStoreError.h"

namespace mirel {

qint64 LocalLibraryStore::upsertAuthor(const SyncedAuthor& author)
{
    std::optional<QString> profileImageURL;
    if (author.profileImageURL)
        profileImageURL = absoluteString(*author.profileImageURL);
    m_database.run("INSERT INTO authors (x_id, name, username, profile_image_url) VALUES (?, ?, ?, ?) "
                   "ON CONFLICT(x_id) DO UPDATE SET name = excluded.name, username = excluded.username, "
                   "profile_image_url = excluded.profile_image_url",
                   {author.xID, author.name, author.username, profileImageURL});
    const auto row = m_database.firstRow("SELECT id FROM authors WHERE x_id = ?", {author.xID});
    const auto id = row ? row->integer("id") : std::nullopt;
    if (!id) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The synchronized author could not be loaded."));
    }
    return *id;
}

Bookmark LocalLibraryStore::upsertFromX(const SyncedBookmark& synced, Instant syncedAt)
{
    SQLiteTransaction transaction(m_database);
    const qint64 authorID = upsertAuthor(synced.author);
    m_database.run(
        "INSERT INTO bookmarks (tweet_id, conversation_id, author_id, text, content_title, content_text, "
        "language, source_url, post_created_at, synced_at, view_count, repost_count, bookmark_count, "
        "reply_count, quote_count, like_count, media_json, quoted_json, raw_json) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
        "ON CONFLICT(tweet_id) DO UPDATE SET conversation_id = excluded.conversation_id, "
        "author_id = excluded.author_id, text = excluded.text, content_title = excluded.content_title, "
        "content_text = excluded.content_text, language = excluded.language, "
        "source_url = excluded.source_url, post_created_at = excluded.post_created_at, "
        "synced_at = excluded.synced_at, view_count = excluded.view_count, "
        "repost_count = excluded.repost_count, bookmark_count = excluded.bookmark_count, "
        "reply_count = excluded.reply_count, quote_count = excluded.quote_count, "
        "like_count = excluded.like_count, media_json = excluded.media_json, "
        "quoted_json = excluded.quoted_json, raw_json = excluded.raw_json",
        {synced.tweetID, synced.conversationID, authorID, synced.text, synced.contentTitle,
         synced.contentText, synced.language, absoluteString(synced.sourceURL), synced.createdAt, syncedAt,
         synced.metrics.views, synced.metrics.reposts, synced.metrics.bookmarks, synced.metrics.replies,
         synced.metrics.quotes, synced.metrics.likes, encodeJSON(synced.media), encodeJSON(synced.quotedPost),
         synced.rawJSON});
    const auto row = m_database.firstRow("SELECT id FROM bookmarks WHERE tweet_id = ?", {synced.tweetID});
    const auto id = row ? row->integer("id") : std::nullopt;
    if (!id) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The synchronized bookmark could not be loaded."));
    }
    transaction.commit();
    return storedBookmark(*id, synced.rawJSON);
}

// The raw JSON is in hand: reading its many pages back would cost more than all the other columns.
Bookmark LocalLibraryStore::storedBookmark(qint64 id, const QByteArray& rawJSON)
{
    const auto row = m_database.firstRow(
        "SELECT b.id, b.tweet_id, b.conversation_id, b.text, b.content_title, b.content_text, b.language, "
        "b.source_url, b.post_created_at, b.synced_at, b.view_count, b.repost_count, b.bookmark_count, "
        "b.reply_count, b.quote_count, b.like_count, b.media_json, b.quoted_json, b.thread_json, "
        "b.thread_enriched_at, b.note, b.is_read, b.is_favorite, b.is_archived, b.reviewed_at, "
        "a.id AS author_local_id, a.x_id AS author_x_id, a.name AS author_name, "
        "a.username AS author_username, a.profile_image_url AS author_profile_image_url "
        "FROM bookmarks b JOIN authors a ON a.id = b.author_id WHERE b.id = ? AND b.deleted_at IS NULL",
        {id});
    Bookmark stored = decodeOne(row, id);
    stored.rawJSON = rawJSON;
    return stored;
}

Bookmark LocalLibraryStore::bookmark(qint64 id)
{
    return decodeOne(m_database.firstRow(
                         "SELECT b.*, a.id AS author_local_id, a.x_id AS author_x_id, a.name AS author_name, "
                         "a.username AS author_username, a.profile_image_url AS author_profile_image_url "
                         "FROM bookmarks b JOIN authors a ON a.id = b.author_id "
                         "WHERE b.id = ? AND b.deleted_at IS NULL",
                         {id}),
                     id);
}

// The bookmark of `row`, which is that of `id`, with its labels and its folder.
Bookmark LocalLibraryStore::decodeOne(const std::optional<SQLiteRow>& row, qint64 id)
{
    if (!row) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The bookmark no longer exists."));
    }
    QList<Tag> tags;
    for (const SQLiteRow& tagRow :
         m_database.rows("SELECT t.id, t.name, t.slug, t.color_hex, t.source FROM tags t "
                         "JOIN bookmark_tags bt ON bt.tag_id = t.id WHERE bt.bookmark_id = ? "
                         "ORDER BY t.name COLLATE NOCASE",
                         {id}))
        tags.append(decodeTag(tagRow));
    std::optional<Folder> folder;
    if (const auto folderRow = m_database.firstRow(
            "SELECT f.id, f.name, f.slug, f.description, f.parent_id, f.source, f.x_folder_id "
            "FROM folders f JOIN bookmark_folders bf ON bf.folder_id = f.id WHERE bf.bookmark_id = ?",
            {id}))
        folder = decodeFolder(*folderRow);
    return decodeBookmark(*row, std::move(tags), std::move(folder));
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
