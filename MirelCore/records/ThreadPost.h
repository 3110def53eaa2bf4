#pragma once

#include "records/MediaItem.h"
#include "records/PostMetrics.h"

namespace mirel {

// One post of the author's thread around a bookmark. Its identity is `tweetID`.
struct ThreadPost
{
    QString tweetID;
    QString text;
    Instant createdAt;
    PostMetrics metrics;
    QList<MediaItem> media;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("tweetID", &ThreadPost::tweetID),     jsonField("text", &ThreadPost::text),
            jsonField("createdAt", &ThreadPost::createdAt), jsonField("metrics", &ThreadPost::metrics),
            jsonField("media", &ThreadPost::media),
        };
    }

    friend bool operator==(const ThreadPost&, const ThreadPost&) = default;
};

} // namespace mirel
