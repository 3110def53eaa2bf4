#include "x/Endpoints.h"

#include <QHostAddress>

namespace mirel {

namespace {

bool isLoopback(const QString& host)
{
    if (host.compare(u"localhost", Qt::CaseInsensitive) == 0)
        return true;
    const QHostAddress address(host);
    const QHostAddress loopbackNetwork(QStringLiteral("127.0.0.0"));
    constexpr int networkBits = 8;
    if (address.protocol() == QAbstractSocket::IPv4Protocol)
        return address.isInSubnet(loopbackNetwork, networkBits);
    return address == QHostAddress(QHostAddress::LocalHostIPv6);
}

QUrl replacement(const QProcessEnvironment& environment, const QString& variable, const QUrl& standard)
{
    const QString text = environment.value(variable);
    if (text.isEmpty())
        return standard;
    const QUrl url(text, QUrl::StrictMode);
    const bool isWeb =
        url.scheme() == QLatin1StringView("http") || url.scheme() == QLatin1StringView("https");
    if (!url.isValid() || !isWeb || !isLoopback(url.host()))
        throw EndpointsError(variable);
    return url;
}

} // namespace

QString EndpointsError::description() const
{
    return QStringLiteral("%1 is set to an address that is not on this computer. It is meant for a simulator "
                          "and must name localhost, 127.0.0.1 or ::1. Remove it to use X.")
        .arg(m_variable);
}

Endpoints Endpoints::fromEnvironment(const QProcessEnvironment& environment)
{
    Endpoints endpoints;
    endpoints.xAPI = replacement(environment, QStringLiteral("MIREL_X_API_URL"), endpoints.xAPI);
    endpoints.xAuthorize =
        replacement(environment, QStringLiteral("MIREL_X_AUTHORIZE_URL"), endpoints.xAuthorize);
    return endpoints;
}

} // namespace mirel
