#pragma once

#include "credentials/KeychainError.h"
#include "credentials/SecretStoring.h"

#include <QStringList>

#include <map>

namespace mirel {

// What a FakeSecretStore holds and was asked, outliving it.
struct FakeSecrets
{
    // By "service/account".
    std::map<QString, QByteArray> items;
    // "read service/account" and so on, in order.
    QStringList calls;
    // The outcome of the call with that number, from 0, instead of the real one.
    std::map<qsizetype, SecretOutcome> failures;
};

class FakeSecretStore : public SecretStoring
{
public:
    explicit FakeSecretStore(FakeSecrets& secrets)
        : m_secrets(secrets)
    {
    }

    QCoro::Task<SecretOutcome> read(QString service, QString account) override
    {
        const QString item = service + u'/' + account;
        if (const auto failure = begin(QStringLiteral("read ") + item))
            co_return *failure;
        const auto found = m_secrets.items.find(item);
        if (found == m_secrets.items.end())
            co_return SecretOutcome{KeychainError::itemNotFound, {}, QStringLiteral("Entry not found")};
        co_return SecretOutcome{0, found->second, {}};
    }

    QCoro::Task<SecretOutcome> write(QString service, QString account, QByteArray secret) override
    {
        const QString item = service + u'/' + account;
        if (const auto failure = begin(QStringLiteral("write ") + item))
            co_return *failure;
        m_secrets.items.insert_or_assign(item, secret);
        co_return SecretOutcome{};
    }

    QCoro::Task<SecretOutcome> remove(QString service, QString account) override
    {
        const QString item = service + u'/' + account;
        if (const auto failure = begin(QStringLiteral("remove ") + item))
            co_return *failure;
        const bool wasThere = m_secrets.items.erase(item) > 0;
        co_return SecretOutcome{wasThere ? 0 : KeychainError::itemNotFound, {}, {}};
    }

private:
    std::optional<SecretOutcome> begin(const QString& call)
    {
        const auto failure = m_secrets.failures.find(m_secrets.calls.size());
        m_secrets.calls.append(call);
        if (failure == m_secrets.failures.end())
            return std::nullopt;
        return failure->second;
    }

    FakeSecrets& m_secrets;
};

} // namespace mirel
