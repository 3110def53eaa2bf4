#pragma once

#include "credentials/CredentialVault.h"
#include "transport/HTTPTransport.h"
#include "x/PendingXAuthorization.h"
#include "x/SecureRandom.h"
#include "x/XResponses.h"

#include <QStringList>

namespace mirel {

// Connects the user's X account: an authorization code with PKCE, for a client that the user registered with
// X. The caller shows the page of begin() in a browser and hands what comes back to complete().
//
// One attempt is in flight at a time, in memory alone. It stays so until it has succeeded, is abandoned, or
// another one begins; a callback that fails changes nothing.
class XOAuthService
{
public:
    static const QString nativeRedirectURI;
    // A page of Mirel's web site that hands the callback on to `nativeRedirectURI`.
    static const QString httpsHandoffRedirectURI;
    // The addresses to which X may return. X compares them letter by letter, and so does begin().
    static const QStringList supportedRedirectURIs;

    // `credentials` and `transport` outlive the service, and the service outlives its calls. `apiBaseURL` is
    // the root of the API and `authorizationBaseURL` the page that asks the user; `now` tells from when the
    // life of a token counts, and `random` makes what a stranger must not guess.
    XOAuthService(CredentialVault& credentials, HTTPTransport& transport, QUrl apiBaseURL,
                  QUrl authorizationBaseURL, Clock now = &Instant::now,
                  SecureRandom random = &secureRandomBytes);

    // Begins an attempt in place of an older one, whose callback then comes too late. White space around the
    // texts is dropped, and a blank secret counts as none. Throws XOAuthError::invalidConfiguration, and the
    // older attempt stays.
    [[nodiscard]] PendingXAuthorization
    begin(const QString& clientID, const std::optional<QString>& clientSecret, const QString& redirectURI);

    // Exchanges the code of the callback for tokens, asks X whose they are, saves them and ends the attempt.
    // Throws XOAuthError, or what the transport or the vault throws:
    //   noPendingAuthorization  no attempt is in flight, or it succeeded or was abandoned meanwhile
    //   authorizationDenied     the callback tells an error, whatever else it tells
    //   stateMismatch           it belongs to another attempt, or another one began meanwhile
    //   invalidCallback         it has no code
    //   invalidResponse         it names something twice, or an answer of X cannot be read
    //   http                    X answered a status outside 200 to 299
    [[nodiscard]] QCoro::Task<XUser> complete(QUrl callbackURL);

    // Gives up the attempt in flight, if there is one: its callback then comes too late, and one that is
    // being completed fails with noPendingAuthorization.
    void abandon();

private:
    struct Pending
    {
        QString state;
        // What proves to X that the code was asked for here.
        QString verifier;
        QString clientID;
        std::optional<QString> clientSecret;
        QString redirectURI;
    };
    using Attempt = std::shared_ptr<const Pending>;

    [[nodiscard]] QString randomURLSafe(qsizetype bytes) const;
    [[nodiscard]] QUrl authorizationURL(const Pending& attempt) const;
    QCoro::Task<TokenResponse> exchange(QString code, Attempt attempt);
    QCoro::Task<XUser> resolveUser(QString accessToken);
    // The body of a successful answer. No failure quotes a secret of the request.
    QCoro::Task<QByteArray> send(HTTPRequest request);
    // Throws unless `attempt` is the one in flight.
    void requireInFlight(const Attempt& attempt) const;
    [[nodiscard]] XCredentials credentials(const Pending& attempt, const TokenResponse& tokens,
                                           const XUser& user) const;

    CredentialVault& m_credentials;
    HTTPTransport& m_transport;
    QUrl m_apiBaseURL;
    QUrl m_authorizationBaseURL;
    Clock m_now;
    SecureRandom m_random;
    // Null when no attempt is in flight. Each attempt is another object, by which calls that wait know it.
    Attempt m_pending;
};

} // namespace mirel
