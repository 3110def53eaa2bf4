#include "x/XOAuthService.h"

#include "support/RawJSONDecoding.h"
#include "support/Text.h"
#include "x/XOAuthError.h"
#include "x/XRequests.h"

#include <QCryptographicHash>
#include <QUrlQuery>

namespace mirel {

namespace {

QString urlSafeBase64(const QByteArray& bytes)
{
    return QString::fromLatin1(
        bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

QString codeChallenge(const QString& verifier)
{
    return urlSafeBase64(QCryptographicHash::hash(verifier.toUtf8(), QCryptographicHash::Sha256));
}

// Anybody can open an address, so a repeated name is no mistake of the program.
QHash<QString, QString> queryItems(const QUrl& url)
{
    const auto pairs = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    QHash<QString, QString> items;
    for (const auto& [name, value] : pairs)
        items.insert(name, value);
    if (items.size() != pairs.size())
        throw XOAuthError::invalidResponse();
    return items;
}

// A denial is told before the state is looked at.
QString authorizationCode(const QUrl& callbackURL, const QString& state)
{
    const auto items = queryItems(callbackURL);
    const auto error = items.constFind(QStringLiteral("error"));
    if (error != items.constEnd())
        throw XOAuthError::authorizationDenied(items.value(QStringLiteral("error_description"), *error));
    const auto returnedState = items.constFind(QStringLiteral("state"));
    if (returnedState == items.constEnd() || *returnedState != state)
        throw XOAuthError::stateMismatch();
    const QString code = items.value(QStringLiteral("code"));
    if (code.isEmpty())
        throw XOAuthError::invalidCallback();
    return code;
}

template <typename Response>
Response decodeResponse(const QByteArray& body)
{
    try {
        return decodeRawJSON<Response>(body);
    } catch (const RawJSONError&) {
        throw XOAuthError::invalidResponse();
    }
}

// OAuth's own field comes first, unlike elsewhere in the API.
QString failureMessage(const QByteArray& body)
{
    try {
        const auto problem = decodeRawJSON<OAuthProblem>(body);
        if (problem.errorDescription)
            return *problem.errorDescription;
        if (problem.detail)
            return *problem.detail;
    } catch (const RawJSONError&) {
    }
    return xRequests::failureText(body);
}

} // namespace

const QString XOAuthService::nativeRedirectURI = QStringLiteral("mirel://oauth/x");
const QString XOAuthService::httpsHandoffRedirectURI =
    QStringLiteral(MIREL_WEB_ADDRESS) + QStringLiteral("/mac/oauth/x/callback");
const QStringList XOAuthService::supportedRedirectURIs{nativeRedirectURI, httpsHandoffRedirectURI};

XOAuthService::XOAuthService(CredentialVault& credentials, HTTPTransport& transport, QUrl apiBaseURL,
                             QUrl authorizationBaseURL, Clock now, SecureRandom random)
    : m_credentials(credentials)
    , m_transport(transport)
    , m_apiBaseURL(std::move(apiBaseURL))
    , m_authorizationBaseURL(std::move(authorizationBaseURL))
    , m_now(std::move(now))
    , m_random(std::move(random))
{
}

PendingXAuthorization XOAuthService::begin(const QString& clientID,
                                           const std::optional<QString>& clientSecret,
                                           const QString& redirectURI)
{
    constexpr qsizetype verifierBytes = 48;
    constexpr qsizetype stateBytes = 24;
    const auto attempt = std::make_shared<Pending>();
    attempt->clientID = trimmed(clientID);
    attempt->redirectURI = trimmed(redirectURI);
    if (attempt->clientID.isEmpty() || !supportedRedirectURIs.contains(attempt->redirectURI))
        throw XOAuthError::invalidConfiguration();
    attempt->verifier = randomURLSafe(verifierBytes);
    attempt->state = randomURLSafe(stateBytes);
    attempt->clientSecret = nilIfBlank(clientSecret);
    PendingXAuthorization authorization{authorizationURL(*attempt), attempt->state};
    m_pending = attempt;
    return authorization;
}

QCoro::Task<XUser> XOAuthService::complete(QUrl callbackURL)
{
    const Attempt attempt = m_pending;
    if (!attempt)
        throw XOAuthError::noPendingAuthorization();
    const QString code = authorizationCode(callbackURL, attempt->state);
    const TokenResponse tokens = co_await exchange(code, attempt);
    const XUser user = co_await resolveUser(tokens.accessToken);
    requireInFlight(attempt);
    const XCredentials connected = credentials(*attempt, tokens, user);
    co_await m_credentials.saveXCredentials(connected);
    if (m_pending == attempt)
        m_pending.reset();
    co_return user;
}

void XOAuthService::abandon()
{
    m_pending.reset();
}

QString XOAuthService::randomURLSafe(qsizetype bytes) const
{
    return urlSafeBase64(m_random(bytes));
}

QUrl XOAuthService::authorizationURL(const Pending& attempt) const
{
    if (!m_authorizationBaseURL.isValid())
        throw XOAuthError::invalidConfiguration();
    const QByteArray query = queryEncoded({
        {QStringLiteral("response_type"), QStringLiteral("code")},
        {QStringLiteral("client_id"), attempt.clientID},
        {QStringLiteral("redirect_uri"), attempt.redirectURI},
        {QStringLiteral("scope"),
         QStringLiteral("tweet.read users.read bookmark.read bookmark.write offline.access")},
        {QStringLiteral("state"), attempt.state},
        {QStringLiteral("code_challenge"), codeChallenge(attempt.verifier)},
        {QStringLiteral("code_challenge_method"), QStringLiteral("S256")},
    });
    QUrl url = m_authorizationBaseURL;
    url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    return url;
}

QCoro::Task<TokenResponse> XOAuthService::exchange(QString code, Attempt attempt)
{
    HTTPRequest exchanging =
        xRequests::tokens(m_apiBaseURL, attempt->clientID, attempt->clientSecret,
                          {{QStringLiteral("code"), code},
                           {QStringLiteral("grant_type"), QStringLiteral("authorization_code")},
                           {QStringLiteral("redirect_uri"), attempt->redirectURI},
                           {QStringLiteral("code_verifier"), attempt->verifier}});
    exchanging.headers.append(HTTPHeader("Accept", "application/json"));
    const QByteArray body = co_await send(std::move(exchanging));
    co_return decodeResponse<TokenResponse>(body);
}

QCoro::Task<XUser> XOAuthService::resolveUser(QString accessToken)
{
    HTTPRequest asking = xRequests::currentUser(m_apiBaseURL, accessToken);
    // The code is spent, and the tokens are saved with the answer.
    asking.isUnrepeatable = true;
    const QByteArray body = co_await send(std::move(asking));
    co_return decodeResponse<CurrentUserResponse>(body).data;
}

QCoro::Task<QByteArray> XOAuthService::send(HTTPRequest request)
{
    const QStringList secrets = xRequests::secretsIn(request);
    const HTTPResponse response = co_await m_transport.data(std::move(request));
    if (!response.isSuccess())
        throw XOAuthError::http(response.status,
                                xRequests::withoutSecrets(failureMessage(response.body), secrets));
    co_return response.body;
}

void XOAuthService::requireInFlight(const Attempt& attempt) const
{
    if (!m_pending)
        throw XOAuthError::noPendingAuthorization();
    if (m_pending != attempt)
        throw XOAuthError::stateMismatch();
}

XCredentials XOAuthService::credentials(const Pending& attempt, const TokenResponse& tokens,
                                        const XUser& user) const
{
    return {
        .clientID = attempt.clientID,
        .clientSecret = attempt.clientSecret,
        .accessToken = tokens.accessToken,
        .refreshToken = tokens.refreshToken,
        .expiresAt = xRequests::expiry(tokens, m_now()),
        .userID = user.id,
        .username = user.username,
    };
}

} // namespace mirel
