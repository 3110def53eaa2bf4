#include "simulator/x/TokenAuthority.h"

#include <QCryptographicHash>

namespace mirel::simulator {

namespace {

constexpr double codeLifetimeSeconds = 30;

QString challengeOf(const QString& verifier)
{
    const QByteArray hash = QCryptographicHash::hash(verifier.toUtf8(), QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

} // namespace

TokenAuthority::TokenAuthority(const SimulatedIdentity& identity, Clock clock)
    : m_clock(std::move(clock))
    , m_accessTokens{{identity.accessToken, std::nullopt}}
    , m_refreshTokens{identity.refreshToken}
{
}

QString TokenAuthority::authorize(const QString& codeChallenge, const QString& redirectURI)
{
    const QString code = QStringLiteral("simulated-code-%1").arg(++m_serial);
    m_codes.insert(code, {codeChallenge, redirectURI, m_clock().addingSeconds(codeLifetimeSeconds)});
    return code;
}

std::optional<TokenAuthority::Grant>
TokenAuthority::exchange(const QString& code, const QString& codeVerifier, const QString& redirectURI)
{
    const auto found = m_codes.constFind(code);
    if (found == m_codes.constEnd())
        return std::nullopt;
    const Code known = *found;
    m_codes.erase(found);
    if (known.expiresAt < m_clock() || known.redirectURI != redirectURI ||
        known.challenge != challengeOf(codeVerifier)) {
        return std::nullopt;
    }
    return grant();
}

std::optional<TokenAuthority::Grant> TokenAuthority::refresh(const QString& refreshToken)
{
    if (!m_refreshTokens.remove(refreshToken))
        return std::nullopt;
    return grant();
}

bool TokenAuthority::accepts(const QString& accessToken) const
{
    const auto found = m_accessTokens.constFind(accessToken);
    return found != m_accessTokens.constEnd() && (!found->has_value() || m_clock() < **found);
}

TokenAuthority::Grant TokenAuthority::grant()
{
    ++m_serial;
    Grant result{QStringLiteral("simulated-access-token-%1").arg(m_serial),
                 QStringLiteral("simulated-refresh-token-%1").arg(m_serial), m_lifetimeSeconds};
    m_accessTokens.insert(result.accessToken, m_clock().addingSeconds(m_lifetimeSeconds));
    m_refreshTokens.insert(result.refreshToken);
    return result;
}

} // namespace mirel::simulator
