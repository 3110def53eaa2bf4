#pragma once

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QString>

#include <optional>

namespace mirel {

// What a store answered to one call.
struct SecretOutcome
{
    // 0, or one of the numbers of KeychainError.
    qint32 status = 0;
    // What was read.
    std::optional<QByteArray> secret;
    // The store's own words for the status, or empty.
    QString message;
};

// The few operations that a vault needs of a store of secrets. An item is identified by its service and its
// account. Outcomes are values: no operation throws.
class SecretStoring
{
public:
    virtual ~SecretStoring();

    [[nodiscard]] virtual QCoro::Task<SecretOutcome> read(QString service, QString account) = 0;

    // Changes the item, or adds it when there is none.
    [[nodiscard]] virtual QCoro::Task<SecretOutcome> write(QString service, QString account,
                                                           QByteArray secret) = 0;

    [[nodiscard]] virtual QCoro::Task<SecretOutcome> remove(QString service, QString account) = 0;

    // Ends every call in flight with KeychainError::userCanceled. What the store had begun may still happen.
    virtual void cancelAll();
};

} // namespace mirel
