#include "credentials/QtKeychainSecretStore.h"

#include "credentials/KeychainError.h"
#include "credentials/KeychainJobs.h"

#include <QStringDecoder>

namespace mirel {

namespace {

// QtKeychain's queue belongs to the thread that used it first, so there is one such thread for the life of
// the process.
std::shared_ptr<ServiceThread> keychainThread()
{
    static const auto thread = std::make_shared<ServiceThread>(QStringLiteral("keychain"));
    return thread;
}

QCoro::Task<SecretOutcome> ended(SecretOutcome outcome)
{
    co_return outcome;
}

} // namespace

QtKeychainSecretStore::QtKeychainSecretStore(std::chrono::milliseconds limit)
    : m_jobs(keychainThread(), [limit] { return std::make_unique<KeychainJobs>(limit); })
{
}

QtKeychainSecretStore::~QtKeychainSecretStore()
{
    cancelAll();
}

QCoro::Task<SecretOutcome> QtKeychainSecretStore::read(QString service, QString account)
{
    const auto readItem = [service, account](KeychainJobs& jobs) { return jobs.read(service, account); };
    return m_jobs.call(readItem);
}

QCoro::Task<SecretOutcome> QtKeychainSecretStore::write(QString service, QString account, QByteArray secret)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(secret);
    if (decoder.hasError() || secret.contains('\0')) {
        return ended({KeychainError::invalidParameter,
                      {},
                      QStringLiteral("The secret holds characters that the credential store cannot keep.")});
    }
    const auto writeItem = [service, account, text](KeychainJobs& jobs) {
        return jobs.write(service, account, text);
    };
    return m_jobs.call(writeItem);
}

QCoro::Task<SecretOutcome> QtKeychainSecretStore::remove(QString service, QString account)
{
    const auto removeItem = [service, account](KeychainJobs& jobs) { return jobs.remove(service, account); };
    return m_jobs.call(removeItem);
}

void QtKeychainSecretStore::cancelAll()
{
    QMetaObject::invokeMethod(
        keychainThread()->context(), [jobs = &m_jobs.unguarded()] { jobs->cancelAll(); },
        Qt::BlockingQueuedConnection);
}

} // namespace mirel
