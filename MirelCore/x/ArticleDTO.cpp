#include "x/ArticleDTO.h"

namespace mirel {

ArticleMediaEntityDTO ArticleMediaEntityDTO::fromRawJSON(const RawJSONValue& value)
{
    if (value.isString())
        return {value.string()};
    for (const char* const key : {"media_key", "mediaId", "id"}) {
        const auto id = value.member(key);
        if (id && !id->isNull())
            return {id->string()};
    }
    throw RawJSONError(QStringLiteral("Article media entity has no media identifier."));
}

QStringList ArticleDTO::allMediaKeys() const
{
    QStringList keys;
    if (coverMedia)
        keys.append(*coverMedia);
    for (const ArticleMediaEntityDTO& entity : mediaEntities.value_or(QList<ArticleMediaEntityDTO>{}))
        keys.append(entity.id);
    keys.removeDuplicates();
    return keys;
}

} // namespace mirel
