#include "library/RowDecoding.h"

#include "library/SQLiteStoreError.h"

namespace mirel {

namespace {

template <typename Value>
Value required(std::optional<Value> value)
{
    if (!value) {
        throw SQLiteStoreError(SQLiteStoreError::Case::execute,
                               QStringLiteral("A bookmark contains invalid required data."));
    }
    return *std::move(value);
}

Author decodeBookmarkAuthor(const SQLiteRow& row)
{
    return {
        .id = required(row.integer("author_local_id")),
        .xID = required(row.text("author_x_id")),
        .name = required(row.text("author_name")),
        .username = required(row.text("author_username")),
        .profileImageURL = parseURL(row.text("author_profile_image_url")),
    };
}

PostMetrics decodeMetrics(const SQLiteRow& row)
{
    return {
        .views = row.integer("view_count").value_or(0),
        .reposts = row.integer("repost_count").value_or(0),
        .bookmarks = row.integer("bookmark_count").value_or(0),
        .replies = row.integer("reply_count").value_or(0),
        .quotes = row.integer("quote_count").value_or(0),
        .likes = row.integer("like_count").value_or(0),
    };
}

// Nearly every bookmark holds the defaults in its JSON columns, which need no parser.
template <typename Value>
Value decodeJSONColumn(const SQLiteRow& row, QByteArrayView column, const QByteArray& defaultJSON)
{
    const QByteArray json = row.utf8(column).value_or(defaultJSON);
    return json == defaultJSON ? Value{} : decodeJSON<Value>(json);
}

} // namespace

Bookmark decodeBookmark(const SQLiteRow& row, QList<Tag> tags, std::optional<Folder> folder)
{
    Bookmark bookmark;
    bookmark.id = required(row.integer("id"));
    bookmark.tweetID = required(row.text("tweet_id"));
    bookmark.conversationID = row.text("conversation_id");
    bookmark.author = decodeBookmarkAuthor(row);
    bookmark.text = required(row.text("text"));
    bookmark.contentTitle = row.text("content_title");
    bookmark.contentText = row.text("content_text");
    bookmark.language = row.text("language");
    bookmark.sourceURL = required(parseURL(row.text("source_url")));
    bookmark.createdAt = required(row.instant("post_created_at"));
    bookmark.syncedAt = required(row.instant("synced_at"));
    bookmark.metrics = decodeMetrics(row);
    bookmark.media = decodeJSONColumn<QList<MediaItem>>(row, "media_json", "[]");
    bookmark.quotedPost = decodeJSONColumn<std::optional<QuotedPost>>(row, "quoted_json", "null");
    bookmark.thread = decodeJSONColumn<QList<ThreadPost>>(row, "thread_json", "[]");
    bookmark.threadEnrichedAt = row.instant("thread_enriched_at");
    bookmark.rawJSON = row.utf8("raw_json").value_or("{}");
    bookmark.note = row.text("note");
    bookmark.isRead = row.boolean("is_read");
    bookmark.isFavorite = row.boolean("is_favorite");
    bookmark.isArchived = row.boolean("is_archived");
    bookmark.reviewedAt = row.instant("reviewed_at");
    bookmark.tags = std::move(tags);
    bookmark.folder = std::move(folder);
    return bookmark;
}

Tag decodeTag(const SQLiteRow& row)
{
    return {
        .id = row.integer("id").value_or(0),
        .name = row.text("name").value_or(QString()),
        .slug = row.text("slug").value_or(QString()),
        .colorHex = row.text("color_hex").value_or(QStringLiteral("#3E6BF5")),
        .source =
            fromRawValue<Tag::Source>(row.text("source").value_or(QString())).value_or(Tag::Source::manual),
    };
}

Folder decodeFolder(const SQLiteRow& row)
{
    return {
        .id = row.integer("id").value_or(0),
        .name = row.text("name").value_or(QString()),
        .slug = row.text("slug").value_or(QString()),
        .description = row.text("description"),
        .parentID = row.integer("parent_id"),
        .source = fromRawValue<Folder::Source>(row.text("source").value_or(QString()))
                      .value_or(Folder::Source::local),
        .xFolderID = row.text("x_folder_id"),
    };
}

TagSummary decodeTagSummary(const SQLiteRow& row)
{
    return {
        .tag = decodeTag(row),
        .bookmarkCount = row.integer("bookmark_count").value_or(0),
        .unreadCount = row.integer("unread_count").value_or(0),
    };
}

FolderSummary decodeFolderSummary(const SQLiteRow& row)
{
    return {
        .folder = decodeFolder(row),
        .bookmarkCount = row.integer("bookmark_count").value_or(0),
        .unreadCount = row.integer("unread_count").value_or(0),
    };
}

AuthorSummary decodeAuthorSummary(const SQLiteRow& row)
{
    return {
        .author = {.id = row.integer("id").value_or(0),
                   .xID = row.text("x_id").value_or(QString()),
                   .name = row.text("name").value_or(QString()),
                   .username = row.text("username").value_or(QString()),
                   .profileImageURL = parseURL(row.text("profile_image_url"))},
        .bookmarkCount = row.integer("bookmark_count").value_or(0),
    };
}

BookmarkRule decodeRule(const SQLiteRow& row)
{
    return {
        .id = row.integer("id").value_or(0),
        .name = row.text("name").value_or(QString()),
        .query = row.text("query").value_or(QString()),
        .action = fromRawValue<BookmarkRule::Action>(row.text("action").value_or(QString()))
                      .value_or(BookmarkRule::Action::tag),
        .targetID = row.integer("target_id").value_or(0),
        .isEnabled = row.boolean("is_enabled"),
        .lastRunAt = row.instant("last_run_at"),
        .lastMatchCount = row.integer("last_match_count").value_or(0),
    };
}

BookmarkHighlight decodeHighlight(const SQLiteRow& row)
{
    return {
        .id = row.integer("id").value_or(0),
        .bookmarkID = row.integer("bookmark_id").value_or(0),
        .selectedText = row.text("selected_text").value_or(QString()),
        .contextText = row.text("context_text"),
        .startOffset = row.integer("start_offset").value_or(0),
        .endOffset = row.integer("end_offset").value_or(0),
        .colorHex = row.text("color_hex").value_or(QStringLiteral("#fde68a")),
        .createdAt = row.instant("created_at").value_or(Instant()),
    };
}

SyncRun decodeSyncRun(const SQLiteRow& row)
{
    return {
        .id = row.integer("id").value_or(0),
        .kind =
            fromRawValue<SyncRun::Kind>(row.text("kind").value_or(QString())).value_or(SyncRun::Kind::manual),
        .status = fromRawValue<SyncRun::Status>(row.text("status").value_or(QString()))
                      .value_or(SyncRun::Status::queued),
        .pages = row.integer("pages").value_or(0),
        .fetched = row.integer("fetched").value_or(0),
        .created = row.integer("created").value_or(0),
        .updated = row.integer("updated").value_or(0),
        .errorMessage = row.text("error_message"),
        .rateLimitResetAt = row.instant("rate_limit_reset_at"),
        .startedAt = row.instant("started_at"),
        .completedAt = row.instant("completed_at"),
        .createdAt = row.instant("created_at").value_or(Instant()),
    };
}

SyncLogEntry decodeSyncLogEntry(const SQLiteRow& row)
{
    std::optional<bool> hasNextPage;
    if (const auto number = row.number("has_next_page"))
        hasNextPage = *number != 0;
    return {
        .id = row.integer("id").value_or(0),
        .runID = row.integer("sync_run_id").value_or(0),
        .event = fromRawValue<SyncLogEntry::Event>(row.text("event").value_or(QString()))
                     .value_or(SyncLogEntry::Event::failed),
        .message = row.text("message").value_or(QString()),
        .page = row.integer("page"),
        .requested = row.integer("requested"),
        .received = row.integer("received"),
        .reported = row.integer("reported"),
        .cumulative = row.integer("cumulative"),
        .hasNextPage = hasNextPage,
        .createdAt = row.instant("created_at").value_or(Instant()),
    };
}

} // namespace mirel
