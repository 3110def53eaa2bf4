#pragma once

#include "records/Author.h"
#include "records/MediaItem.h"

namespace mirel {

// The post that a bookmark quotes, stored whole inside the bookmark. Its author has no row in `authors`.
struct QuotedPost
{
    QString tweetID;
    std::optional<SyncedAuthor> author;
    QString text;
    QList<MediaItem> media;
    // Title and plain text, when the quoted post is a long-form article.
    std::optional<QString> contentTitle;
    std::optional<QString> contentText;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("tweetID", &QuotedPost::tweetID),
            jsonField("author", &QuotedPost::author),
            jsonField("text", &QuotedPost::text),
            jsonField("media", &QuotedPost::media),
            jsonField("contentTitle", &QuotedPost::contentTitle),
            jsonField("contentText", &QuotedPost::contentText),
        };
    }

    friend bool operator==(const QuotedPost&, const QuotedPost&) = default;
};

} // namespace mirel
