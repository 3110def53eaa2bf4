#include "simulator/x/SimulatedX.h"

#include "simulator/FaultResponse.h"
#include "simulator/posts/JSONText.h"

#include <QUrl>

namespace mirel::simulator {

namespace {

const QString scope = QStringLiteral("tweet.read users.read bookmark.read bookmark.write offline.access");

HTTPResponse redirectTo(const QString& address, const QList<std::pair<QString, QString>>& items)
{
    QByteArray location = address.toUtf8();
    char separator = address.contains(u'?') ? '&' : '?';
    for (const auto& [name, value] : items) {
        location += separator + name.toUtf8() + '=' + QUrl::toPercentEncoding(value);
        separator = '&';
    }
    return {302, "text/html; charset=utf-8", {{"location", location}}, {}};
}

HTTPResponse tokenResponse(const TokenAuthority::Grant& grant)
{
    HTTPResponse response;
    response.body = JSONObjectText()
                        .text("token_type", u"bearer")
                        .number("expires_in", grant.lifetimeSeconds)
                        .text("access_token", grant.accessToken)
                        .text("scope", scope)
                        .text("refresh_token", grant.refreshToken)
                        .json();
    return response;
}

HTTPResponse oauthError(int status, QStringView error, QStringView description)
{
    HTTPResponse response;
    response.status = status;
    response.body = JSONObjectText().text("error", error).text("error_description", description).json();
    return response;
}

// Absent when `items` are what an authorization is asked for with, else what is wrong with them.
std::optional<QString> mistakeIn(const QList<std::pair<QString, QString>>& items, const QString& clientID,
                                 const QStringList& redirectURIs)
{
    const auto value = [&](QStringView name) { return firstValue(items, name).value_or(QString()); };
    if (value(u"response_type") != u"code")
        return QStringLiteral("response_type must be code.");
    if (value(u"client_id") != clientID)
        return QStringLiteral("client_id is not known.");
    if (!redirectURIs.contains(value(u"redirect_uri")))
        return QStringLiteral("redirect_uri is not registered.");
    if (value(u"scope") != scope)
        return QStringLiteral("scope must be “%1”.").arg(scope);
    if (value(u"state").isEmpty())
        return QStringLiteral("state is missing.");
    if (value(u"code_challenge").size() != 43 || value(u"code_challenge_method") != u"S256")
        return QStringLiteral("code_challenge must be made by the method S256.");
    return std::nullopt;
}

} // namespace

HTTPResponse SimulatedX::authorizationPage(const HTTPRequest& request)
{
    const auto items = request.queryItems();
    if (const auto mistake = mistakeIn(items, m_identity.clientID, m_options.redirectURIs)) {
        m_log.addProblem(*mistake);
        return {400,
                "text/html; charset=utf-8",
                {},
                "<!DOCTYPE html><title>Something went wrong</title><p>" + mistake->toUtf8()};
    }
    const QString address = *firstValue(items, u"redirect_uri");
    const QString state = *firstValue(items, u"state");
    if (isActive(Fault::Action::DenyAuthorization)) {
        return redirectTo(address, {{QStringLiteral("error"), QStringLiteral("access_denied")},
                                    {QStringLiteral("state"), state}});
    }
    const QString code = m_tokens.authorize(*firstValue(items, u"code_challenge"), address);
    return redirectTo(address, {{QStringLiteral("state"), state}, {QStringLiteral("code"), code}});
}

HTTPResponse SimulatedX::token(const HTTPRequest& request)
{
    const auto fields = request.formFields();
    const auto value = [&](QStringView name) { return firstValue(fields, name).value_or(QString()); };
    const QByteArray basic =
        "Basic " + (m_identity.clientID + u':' + m_options.clientSecret).toUtf8().toBase64();
    const bool isConfidential = !m_options.clientSecret.isEmpty();
    if (isConfidential && request.header("authorization") != basic) {
        m_log.addProblem(QStringLiteral("The client secret is missing or wrong."));
        return oauthError(401, u"unauthorized_client", u"Missing valid authorization header");
    }
    if (value(u"client_id") != m_identity.clientID ||
        request.header("content-type") != "application/x-www-form-urlencoded") {
        m_log.addProblem(QStringLiteral("The form has no known client_id or no form's content type."));
        return oauthError(400, u"invalid_request", u"Value passed for the client was invalid.");
    }
    std::optional<TokenAuthority::Grant> grant;
    if (value(u"grant_type") == u"authorization_code")
        grant = m_tokens.exchange(value(u"code"), value(u"code_verifier"), value(u"redirect_uri"));
    else if (value(u"grant_type") == u"refresh_token")
        grant = m_tokens.refresh(value(u"refresh_token"));
    if (grant)
        return tokenResponse(*grant);
    m_log.addProblem(QStringLiteral("A spent or unknown code or token, or a wrong verifier or address."));
    return oauthError(400, u"invalid_request", u"Value passed for the token was invalid.");
}

} // namespace mirel::simulator
