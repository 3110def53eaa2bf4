#pragma once

#include "credentials/SecretStoring.h"
#include "support/Serial.h"

#include <chrono>

namespace mirel {

class KeychainJobs;

// The operating system's credential store through QtKeychain: the Secret Service (GNOME Keyring, KWallet) or
// the macOS Keychain, never a file in plain text. Used from one thread with an event loop; the store itself
// is spoken to on a thread of its own, so that nothing depends on the main thread being free.
class QtKeychainSecretStore : public SecretStoring
{
public:
    // A call that has not ended after `limit` fails with KeychainError::serviceNotAvailable. The limit is
    // long because the store may be asking the user for a password.
    explicit QtKeychainSecretStore(std::chrono::milliseconds limit = std::chrono::minutes(2));

    // Cancels what is in flight.
    ~QtKeychainSecretStore() override;

    [[nodiscard]] QCoro::Task<SecretOutcome> read(QString service, QString account) override;

    // Text only: KeychainError::invalidParameter when the secret is not UTF-8 or holds a NUL.
    [[nodiscard]] QCoro::Task<SecretOutcome> write(QString service, QString account,
                                                   QByteArray secret) override;

    [[nodiscard]] QCoro::Task<SecretOutcome> remove(QString service, QString account) override;

    void cancelAll() override;

private:
    Serial<KeychainJobs> m_jobs;
};

} // namespace mirel
