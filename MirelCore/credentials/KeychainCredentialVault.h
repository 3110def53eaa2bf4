#pragma once

#include "credentials/CredentialVault.h"
#include "credentials/SecretStoring.h"

#include <memory>

namespace mirel {

// Keeps each secret as one item of the operating system's credential store. A call that fails throws
// KeychainError; an item that does not decode throws JSONCodingError and stays in place. Nothing is tried
// twice.
class KeychainCredentialVault : public CredentialVault
{
public:
    // Over the credential store of the system, with items of that service.
    explicit KeychainCredentialVault(QString service);
    KeychainCredentialVault(QString service, std::unique_ptr<SecretStoring> store);

    [[nodiscard]] QCoro::Task<std::optional<XCredentials>> loadXCredentials() override;
    QCoro::Task<> saveXCredentials(XCredentials credentials) override;

    // An item that is not UTF-8 counts as absent.
    [[nodiscard]] QCoro::Task<std::optional<QString>> loadAIKey(AIProviderKind kind) override;
    QCoro::Task<> saveAIKey(QString key, AIProviderKind kind) override;

    // Removes the X credentials first, then the keys in the order of the kinds, and stops at the first
    // failure.
    QCoro::Task<> clearAll() override;

    // Ends every call in flight with KeychainError::userCanceled, so that a question to the user that
    // nobody answers does not hold up the end of the program.
    void cancelAll() override;

private:
    [[nodiscard]] QCoro::Task<std::optional<QByteArray>> read(QString account);
    QCoro::Task<> write(QByteArray secret, QString account);
    QCoro::Task<> remove(QString account);

    QString m_service;
    std::unique_ptr<SecretStoring> m_store;
};

} // namespace mirel
