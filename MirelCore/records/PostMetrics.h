#pragma once

#include "support/JSONCoding.h"

namespace mirel {

// The six public counters of a post.
struct PostMetrics
{
    qint64 views = 0;
    qint64 reposts = 0;
    qint64 bookmarks = 0;
    qint64 replies = 0;
    qint64 quotes = 0;
    qint64 likes = 0;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("views", &PostMetrics::views),         jsonField("reposts", &PostMetrics::reposts),
            jsonField("bookmarks", &PostMetrics::bookmarks), jsonField("replies", &PostMetrics::replies),
            jsonField("quotes", &PostMetrics::quotes),       jsonField("likes", &PostMetrics::likes),
        };
    }

    friend bool operator==(const PostMetrics&, const PostMetrics&) = default;
};

} // namespace mirel
