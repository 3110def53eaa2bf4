#include "x/XRequests.h"

#include <QStringDecoder>
#include <QUrlQuery>

namespace mirel::xRequests {

HTTPRequest below(const QUrl& root, const QByteArray& method, const QByteArray& path)
{
    constexpr std::chrono::seconds timeout{60};
    HTTPRequest request;
    request.method = method;
    QString rootPath = root.path(QUrl::FullyEncoded);
    while (rootPath.endsWith(u'/'))
        rootPath.chop(1);
    request.url = root.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
    request.url.setPath(rootPath + QString::fromLatin1(path), QUrl::StrictMode);
    request.timeout = timeout;
    return request;
}

QList<HTTPHeader> authorizedHeaders(const QString& accessToken)
{
    return {{"Authorization", "Bearer " + accessToken.toUtf8()}, {"Accept", "application/json"}};
}

HTTPRequest authorizedGet(const QUrl& root, const QByteArray& path, QList<FormField> query,
                          const QString& accessToken)
{
    HTTPRequest getting = below(root, "GET", path);
    getting.url.setQuery(QString::fromLatin1(formEncoded(std::move(query))), QUrl::StrictMode);
    getting.headers = authorizedHeaders(accessToken);
    return getting;
}

HTTPRequest currentUser(const QUrl& root, const QString& accessToken)
{
    return authorizedGet(root, "/users/me",
                         {{QStringLiteral("user.fields"), QStringLiteral("id,name,username")}}, accessToken);
}

HTTPRequest tokens(const QUrl& root, const QString& clientID, const std::optional<QString>& clientSecret,
                   QList<FormField> fields)
{
    HTTPRequest asking = below(root, "POST", "/oauth2/token");
    asking.headers.append(HTTPHeader("Content-Type", "application/x-www-form-urlencoded"));
    if (clientSecret && !clientSecret->isEmpty()) {
        const QString client = clientID + u':' + *clientSecret;
        asking.headers.append(HTTPHeader("Authorization", "Basic " + client.toUtf8().toBase64()));
    }
    fields.append({QStringLiteral("client_id"), clientID});
    asking.body = formEncoded(std::move(fields));
    // X answers a code and a refresh token once.
    asking.isUnrepeatable = true;
    return asking;
}

Instant expiry(const TokenResponse& tokens, Instant now)
{
    constexpr qint64 defaultLifetimeSeconds = 7200;
    return now.addingSeconds(static_cast<double>(tokens.expiresIn.value_or(defaultLifetimeSeconds)));
}

QStringList secretsIn(const HTTPRequest& request)
{
    QStringList secrets;
    const QByteArray authorization = request.header("Authorization").value_or(QByteArray());
    const QByteArray credentials = authorization.mid(authorization.indexOf(' ') + 1);
    secrets.append(QString::fromUtf8(credentials));
    if (authorization.startsWith("Basic "))
        secrets.append(QString::fromUtf8(QByteArray::fromBase64(credentials)).section(u':', 1));
    const QUrlQuery form(QString::fromUtf8(request.body));
    for (const char* const field : {"code", "code_verifier", "refresh_token"}) {
        for (const auto encoding : {QUrl::FullyDecoded, QUrl::FullyEncoded})
            secrets.append(form.queryItemValue(QString::fromLatin1(field), encoding));
    }
    // Also as JSON may have them.
    const QStringList plain = secrets;
    for (QString secret : plain) {
        if (secret.contains(u'/'))
            secrets.append(secret.replace(u'/', QStringLiteral("\\/")));
    }
    return secrets;
}

// An answer may quote what it was asked with. What is shorter than any secret of X may be a plain word.
QString withoutSecrets(QString message, const QStringList& secrets)
{
    constexpr qsizetype shortestSecret = 8;
    for (const QString& secret : secrets) {
        if (secret.size() >= shortestSecret)
            message.replace(secret, QStringLiteral("[hidden]"));
    }
    return message;
}

QString failureText(const QByteArray& body)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(body);
    if (decoder.hasError())
        return QStringLiteral("Request failed");
    return text;
}

} // namespace mirel::xRequests
