#pragma once

#include "credentials/CredentialVault.h"

#include <map>

namespace mirel {

// A vault that forgets with the process, for tests and for the demo. Never throws.
class InMemoryCredentialVault : public CredentialVault
{
public:
    // A given `openAIKey` goes into the keys under AIProviderKind::openAI.
    explicit InMemoryCredentialVault(std::optional<XCredentials> xCredentials = {},
                                     std::optional<QString> openAIKey = {},
                                     std::map<AIProviderKind, QString> aiKeys = {});

    [[nodiscard]] QCoro::Task<std::optional<XCredentials>> loadXCredentials() override;
    QCoro::Task<> saveXCredentials(XCredentials credentials) override;
    [[nodiscard]] QCoro::Task<std::optional<QString>> loadAIKey(AIProviderKind kind) override;
    QCoro::Task<> saveAIKey(QString key, AIProviderKind kind) override;
    QCoro::Task<> clearAll() override;

private:
    std::optional<XCredentials> m_xCredentials;
    std::map<AIProviderKind, QString> m_aiKeys;
};

} // namespace mirel
