#include "credentials/KeychainJobs.h"

#include "credentials/KeychainError.h"
#include "credentials/platform/SecretServiceState.h"

#include <QCoro/QCoroFuture>
#include <QTimer>
#include <qt6keychain/keychain.h>

namespace mirel {

namespace {

qint32 statusOf(QKeychain::Error error)
{
    switch (error) {
    case QKeychain::NoError:
        return 0;
    case QKeychain::EntryNotFound:
        return KeychainError::itemNotFound;
    case QKeychain::CouldNotDeleteEntry:
        return KeychainError::inputOutput;
    case QKeychain::AccessDeniedByUser:
        return KeychainError::userCanceled;
    case QKeychain::AccessDenied:
        return KeychainError::authenticationFailed;
    case QKeychain::NoBackendAvailable:
        return KeychainError::notAvailable;
    case QKeychain::NotImplemented:
        return KeychainError::unimplemented;
    case QKeychain::OtherError:
        break;
    }
    return KeychainError::internalComponent;
}

SecretOutcome failure(qint32 status, QString message)
{
    return {status, {}, std::move(message)};
}

// QtKeychain hides two things that a caller must know: that nothing answers at all, and that an item is
// there but locked. It reports the latter as an item that is absent, or as a deletion that succeeded.
SecretOutcome outcomeOf(const QKeychain::Job& job)
{
    SecretOutcome outcome{statusOf(job.error()), {}, job.errorString()};
    if (const auto* reading = qobject_cast<const QKeychain::ReadPasswordJob*>(&job); reading && !job.error())
        outcome.secret = reading->binaryData();
    const bool isDeletion = qobject_cast<const QKeychain::DeletePasswordJob*>(&job) != nullptr;
    if (outcome.status == 0 && !isDeletion)
        return outcome;
    switch (secretServiceState(job.service(), job.key())) {
    case SecretServiceState::absent:
        return failure(KeychainError::notAvailable,
                       QStringLiteral("No secret service is running. Start or install a keyring (for example "
                                      "GNOME Keyring or KWallet) and try again."));
    case SecretServiceState::locked:
        return failure(KeychainError::interactionNotAllowed,
                       QStringLiteral("The keyring is locked. Unlock it and try again."));
    case SecretServiceState::ready:
        break;
    }
    return outcome;
}

} // namespace

KeychainJobs::KeychainJobs(std::chrono::milliseconds limit)
    : m_limit(limit)
{
}

QCoro::Task<SecretOutcome> KeychainJobs::read(QString service, QString account)
{
    return run(new QKeychain::ReadPasswordJob(service), std::move(account));
}

QCoro::Task<SecretOutcome> KeychainJobs::write(QString service, QString account, QString secret)
{
    auto* job = new QKeychain::WritePasswordJob(service);
    job->setTextData(secret);
    return run(job, std::move(account));
}

QCoro::Task<SecretOutcome> KeychainJobs::remove(QString service, QString account)
{
    return run(new QKeychain::DeletePasswordJob(service), std::move(account));
}

void KeychainJobs::cancelAll()
{
    const auto canceled = failure(KeychainError::userCanceled,
                                  QStringLiteral("The credential store was not waited for any longer."));
    while (!m_calls.empty())
        end(m_calls.begin()->first, canceled);
}

QCoro::Task<SecretOutcome> KeychainJobs::run(QKeychain::Job* job, QString account)
{
    const qint64 call = ++m_lastCall;
    const auto future = m_calls[call].future();
    m_calls[call].start();
    job->setInsecureFallback(false);
    job->setKey(account);
    connect(job, &QKeychain::Job::finished, this, [this, call, job] { end(call, outcomeOf(*job)); });
    QTimer::singleShot(m_limit, this, [this, call] {
        end(call, failure(KeychainError::serviceNotAvailable,
                          QStringLiteral("The keyring did not answer in time. Check whether it waits for a "
                                         "password, and try again.")));
    });
    job->start();
    co_return co_await future;
}

// Of a job's end, the limit and a cancellation, the first one counts.
void KeychainJobs::end(qint64 call, const SecretOutcome& outcome)
{
    auto ended = m_calls.extract(call);
    if (ended.empty())
        return;
    ended.mapped().addResult(outcome);
    ended.mapped().finish();
}

} // namespace mirel
