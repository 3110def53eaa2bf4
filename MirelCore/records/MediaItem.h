#pragma once

#include "support/JSONCoding.h"

#include <array>
#include <optional>

namespace mirel {

enum class MediaKind { photo, video, animatedGIF, youtube };

[[nodiscard]] constexpr auto rawValues(MediaKind)
{
    return std::array{
        RawValue{MediaKind::photo, QLatin1StringView("photo")},
        RawValue{MediaKind::video, QLatin1StringView("video")},
        RawValue{MediaKind::animatedGIF, QLatin1StringView("animated_gif")},
        RawValue{MediaKind::youtube, QLatin1StringView("youtube")},
    };
}

// One attached image, video, animated image or YouTube link. Its identity is `id`.
struct MediaItem
{
    // The media key from X, or "youtube-" and the link for a YouTube item.
    QString id;
    MediaKind kind = MediaKind::photo;
    // What is displayed or played.
    QUrl url;
    // A still image for a video.
    std::optional<QUrl> previewURL;
    std::optional<QString> altText;
    // In pixels.
    std::optional<qint64> width;
    std::optional<qint64> height;

    // The id of the video that a `youtube` item links to; absent for every other kind.
    [[nodiscard]] std::optional<QString> youtubeVideoID() const;
    // A still image of that video.
    [[nodiscard]] std::optional<QUrl> youtubeThumbnailURL() const;
    // The address of the player without cookies, for embedding.
    [[nodiscard]] std::optional<QUrl> youtubeEmbedURL() const;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &MediaItem::id),           jsonField("kind", &MediaItem::kind),
            jsonField("url", &MediaItem::url),         jsonField("previewURL", &MediaItem::previewURL),
            jsonField("altText", &MediaItem::altText), jsonField("width", &MediaItem::width),
            jsonField("height", &MediaItem::height),
        };
    }

    friend bool operator==(const MediaItem&, const MediaItem&) = default;
};

// The first item of each id, in order.
[[nodiscard]] QList<MediaItem> uniquedByID(const QList<MediaItem>& items);

} // namespace mirel
