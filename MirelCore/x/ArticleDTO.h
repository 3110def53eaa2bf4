#pragma once

#include "support/RawJSONDecoding.h"

namespace mirel {

// A medium inside an article. X sends its key bare or inside an object.
struct ArticleMediaEntityDTO
{
    QString id;

    // Throws RawJSONError when `value` names no medium.
    [[nodiscard]] static ArticleMediaEntityDTO fromRawJSON(const RawJSONValue& value);
};

// The long-form part of a post.
struct ArticleDTO
{
    std::optional<QString> title;
    std::optional<QString> plainText;
    std::optional<QString> coverMedia;
    std::optional<QList<ArticleMediaEntityDTO>> mediaEntities;

    // The cover and then the media inside the article, each key once.
    [[nodiscard]] QStringList allMediaKeys() const;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("title", &ArticleDTO::title),
            jsonField("plain_text", &ArticleDTO::plainText),
            jsonField("cover_media", &ArticleDTO::coverMedia),
            jsonField("media_entities", &ArticleDTO::mediaEntities),
        };
    }
};

} // namespace mirel
