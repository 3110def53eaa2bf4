#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"
#include "model/SettingsValidationError.h"
#include "support/Text.h"
#include "x/MirelDeepLink.h"

#include <QUrlQuery>

namespace mirel {

namespace {

// Throws SettingsValidationError.
void requireConnectable(const QString& clientID, const QString& redirectURI)
{
    if (!nilIfBlank(QStringView(clientID)))
        throw SettingsValidationError(SettingsValidationError::Case::missingXClientID);
    if (!XOAuthService::supportedRedirectURIs.contains(trimmed(redirectURI)))
        throw SettingsValidationError(SettingsValidationError::Case::invalidXRedirectURI);
}

QString stateIn(const QUrl& url)
{
    return QUrlQuery(url).queryItemValue(QStringLiteral("state"), QUrl::FullyDecoded);
}

} // namespace

QCoro::Task<> MirelAppModel::beginXOAuth(QString clientID, QString clientSecret, QString redirectURI)
{
    if (!m_services.oauth || !m_services.vault || !m_services.makeWebAuthenticationSession)
        co_return;
    const RunningCommand running(*this);
    const QUuid attempt = QUuid::createUuid();
    try {
        requireConnectable(clientID, redirectURI);
        m_xAuthorizationAttempt = attempt;
        const auto begin = [clientID, clientSecret, redirectURI](XOAuthService& oauth) {
            return oauth.begin(clientID, clientSecret, redirectURI);
        };
        const PendingXAuthorization pending = co_await m_services.oauth->call(begin);
        // Another attempt may have begun, or this one been given up.
        if (m_xAuthorizationAttempt == attempt)
            startXAuthentication(pending);
    } catch (...) {
        fail(std::current_exception());
    }
}

void MirelAppModel::startXAuthentication(const PendingXAuthorization& pending)
{
    setXAuthentication(nullptr);
    auto session = m_services.makeWebAuthenticationSession();
    const bool isStarted =
        session->start(pending.authorizationURL, [this](const WebAuthenticationSession::Outcome& outcome) {
            endXAuthentication(outcome);
        });
    if (!isStarted) {
        abandonXAuthorization();
        throw SettingsValidationError(SettingsValidationError::Case::xAuthenticationSessionDidNotStart);
    }
    setXAuthentication(std::move(session), pending.authorizationURL);
    setStatusMessage(QStringLiteral("Complete authorization in X; Mirel will handle the callback."));
}

void MirelAppModel::endXAuthentication(WebAuthenticationSession::Outcome outcome)
{
    setXAuthentication(nullptr);
    if (outcome.callbackURL) {
        handleOpenURL(*outcome.callbackURL);
        return;
    }
    abandonXAuthorization();
    try {
        if (outcome.failure)
            std::rethrow_exception(outcome.failure);
        setLastError(QStringLiteral("X authorization did not return a callback."));
    } catch (const WebAuthenticationCanceled&) {
        setStatusMessage(QStringLiteral("X authorization canceled."));
    } catch (...) {
        fail(std::current_exception());
    }
}

void MirelAppModel::cancelXAuthorization()
{
    if (m_xAuthenticationSession)
        m_xAuthenticationSession->cancel();
}

// Replaces the sign-in that the browser shows. What it replaces ends in silence.
void MirelAppModel::setXAuthentication(std::unique_ptr<WebAuthenticationSession> session, const QUrl& page)
{
    m_xAuthenticationSession = std::move(session);
    m_xAuthorizationURL = page;
    Q_EMIT isAuthorizingXChanged();
}

// From here on no callback connects an account until the next attempt.
QCoro::Task<> MirelAppModel::abandonXAuthorization()
{
    m_xAuthorizationAttempt = QUuid();
    if (m_xAuthenticationSession)
        setXAuthentication(nullptr);
    if (!m_services.oauth)
        co_return;
    const RunningCommand running(*this);
    co_await m_services.oauth->call([](XOAuthService& oauth) { oauth.abandon(); });
}

QCoro::Task<> MirelAppModel::takePastedXCallback(QString address)
{
    const RunningCommand running(*this);
    setLastError({});
    if (const auto callback = MirelDeepLink::xOAuthCallbackIn(address))
        co_await handleOpenURL(*callback);
    else
        setLastError(QStringLiteral("That is not an address to which X returns: it begins with %1.")
                         .arg(XOAuthService::nativeRedirectURI));
}

QCoro::Task<> MirelAppModel::completeXAuthorization(QUrl callbackURL)
{
    // Another's callback leaves the browser's sign-in standing.
    if (m_xAuthenticationSession && stateIn(callbackURL) == stateIn(m_xAuthorizationURL))
        setXAuthentication(nullptr);
    try {
        const auto complete = [callbackURL](XOAuthService& oauth) { return oauth.complete(callbackURL); };
        const XUser user = co_await m_services.oauth->call(complete);
        setStatusMessage(QStringLiteral("Connected @") + user.username + u'.');
        co_await refreshCredentialState();
    } catch (...) {
        fail(std::current_exception());
    }
}

} // namespace mirel
