#include "credentials/CredentialVault.h"

namespace mirel {

CredentialVault::~CredentialVault() = default;

void CredentialVault::cancelAll() {}

QCoro::Task<std::optional<QString>> CredentialVault::loadOpenAIKey()
{
    return loadAIKey(AIProviderKind::openAI);
}

QCoro::Task<> CredentialVault::saveOpenAIKey(QString key)
{
    return saveAIKey(std::move(key), AIProviderKind::openAI);
}

} // namespace mirel
