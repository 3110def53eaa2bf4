#pragma once

#include "support/JSONCoding.h"

namespace mirel {

// What a credential import did.
struct CredentialImportResult
{
    // Something was imported.
    bool ok = false;
    // X credentials were saved.
    bool x = false;
    // An OpenAI key was saved.
    bool openAI = false;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("ok", &CredentialImportResult::ok),
            jsonField("x", &CredentialImportResult::x),
            jsonField("openAI", &CredentialImportResult::openAI),
        };
    }

    friend bool operator==(const CredentialImportResult&, const CredentialImportResult&) = default;
};

} // namespace mirel
