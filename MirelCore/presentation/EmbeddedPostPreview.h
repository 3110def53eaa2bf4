#pragma once

#include "records/MediaItem.h"

namespace mirel {

// A post that came along with a bookmark: quoted, replied to or embedded in an article.
struct EmbeddedPostPreview
{
    QString tweetID;
    std::optional<QString> authorName;
    std::optional<QString> username;
    QString text;
    QList<MediaItem> media;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("tweetID", &EmbeddedPostPreview::tweetID),
            jsonField("authorName", &EmbeddedPostPreview::authorName),
            jsonField("username", &EmbeddedPostPreview::username),
            jsonField("text", &EmbeddedPostPreview::text),
            jsonField("media", &EmbeddedPostPreview::media),
        };
    }

    friend bool operator==(const EmbeddedPostPreview&, const EmbeddedPostPreview&) = default;
};

} // namespace mirel
