#pragma once

#include "support/RawJSONDecoding.h"

namespace mirel {

// What X tells about a page.
struct MetaDTO
{
    std::optional<qint64> resultCount;
    std::optional<QString> nextToken;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("result_count", &MetaDTO::resultCount),
            jsonField("next_token", &MetaDTO::nextToken),
        };
    }
};

} // namespace mirel
