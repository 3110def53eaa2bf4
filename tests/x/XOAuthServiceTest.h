#pragma once

#include "credentials/InMemoryCredentialVault.h"
#include "support/BlockOn.h"
#include "x/RecordingTransport.h"
#include "x/XOAuthError.h"
#include "x/XOAuthService.h"

#include <gtest/gtest.h>

namespace mirel {

inline void PrintTo(const XOAuthError& error, std::ostream* stream)
{
    *stream << error.what();
}

inline const QByteArray tokenAnswer =
    R"({"token_type":"bearer","access_token":"access","refresh_token":"refresh","expires_in":100})";
inline const QByteArray userAnswer = R"({"data":{"id":"42","name":"Ada","username":"ada"}})";

// A service at the instant 1,000,000 with an empty vault and a prepared network, whose n-th random bytes
// (from 1) are all n.
class XOAuthServiceTest : public testing::Test
{
protected:
    static constexpr double nowSeconds = 1'000'000;
    static Instant now() { return Instant::fromSecondsSince1970(nowSeconds); }

    XOAuthService serviceOver(CredentialVault& someVault, HTTPTransport& someTransport)
    {
        return {someVault,
                someTransport,
                QUrl(QStringLiteral("https://api.example/2")),
                QUrl(QStringLiteral("https://x.example/i/oauth2/authorize")),
                &now,
                [this](qsizetype count) {
                    randomCounts.append(count);
                    return QByteArray(count, static_cast<char>(randomCounts.size()));
                }};
    }

    // Begins an attempt of the client "client", with that secret.
    PendingXAuthorization begin(XOAuthService& it, const std::optional<QString>& secret = {})
    {
        return it.begin(QStringLiteral("client"), secret, XOAuthService::nativeRedirectURI);
    }
    PendingXAuthorization begin(const std::optional<QString>& secret = {}) { return begin(service, secret); }

    static QUrl callback(const QString& query) { return QUrl(QStringLiteral("mirel://oauth/x?") + query); }
    // The callback that answers `attempt` with `code`.
    static QUrl callback(const PendingXAuthorization& attempt, const QString& code = QStringLiteral("code"))
    {
        return callback(QStringLiteral("state=%1&code=%2").arg(attempt.state, code));
    }

    void prepareSuccess()
    {
        transport.answer(200, tokenAnswer);
        transport.answer(200, userAnswer);
    }

    // The XOAuthError with which the task ends.
    static std::optional<XOAuthError> failure(QCoro::Task<XUser> task)
    {
        try {
            static_cast<void>(blockOn(std::move(task)));
        } catch (const XOAuthError& error) {
            return error;
        }
        return std::nullopt;
    }

    std::optional<XCredentials> stored() { return blockOn(vault.loadXCredentials()); }

    // What the standard callback of the standard attempt saves.
    static XCredentials connected()
    {
        return {.clientID = QStringLiteral("client"),
                .accessToken = QStringLiteral("access"),
                .refreshToken = QStringLiteral("refresh"),
                .expiresAt = Instant::fromSecondsSince1970(nowSeconds + 100),
                .userID = QStringLiteral("42"),
                .username = QStringLiteral("ada")};
    }

    QList<qsizetype> randomCounts;
    InMemoryCredentialVault vault;
    RecordingTransport transport;
    XOAuthService service = serviceOver(vault, transport);
    const XUser ada{QStringLiteral("42"), QStringLiteral("Ada"), QStringLiteral("ada")};
};

} // namespace mirel
