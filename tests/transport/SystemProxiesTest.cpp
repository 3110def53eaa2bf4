#include "testing/Printing.h"

#include "transport/SystemProxies.h"

#include <QScopeGuard>

#include <gtest/gtest.h>

namespace mirel {
namespace {

QNetworkProxy proxyFor(const char* url)
{
    SystemProxies proxies;
    return proxies.queryProxy(QNetworkProxyQuery(QUrl(QString::fromLatin1(url)))).value(0);
}

TEST(SystemProxies, AreThoseOfTheSystemExceptForThisMachine)
{
    const QByteArray before = qgetenv("http_proxy");
    const auto restore = qScopeGuard([&before] { qputenv("http_proxy", before); });
    qputenv("http_proxy", "http://proxy.example:3128");
    EXPECT_EQ(proxyFor("http://service.example/").hostName(), u"proxy.example");
    EXPECT_EQ(proxyFor("http://service.example/").port(), 3128);
    for (const char* url :
         {"http://127.0.0.1:8080/", "http://localhost/", "http://[::1]/", "http://127.9.9.9/"})
        EXPECT_EQ(proxyFor(url).type(), QNetworkProxy::NoProxy) << url;
}

} // namespace
} // namespace mirel
