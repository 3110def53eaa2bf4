#include "transport/SystemProxies.h"

#include <QHostAddress>

namespace mirel {

namespace {

bool isLoopback(const QString& host)
{
    return host == QLatin1StringView("localhost") || QHostAddress(host).isLoopback();
}

} // namespace

QList<QNetworkProxy> SystemProxies::queryProxy(const QNetworkProxyQuery& query)
{
    if (isLoopback(query.peerHostName()))
        return {QNetworkProxy(QNetworkProxy::NoProxy)};
    return systemProxyForQuery(query);
}

} // namespace mirel
