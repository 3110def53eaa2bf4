#include "testing/Printing.h"

#include "credentials/InMemoryCredentialVault.h"
#include "simulator/Simulator.h"
#include "support/BlockOn.h"
#include "transport/HTTPTransportError.h"
#include "transport/URLSessionHTTPTransport.h"
#include "x/MirelDeepLink.h"
#include "x/XAPIClient.h"
#include "x/XOAuthError.h"
#include "x/XOAuthService.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <gtest/gtest.h>

namespace mirel {
namespace {

// The service over the real network, against a simulated X that keeps OAuth's rules.
class XOAuthOfTheSimulator : public testing::Test
{
protected:
    explicit XOAuthOfTheSimulator(const QString& clientSecret = {})
        : simulator({.posts = 0,
                     .clientSecret = clientSecret,
                     .redirectURIs = XOAuthService::supportedRedirectURIs})
    {
    }

    void SetUp() override
    {
        simulator.listen();
        service.emplace(vault, transport, simulator.apiURL(), simulator.authorizeURL());
    }

    PendingXAuthorization begin(const std::optional<QString>& secret = {},
                                const QString& redirectURI = XOAuthService::nativeRedirectURI)
    {
        return service->begin(simulator.identity().clientID, secret, redirectURI);
    }

    // Where the page of X sends the browser.
    static QUrl callbackOf(const PendingXAuthorization& attempt)
    {
        QNetworkRequest request(attempt.authorizationURL);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        QNetworkAccessManager browser;
        const std::unique_ptr<QNetworkReply> reply(browser.get(request));
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return QUrl(QString::fromLatin1(reply->rawHeader("location")), QUrl::StrictMode);
    }

    std::optional<XOAuthError> failure(const QUrl& callback)
    {
        try {
            static_cast<void>(blockOn(service->complete(callback)));
        } catch (const XOAuthError& error) {
            return error;
        }
        return std::nullopt;
    }

    static XOAuthError spent()
    {
        return XOAuthError::http(400, QStringLiteral("Value passed for the token was invalid."));
    }

    void scenario(const QByteArray& json) { simulator.setScenario(Scenario::fromJSON(json)); }

    Simulator simulator;
    InMemoryCredentialVault vault;
    URLSessionHTTPTransport transport;
    std::optional<XOAuthService> service;
};

TEST_F(XOAuthOfTheSimulator, ConnectsAnAccountThatCanBeReadAndRefreshed)
{
    const QUrl callback = callbackOf(begin());
    EXPECT_TRUE(MirelDeepLink::isXOAuthCallback(callback));
    const Instant before = Instant::now();
    const XUser user = blockOn(service->complete(callback));
    EXPECT_EQ(user.id, simulator.identity().userID);
    EXPECT_EQ(user.username, simulator.identity().username);
    const auto stored = blockOn(vault.loadXCredentials());
    ASSERT_TRUE(stored && stored->expiresAt);
    EXPECT_EQ(stored->userID, user.id);
    EXPECT_GE(*stored->expiresAt, before.addingSeconds(7200));
    const Instant dueForRefresh = *stored->expiresAt;
    XAPIClient client(vault, transport, simulator.apiURL(), [=] { return dueForRefresh; });
    EXPECT_EQ(blockOn(client.currentUser()), user);
    EXPECT_NE(blockOn(vault.loadXCredentials())->accessToken, stored->accessToken);
    EXPECT_EQ(simulator.problems(), QStringList());
}

TEST_F(XOAuthOfTheSimulator, ReturnsByThePageOfMirelsWebSite)
{
    const QUrl handedOn = callbackOf(begin(std::nullopt, XOAuthService::httpsHandoffRedirectURI));
    EXPECT_TRUE(handedOn.toString().startsWith(XOAuthService::httpsHandoffRedirectURI));
    QUrl callback(XOAuthService::nativeRedirectURI);
    callback.setQuery(handedOn.query(QUrl::FullyEncoded), QUrl::StrictMode);
    EXPECT_EQ(blockOn(service->complete(callback)).id, simulator.identity().userID);
}

TEST_F(XOAuthOfTheSimulator, SpendsACodeOnceAndTakesAFreshOne)
{
    const PendingXAuthorization attempt = begin();
    const QUrl callback = callbackOf(attempt);
    scenario(R"({"faults":[{"action":"status","status":503,"path":"/2/users/me","requests":1}]})");
    const auto down = failure(callback);
    ASSERT_TRUE(down);
    EXPECT_EQ(down->status(), 503);
    EXPECT_EQ(failure(callback), spent());
    EXPECT_EQ(blockOn(vault.loadXCredentials()), std::nullopt);
    EXPECT_EQ(blockOn(service->complete(callbackOf(attempt))).id, simulator.identity().userID);
}

TEST_F(XOAuthOfTheSimulator, IsToldWhenTheUserRefuses)
{
    scenario(R"({"faults":[{"action":"denyAuthorization","path":"/i/oauth2/authorize"}]})");
    EXPECT_EQ(failure(callbackOf(begin())),
              XOAuthError::authorizationDenied(QStringLiteral("access_denied")));
}

TEST_F(XOAuthOfTheSimulator, IsRefusedACodeThatWasMadeForAnotherAttempt)
{
    const QUrl stolen = callbackOf(begin());
    const PendingXAuthorization attempt = begin();
    EXPECT_EQ(failure(stolen), XOAuthError::stateMismatch());
    QUrl injected = stolen;
    injected.setQuery(
        stolen.query().replace(stolen.query().section(u'&', 0, 0), QStringLiteral("state=") + attempt.state));
    EXPECT_EQ(failure(injected), spent());
    EXPECT_EQ(blockOn(vault.loadXCredentials()), std::nullopt);
}

class XOAuthOfAConfidentialClient : public XOAuthOfTheSimulator
{
protected:
    XOAuthOfAConfidentialClient()
        : XOAuthOfTheSimulator(QStringLiteral("simulated-secret"))
    {
    }
};

TEST_F(XOAuthOfAConfidentialClient, ShowsItsSecret)
{
    const PendingXAuthorization attempt = begin(QStringLiteral(" simulated-secret\n"));
    EXPECT_EQ(blockOn(service->complete(callbackOf(attempt))).id, simulator.identity().userID);
}

TEST_F(XOAuthOfAConfidentialClient, IsRefusedWithoutItsSecret)
{
    for (const auto& secret : {std::optional<QString>(), std::optional(QStringLiteral("another-secret"))}) {
        EXPECT_EQ(failure(callbackOf(begin(secret))),
                  XOAuthError::http(401, QStringLiteral("Missing valid authorization header")));
    }
}

TEST_F(XOAuthOfTheSimulator, CancelingASilentExchangeSavesNothing)
{
    const PendingXAuthorization attempt = begin();
    const QUrl callback = callbackOf(attempt);
    scenario(R"({"faults":[{"action":"stall","path":"/2/oauth2/token"}]})");
    auto task = service->complete(callback);
    EXPECT_FALSE(task.isReady());
    transport.cancelAll();
    EXPECT_THROW(static_cast<void>(blockOn(std::move(task))), HTTPTransportError);
    EXPECT_EQ(blockOn(vault.loadXCredentials()), std::nullopt);
}

} // namespace
} // namespace mirel
