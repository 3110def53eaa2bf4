#pragma once

#include "records/PostMetrics.h"
#include "support/RawJSONDecoding.h"

namespace mirel {

// The public counters of a post as X sends them.
struct MetricsDTO
{
    std::optional<qint64> impressionCount;
    std::optional<qint64> retweetCount;
    std::optional<qint64> bookmarkCount;
    std::optional<qint64> replyCount;
    std::optional<qint64> quoteCount;
    std::optional<qint64> likeCount;

    // An absent counter is 0.
    [[nodiscard]] PostMetrics model() const
    {
        return {
            .views = impressionCount.value_or(0),
            .reposts = retweetCount.value_or(0),
            .bookmarks = bookmarkCount.value_or(0),
            .replies = replyCount.value_or(0),
            .quotes = quoteCount.value_or(0),
            .likes = likeCount.value_or(0),
        };
    }

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("impression_count", &MetricsDTO::impressionCount),
            jsonField("retweet_count", &MetricsDTO::retweetCount),
            jsonField("bookmark_count", &MetricsDTO::bookmarkCount),
            jsonField("reply_count", &MetricsDTO::replyCount),
            jsonField("quote_count", &MetricsDTO::quoteCount),
            jsonField("like_count", &MetricsDTO::likeCount),
        };
    }
};

} // namespace mirel
