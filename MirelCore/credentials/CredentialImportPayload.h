#pragma once

#include "support/JSONCoding.h"

namespace mirel {

// The document that the credential import reads.
struct CredentialImportPayload
{
    std::optional<QString> clientID;
    std::optional<QString> clientSecret;
    std::optional<QString> accessToken;
    std::optional<QString> refreshToken;
    // ISO 8601.
    std::optional<QString> expiresAt;
    std::optional<QString> userID;
    std::optional<QString> username;
    std::optional<QString> openAIAPIKey;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("client_id", &CredentialImportPayload::clientID),
            jsonField("client_secret", &CredentialImportPayload::clientSecret),
            jsonField("access_token", &CredentialImportPayload::accessToken),
            jsonField("refresh_token", &CredentialImportPayload::refreshToken),
            jsonField("expires_at", &CredentialImportPayload::expiresAt),
            jsonField("user_id", &CredentialImportPayload::userID),
            jsonField("username", &CredentialImportPayload::username),
            jsonField("openai_api_key", &CredentialImportPayload::openAIAPIKey),
        };
    }

    friend bool operator==(const CredentialImportPayload&, const CredentialImportPayload&) = default;
};

} // namespace mirel
