#pragma once

#include "simulator/SimulatorOptions.h"

#include <QHash>
#include <QSet>

namespace mirel::simulator {

// Gives out codes and tokens by the rules of OAuth 2.0 with PKCE and rotating refresh tokens.
class TokenAuthority
{
public:
    struct Grant
    {
        QString accessToken;
        QString refreshToken;
        int lifetimeSeconds = 0;
    };

    TokenAuthority(const SimulatedIdentity& identity, Clock clock);

    // How long the access tokens live that are given out from now on.
    void setLifetime(int seconds) { m_lifetimeSeconds = seconds; }

    // A code for one exchange, good for 30 seconds.
    [[nodiscard]] QString authorize(const QString& codeChallenge, const QString& redirectURI);

    // Spends the code, also when the rest does not fit. Absent when it is not good.
    [[nodiscard]] std::optional<Grant> exchange(const QString& code, const QString& codeVerifier,
                                                const QString& redirectURI);

    // Spends the refresh token. Absent when it is not good.
    [[nodiscard]] std::optional<Grant> refresh(const QString& refreshToken);

    [[nodiscard]] bool accepts(const QString& accessToken) const;

    // No access token given out so far is good any more. Refresh tokens stay good.
    void expireAccessTokens() { m_accessTokens.clear(); }

private:
    struct Code
    {
        QString challenge;
        QString redirectURI;
        Instant expiresAt;
    };

    [[nodiscard]] Grant grant();

    Clock m_clock;
    int m_lifetimeSeconds = 7200;
    int m_serial = 0;
    QHash<QString, Code> m_codes;
    // Absent: never expires.
    QHash<QString, std::optional<Instant>> m_accessTokens;
    QSet<QString> m_refreshTokens;
};

} // namespace mirel::simulator
