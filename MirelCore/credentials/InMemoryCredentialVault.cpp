#include "credentials/InMemoryCredentialVault.h"

#include <utility>

namespace mirel {

InMemoryCredentialVault::InMemoryCredentialVault(std::optional<XCredentials> xCredentials,
                                                 std::optional<QString> openAIKey,
                                                 std::map<AIProviderKind, QString> aiKeys)
    : m_xCredentials(std::move(xCredentials))
    , m_aiKeys(std::move(aiKeys))
{
    if (openAIKey)
        m_aiKeys.insert_or_assign(AIProviderKind::openAI, *std::move(openAIKey));
}

QCoro::Task<std::optional<XCredentials>> InMemoryCredentialVault::loadXCredentials()
{
    // QCoro 0.8 moves out of what co_return names, unless it is const.
    co_return std::as_const(m_xCredentials);
}

QCoro::Task<> InMemoryCredentialVault::saveXCredentials(XCredentials credentials)
{
    noteChange();
    m_xCredentials = std::move(credentials);
    co_return;
}

QCoro::Task<std::optional<QString>> InMemoryCredentialVault::loadAIKey(AIProviderKind kind)
{
    const auto found = m_aiKeys.find(kind);
    if (found == m_aiKeys.end())
        co_return std::nullopt;
    co_return std::as_const(found->second);
}

QCoro::Task<> InMemoryCredentialVault::saveAIKey(QString key, AIProviderKind kind)
{
    m_aiKeys.insert_or_assign(kind, std::move(key));
    co_return;
}

QCoro::Task<> InMemoryCredentialVault::clearAll()
{
    noteChange();
    m_xCredentials.reset();
    m_aiKeys.clear();
    co_return;
}

} // namespace mirel
