#include "transport/SystemProxies.h"
#include "TransportFixture.h"

#include <QScopeGuard>

namespace mirel {
namespace {

// Sets an environment variable; the returned guard takes that back.
[[nodiscard]] auto environmentWith(const char* variable, const QByteArray& value)
{
    const bool wasSet = qEnvironmentVariableIsSet(variable);
    const QByteArray before = qgetenv(variable);
    qputenv(variable, value);
    return qScopeGuard([=] { wasSet ? qputenv(variable, before) : qunsetenv(variable); });
}

QNetworkProxy proxyFor(const char* url)
{
    SystemProxies proxies;
    return proxies.queryProxy(QNetworkProxyQuery(QUrl(QString::fromLatin1(url)))).value(0);
}

TEST(SystemProxies, AreThoseOfTheSystemExceptForThisMachine)
{
    const auto restore = environmentWith("http_proxy", "http://proxy.example:3128");
    EXPECT_EQ(proxyFor("http://service.example/").hostName(), u"proxy.example");
    EXPECT_EQ(proxyFor("http://service.example/").port(), 3128);
    for (const char* url :
         {"http://127.0.0.1:8080/", "http://localhost/", "http://[::1]/", "http://127.9.9.9/"})
        EXPECT_EQ(proxyFor(url).type(), QNetworkProxy::NoProxy) << url;
}

using RequestThroughAProxy = TransportFixture;

TEST_F(RequestThroughAProxy, GoesThere)
{
    const auto restore = environmentWith("http_proxy", m_server.origin());
    m_server.answer("http://service.example/path?q=1", httpAnswer("200 OK", "through the proxy"));
    const HTTPRequest request{.url = QUrl(QStringLiteral("http://service.example/path?q=1"))};
    EXPECT_EQ(blockOn(m_transport.data(request)).body, "through the proxy");
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(RequestThroughAProxy, ShowsItNothingButTheHostWhenItIsEncrypted)
{
    const auto restore = environmentWith("https_proxy", m_server.origin());
    m_server.answer("service.example:443", httpAnswer("403 Forbidden", "no tunnel"));
    const HTTPTransportError error = failure(HTTPRequest{
        .url = QUrl(QStringLiteral("https://service.example/path?token=secret")),
        .headers = {{"Authorization", "Bearer secret"}},
    });
    EXPECT_EQ(error.errorCase(), HTTPTransportError::Case::connection);
    ASSERT_FALSE(m_server.requests().isEmpty());
    for (const ReceivedRequest& received : m_server.requests()) {
        EXPECT_EQ(received.method, "CONNECT");
        EXPECT_FALSE(received.headerLines.join('\n').contains("secret"));
        EXPECT_TRUE(received.body.isEmpty());
    }
}

} // namespace
} // namespace mirel
