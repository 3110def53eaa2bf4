#pragma once

#include "x/MediaDTO.h"
#include "x/MetaDTO.h"
#include "x/TweetDTO.h"
#include "x/UserDTO.h"

namespace mirel {

// What the posts of a page refer to.
struct IncludesDTO
{
    std::optional<QList<UserDTO>> users;
    std::optional<QList<MediaDTO>> media;
    std::optional<QList<TweetDTO>> tweets;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("users", &IncludesDTO::users),
            jsonField("media", &IncludesDTO::media),
            jsonField("tweets", &IncludesDTO::tweets),
        };
    }
};

// A page of posts.
struct TweetPageResponse
{
    QList<TweetDTO> data;
    std::optional<IncludesDTO> includes;
    std::optional<MetaDTO> meta;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("data", &TweetPageResponse::data),
            jsonField("includes", &TweetPageResponse::includes),
            jsonField("meta", &TweetPageResponse::meta),
        };
    }
};

} // namespace mirel
