#pragma once

#include "support/RawJSONDecoding.h"

namespace mirel {

// One encoding of a video.
struct MediaVariantDTO
{
    // In bits per second.
    std::optional<qint64> bitRate;
    std::optional<QString> contentType;
    QString url;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("bit_rate", &MediaVariantDTO::bitRate),
            jsonField("content_type", &MediaVariantDTO::contentType),
            jsonField("url", &MediaVariantDTO::url),
        };
    }
};

// A picture or video as X sends it.
struct MediaDTO
{
    QString mediaKey;
    QString type;
    std::optional<QString> url;
    std::optional<QString> previewImageURL;
    std::optional<QString> altText;
    std::optional<qint64> width;
    std::optional<qint64> height;
    std::optional<QList<MediaVariantDTO>> variants;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("media_key", &MediaDTO::mediaKey),
            jsonField("type", &MediaDTO::type),
            jsonField("url", &MediaDTO::url),
            jsonField("preview_image_url", &MediaDTO::previewImageURL),
            jsonField("alt_text", &MediaDTO::altText),
            jsonField("width", &MediaDTO::width),
            jsonField("height", &MediaDTO::height),
            jsonField("variants", &MediaDTO::variants),
        };
    }
};

} // namespace mirel
