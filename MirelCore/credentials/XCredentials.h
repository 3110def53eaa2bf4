#pragma once

#include "support/JSONCoding.h"

namespace mirel {

// The whole X connection.
struct XCredentials
{
    // The OAuth client identifier that the user registered.
    QString clientID;
    // Present for a confidential client.
    std::optional<QString> clientSecret;
    QString accessToken;
    std::optional<QString> refreshToken;
    // When `accessToken` expires. Absent: not known, and never refreshed by Mirel itself.
    std::optional<Instant> expiresAt;
    // X's identifier of the connected account.
    QString userID;
    // Its handle, for display.
    std::optional<QString> username;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("clientID", &XCredentials::clientID),
            jsonField("clientSecret", &XCredentials::clientSecret),
            jsonField("accessToken", &XCredentials::accessToken),
            jsonField("refreshToken", &XCredentials::refreshToken),
            jsonField("expiresAt", &XCredentials::expiresAt),
            jsonField("userID", &XCredentials::userID),
            jsonField("username", &XCredentials::username),
        };
    }

    friend bool operator==(const XCredentials&, const XCredentials&) = default;
};

} // namespace mirel
