#include "credentials/CredentialImportService.h"

#include "credentials/CredentialImportError.h"
#include "support/Text.h"

#include <cstdlib>
#include <cstring>

namespace mirel {

namespace {

// Half a surrogate pair, which an escape in JSON can spell, has no UTF-8 form: it would be saved as another
// text than was given.
bool isWellFormed(const CredentialImportPayload& payload)
{
    return std::apply(
        [&payload](const auto&... fields) {
            return ((payload.*fields.member).value_or(QString()).isValidUtf16() && ...);
        },
        CredentialImportPayload::jsonFields());
}

CredentialImportPayload decodePayload(const QByteArray& document)
{
    try {
        auto payload = decodeJSON<CredentialImportPayload>(document);
        if (isWellFormed(payload))
            return payload;
    } catch (const JSONCodingError&) {
        // Its detail could quote a secret.
    }
    throw CredentialImportError(CredentialImportError::Case::invalidInput);
}

std::optional<QString> firstNonempty(const std::optional<QString>& given,
                                     const QProcessEnvironment& environment, const QString& variable)
{
    if (auto text = nilIfBlank(given))
        return text;
    return nilIfBlank(QStringView(environment.value(variable)));
}

std::optional<Instant> parseDate(const std::optional<QString>& text)
{
    const auto date = nilIfBlank(text);
    return date ? Instant::fromISO8601(*date) : std::nullopt;
}

// Absent when the document holds no X part.
std::optional<XCredentials> xCredentials(const CredentialImportPayload& payload,
                                         const QProcessEnvironment& environment)
{
    const auto clientID = firstNonempty(payload.clientID, environment, QStringLiteral("X_CLIENT_ID"));
    const auto accessToken = nilIfBlank(payload.accessToken);
    const auto userID = nilIfBlank(payload.userID);
    if (!clientID && !accessToken && !userID)
        return std::nullopt;
    if (!clientID || !accessToken || !userID)
        throw CredentialImportError(CredentialImportError::Case::incompleteXCredentials);
    return XCredentials{
        .clientID = *clientID,
        .clientSecret = firstNonempty(payload.clientSecret, environment, QStringLiteral("X_CLIENT_SECRET")),
        .accessToken = *accessToken,
        .refreshToken = nilIfBlank(payload.refreshToken),
        .expiresAt = parseDate(payload.expiresAt),
        .userID = *userID,
        .username = nilIfBlank(payload.username),
    };
}

} // namespace

CredentialImportService::CredentialImportService(CredentialVault& vault)
    : m_vault(vault)
{
}

QStringList CredentialImportService::secretVariables()
{
    return {QStringLiteral("X_CLIENT_SECRET"), QStringLiteral("OPENAI_API_KEY")};
}

QProcessEnvironment CredentialImportService::takeEnvironment()
{
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& secret : secretVariables()) {
        if (char* const text = std::getenv(qPrintable(secret)))
            std::fill_n(text, std::strlen(text), '\0');
        qunsetenv(qPrintable(secret));
    }
    return environment;
}

QCoro::Task<CredentialImportResult>
CredentialImportService::importCredentials(QByteArray document, QProcessEnvironment environment)
{
    const CredentialImportPayload payload = decodePayload(document);
    const auto credentials = xCredentials(payload, environment);
    const auto openAIKey = firstNonempty(payload.openAIAPIKey, environment, QStringLiteral("OPENAI_API_KEY"));
    if (credentials)
        co_await m_vault.saveXCredentials(*credentials);
    if (openAIKey)
        co_await m_vault.saveOpenAIKey(*openAIKey);
    co_return CredentialImportResult{
        .ok = credentials || openAIKey,
        .x = credentials.has_value(),
        .openAI = openAIKey.has_value(),
    };
}

} // namespace mirel
