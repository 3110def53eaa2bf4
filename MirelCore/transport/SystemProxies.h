#pragma once

#include <QNetworkProxyFactory>

namespace mirel {

// The proxies that the system is set up for; none for this machine itself.
class SystemProxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override;
};

} // namespace mirel
