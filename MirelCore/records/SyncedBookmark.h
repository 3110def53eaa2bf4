#pragma once

#include "records/Author.h"
#include "records/MediaItem.h"
#include "records/PostMetrics.h"
#include "records/QuotedPost.h"

namespace mirel {

// What a sync hands to the library: one post as X sent it.
struct SyncedBookmark
{
    QString tweetID;
    std::optional<QString> conversationID;
    SyncedAuthor author;
    QString text;
    // Title and plain text of a long-form article.
    std::optional<QString> contentTitle;
    std::optional<QString> contentText;
    // X's language code.
    std::optional<QString> language;
    QUrl sourceURL;
    // When the post was written.
    Instant createdAt;
    PostMetrics metrics;
    QList<MediaItem> media;
    std::optional<QuotedPost> quotedPost;
    // The post and the page's includes as X sent them, in UTF-8.
    QByteArray rawJSON;

    friend bool operator==(const SyncedBookmark&, const SyncedBookmark&) = default;
};

} // namespace mirel
