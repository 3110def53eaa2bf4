#pragma once

#include "credentials/SecretStoring.h"

#include <QObject>
#include <QPromise>

#include <chrono>
#include <map>

namespace QKeychain {
class Job;
}

namespace mirel {

// Runs QtKeychain's jobs on the thread that it lives on, which needs an event loop.
class KeychainJobs : public QObject
{
public:
    // No outcome takes longer than `limit`.
    explicit KeychainJobs(std::chrono::milliseconds limit);

    [[nodiscard]] QCoro::Task<SecretOutcome> read(QString service, QString account);
    [[nodiscard]] QCoro::Task<SecretOutcome> write(QString service, QString account, QString secret);
    [[nodiscard]] QCoro::Task<SecretOutcome> remove(QString service, QString account);

    // Ends every call in flight with KeychainError::userCanceled.
    void cancelAll();

private:
    using Calls = std::map<qint64, QPromise<SecretOutcome>>;

    // Takes the job, which deletes itself when it ends, be it long after the outcome.
    [[nodiscard]] QCoro::Task<SecretOutcome> run(QKeychain::Job* job, QString account);
    void end(qint64 call, const SecretOutcome& outcome);

    std::chrono::milliseconds m_limit;
    qint64 m_lastCall = 0;
    Calls m_calls;
};

} // namespace mirel
