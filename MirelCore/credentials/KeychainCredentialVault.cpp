#include "credentials/KeychainCredentialVault.h"

#include "credentials/KeychainError.h"
#include "credentials/QtKeychainSecretStore.h"

#include <QStringDecoder>

namespace mirel {

namespace {

QString xAccount()
{
    return QStringLiteral("x-oauth-credentials");
}

QString account(AIProviderKind kind)
{
    if (kind == AIProviderKind::openAI)
        return QStringLiteral("openai-api-key");
    return QStringLiteral("ai-api-key-") + rawValue(kind);
}

} // namespace

KeychainCredentialVault::KeychainCredentialVault(QString service)
    : KeychainCredentialVault(std::move(service), std::make_unique<QtKeychainSecretStore>())
{
}

KeychainCredentialVault::KeychainCredentialVault(QString service, std::unique_ptr<SecretStoring> store)
    : m_service(std::move(service))
    , m_store(std::move(store))
{
}

QCoro::Task<std::optional<XCredentials>> KeychainCredentialVault::loadXCredentials()
{
    const auto json = co_await read(xAccount());
    if (!json)
        co_return std::nullopt;
    co_return decodeJSON<XCredentials>(*json);
}

QCoro::Task<> KeychainCredentialVault::saveXCredentials(XCredentials credentials)
{
    noteChange();
    co_await write(encodeJSON(credentials), xAccount());
}

QCoro::Task<std::optional<QString>> KeychainCredentialVault::loadAIKey(AIProviderKind kind)
{
    const auto utf8 = co_await read(account(kind));
    if (!utf8)
        co_return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString key = decoder.decode(*utf8);
    if (decoder.hasError())
        co_return std::nullopt;
    co_return key;
}

QCoro::Task<> KeychainCredentialVault::saveAIKey(QString key, AIProviderKind kind)
{
    co_await write(key.toUtf8(), account(kind));
}

QCoro::Task<> KeychainCredentialVault::clearAll()
{
    noteChange();
    co_await remove(xAccount());
    for (const auto& row : rawValues(AIProviderKind{}))
        co_await remove(account(row.value));
}

void KeychainCredentialVault::cancelAll()
{
    m_store->cancelAll();
}

QCoro::Task<std::optional<QByteArray>> KeychainCredentialVault::read(QString account)
{
    const SecretOutcome outcome = co_await m_store->read(m_service, std::move(account));
    if (outcome.status == KeychainError::itemNotFound)
        co_return std::nullopt;
    if (outcome.status != 0 || !outcome.secret)
        throw KeychainError(outcome.status, outcome.message);
    co_return outcome.secret;
}

QCoro::Task<> KeychainCredentialVault::write(QByteArray secret, QString account)
{
    const SecretOutcome outcome = co_await m_store->write(m_service, std::move(account), std::move(secret));
    if (outcome.status != 0)
        throw KeychainError(outcome.status, outcome.message);
}

QCoro::Task<> KeychainCredentialVault::remove(QString account)
{
    const SecretOutcome outcome = co_await m_store->remove(m_service, std::move(account));
    if (outcome.status != 0 && outcome.status != KeychainError::itemNotFound)
        throw KeychainError(outcome.status, outcome.message);
}

} // namespace mirel
