#pragma once

#include "credentials/XCredentials.h"
#include "records/AIProviderKind.h"

#include <QCoro/QCoroTask>

#include <optional>

namespace mirel {

// The one road to every secret of the program. Every operation may throw KeychainError or
// JSONCodingError.
class CredentialVault
{
public:
    virtual ~CredentialVault();

    // Absent when none are stored.
    [[nodiscard]] virtual QCoro::Task<std::optional<XCredentials>> loadXCredentials() = 0;
    virtual QCoro::Task<> saveXCredentials(XCredentials credentials) = 0;

    // Absent when none is stored for that kind.
    [[nodiscard]] virtual QCoro::Task<std::optional<QString>> loadAIKey(AIProviderKind kind) = 0;
    virtual QCoro::Task<> saveAIKey(QString key, AIProviderKind kind) = 0;

    // Removes the X credentials and the keys of all kinds.
    virtual QCoro::Task<> clearAll() = 0;

    // Ends every call in flight, which then throws. Does nothing where calls end by themselves.
    virtual void cancelAll();

    // The key of AIProviderKind::openAI.
    [[nodiscard]] QCoro::Task<std::optional<QString>> loadOpenAIKey();
    QCoro::Task<> saveOpenAIKey(QString key);
};

} // namespace mirel
