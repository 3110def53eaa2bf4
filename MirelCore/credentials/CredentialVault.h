#pragma once

#include "credentials/XCredentials.h"
#include "records/AIProviderKind.h"

#include <QCoro/QCoroTask>

#include <optional>

namespace mirel {

// The one road to every secret of the program. Every operation may throw KeychainError or
// JSONCodingError, and all of them, changes() too, are called on the one thread that the vault lives on.
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

    // How often X credentials were saved or all removed through this vault; a change counts from its
    // beginning. Who loads, changes and saves compares the numbers before and after the loading: when they
    // are equal and the saving begins at once, nothing is brought back and nothing is overwritten.
    [[nodiscard]] qint64 changes() const { return m_changes; }

    // Ends every call in flight, which then throws. Does nothing where calls end by themselves.
    virtual void cancelAll();

    // The key of AIProviderKind::openAI.
    [[nodiscard]] QCoro::Task<std::optional<QString>> loadOpenAIKey();
    QCoro::Task<> saveOpenAIKey(QString key);

protected:
    void noteChange() { ++m_changes; }

private:
    qint64 m_changes = 0;
};

} // namespace mirel
