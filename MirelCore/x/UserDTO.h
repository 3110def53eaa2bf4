#pragma once

#include "records/Author.h"
#include "support/RawJSONDecoding.h"

namespace mirel {

// An account as X sends it.
struct UserDTO
{
    QString id;
    QString name;
    QString username;
    std::optional<QString> profileImageURL;

    // The author that this account is. A picture address that is no URL is left out.
    [[nodiscard]] SyncedAuthor synced() const { return {id, name, username, parseURL(profileImageURL)}; }

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &UserDTO::id),
            jsonField("name", &UserDTO::name),
            jsonField("username", &UserDTO::username),
            jsonField("profile_image_url", &UserDTO::profileImageURL),
        };
    }
};

} // namespace mirel
