#pragma once

#include "records/Author.h"
#include "records/Folder.h"
#include "records/MediaItem.h"
#include "records/PostMetrics.h"
#include "records/QuotedPost.h"
#include "records/Tag.h"
#include "records/ThreadPost.h"

namespace mirel {

// A saved post with all of its local state. Its identity is `id`, the row in `bookmarks`.
struct Bookmark
{
    qint64 id = 0;
    // X's post id, unique in the library.
    QString tweetID;
    std::optional<QString> conversationID;
    Author author;
    QString text;
    std::optional<QString> contentTitle;
    std::optional<QString> contentText;
    std::optional<QString> language;
    QUrl sourceURL;
    // When the post was written.
    Instant createdAt;
    // The last time that a sync wrote the row.
    Instant syncedAt;
    PostMetrics metrics;
    QList<MediaItem> media;
    std::optional<QuotedPost> quotedPost;
    QList<ThreadPost> thread;
    // Present once the thread was asked for, even if nothing was found.
    std::optional<Instant> threadEnrichedAt;
    // In UTF-8.
    QByteArray rawJSON;
    // The user's note.
    std::optional<QString> note;
    bool isRead = false;
    bool isFavorite = false;
    bool isArchived = false;
    // The first time that the bookmark was marked read.
    std::optional<Instant> reviewedAt;
    // Ordered by name without regard to case.
    QList<Tag> tags;
    std::optional<Folder> folder;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &Bookmark::id),
            jsonField("tweetID", &Bookmark::tweetID),
            jsonField("conversationID", &Bookmark::conversationID),
            jsonField("author", &Bookmark::author),
            jsonField("text", &Bookmark::text),
            jsonField("contentTitle", &Bookmark::contentTitle),
            jsonField("contentText", &Bookmark::contentText),
            jsonField("language", &Bookmark::language),
            jsonField("sourceURL", &Bookmark::sourceURL),
            jsonField("createdAt", &Bookmark::createdAt),
            jsonField("syncedAt", &Bookmark::syncedAt),
            jsonField("metrics", &Bookmark::metrics),
            jsonField("media", &Bookmark::media),
            jsonField("quotedPost", &Bookmark::quotedPost),
            jsonField("thread", &Bookmark::thread),
            jsonField("threadEnrichedAt", &Bookmark::threadEnrichedAt),
            jsonField("rawJSON", &Bookmark::rawJSON),
            jsonField("note", &Bookmark::note),
            jsonField("isRead", &Bookmark::isRead),
            jsonField("isFavorite", &Bookmark::isFavorite),
            jsonField("isArchived", &Bookmark::isArchived),
            jsonField("reviewedAt", &Bookmark::reviewedAt),
            jsonField("tags", &Bookmark::tags),
            jsonField("folder", &Bookmark::folder),
        };
    }

    friend bool operator==(const Bookmark&, const Bookmark&) = default;
};

// One page of a search. `totalCount` is the number of matches over all pages.
struct BookmarkSearchPage
{
    QList<Bookmark> items;
    qint64 totalCount = 0;

    friend bool operator==(const BookmarkSearchPage&, const BookmarkSearchPage&) = default;
};

} // namespace mirel
