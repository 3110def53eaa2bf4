#include "testing/Printing.h"

#include "x/HeldTransport.h"
#include "x/VaultThatCannotSave.h"
#include "x/XAPIClientTest.h"

namespace mirel {
namespace {

const QByteArray userAnswer = R"({"data":{"id":"42","name":"Ada","username":"ada"}})";

class XAPIClientRefresh : public XAPIClientTest
{
};

TEST_F(XAPIClientRefresh, HappensBeforeACallWhoseTokenExpiresWithin30Seconds)
{
    for (const double seconds : {-1000.0, 0.0, 29.9, 30.0}) {
        store(expiringIn(seconds));
        transport.answer(200, R"({"access_token":"new","refresh_token":"newer","expires_in":100})");
        transport.answer(200, userAnswer);
        static_cast<void>(blockOn(client.currentUser()));
        EXPECT_EQ(transport.requests().last().header("Authorization"), "Bearer new") << seconds;
    }
    EXPECT_EQ(transport.requests().size(), 8);
}

TEST_F(XAPIClientRefresh, DoesNotHappenWhileTheTokenLastsOrItsEndIsUnknown)
{
    for (const auto& credentials : {expiringIn(30.1), expiringIn(7200), standardCredentials()}) {
        store(credentials);
        transport.answer(200, userAnswer);
        static_cast<void>(blockOn(client.currentUser()));
        EXPECT_EQ(transport.requests().last().header("Authorization"), "Bearer access");
        EXPECT_EQ(stored(), credentials);
    }
    EXPECT_EQ(transport.requests().size(), 3);
}

TEST_F(XAPIClientRefresh, SendsAFormWithTheClientIdentifier)
{
    XCredentials credentials = expiringIn(0);
    credentials.refreshToken = QStringLiteral("a+b/c=&d e");
    store(credentials);
    transport.answer(200, R"({"access_token":"new"})");
    transport.answer(200, userAnswer);
    static_cast<void>(blockOn(client.currentUser()));
    const HTTPRequest& request = transport.requests().first();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.url.toEncoded(), "https://api.example/2/oauth2/token");
    EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    EXPECT_EQ(request.headers, (QList<HTTPHeader>{{"Content-Type", "application/x-www-form-urlencoded"}}));
    EXPECT_EQ(request.body, "client_id=client&grant_type=refresh_token&refresh_token=a+b/c%3D%26d%20e");
}

TEST_F(XAPIClientRefresh, NamesAConfidentialClientInItsHeaderToo)
{
    XCredentials credentials = expiringIn(0);
    credentials.clientSecret = QStringLiteral("sécret");
    store(credentials);
    transport.answer(200, R"({"access_token":"new"})");
    transport.answer(200, userAnswer);
    static_cast<void>(blockOn(client.currentUser()));
    const HTTPRequest& request = transport.requests().first();
    EXPECT_EQ(request.header("Authorization"), "Basic " + QByteArray("client:s\xC3\xA9"
                                                                     "cret")
                                                              .toBase64());
    EXPECT_TRUE(request.body.startsWith("client_id=client&"));
}

TEST_F(XAPIClientRefresh, TakesAnEmptyClientSecretForNone)
{
    XCredentials credentials = expiringIn(0);
    credentials.clientSecret = QString();
    store(credentials);
    transport.answer(200, R"({"access_token":"new"})");
    transport.answer(200, userAnswer);
    static_cast<void>(blockOn(client.currentUser()));
    EXPECT_EQ(transport.requests().first().header("Authorization"), std::nullopt);
}

TEST_F(XAPIClientRefresh, SavesTheNewTokensBesideEverythingElse)
{
    XCredentials expected = expiringIn(0);
    expected.clientSecret = QStringLiteral("secret");
    expected.username = QStringLiteral("ada");
    store(expected);
    transport.answer(200, R"({"token_type":"bearer","access_token":"new","refresh_token":"newer",
                              "expires_in":100,"scope":"x"})");
    transport.answer(500, {});
    static_cast<void>(failure(client.currentUser()));
    expected.accessToken = QStringLiteral("new");
    expected.refreshToken = QStringLiteral("newer");
    expected.expiresAt = Instant::fromSecondsSince1970(nowSeconds + 100);
    EXPECT_EQ(stored(), expected);
}

TEST_F(XAPIClientRefresh, KeepsTheOldRefreshTokenAndCountsOnTwoHoursWhenXTellsNeither)
{
    store(expiringIn(0));
    transport.answer(200, R"({"access_token":"new"})");
    transport.answer(200, userAnswer);
    static_cast<void>(blockOn(client.currentUser()));
    XCredentials expected = standardCredentials();
    expected.accessToken = QStringLiteral("new");
    expected.expiresAt = Instant::fromSecondsSince1970(nowSeconds + 7200);
    EXPECT_EQ(stored(), expected);
}

TEST_F(XAPIClientRefresh, NeedsARefreshToken)
{
    for (const auto& token : {std::optional<QString>(), std::optional(QString())}) {
        XCredentials credentials = expiringIn(0);
        credentials.refreshToken = token;
        store(credentials);
        EXPECT_EQ(failure(client.currentUser()), XAPIError::reconnectRequired());
    }
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(XAPIClientRefresh, ReportsARefusalAsTheAnswerOfX)
{
    store(expiringIn(0));
    const QByteArray refusal =
        R"({"error":"invalid_request","error_description":"Value passed for the token was invalid."})";
    transport.answer(400, refusal);
    EXPECT_EQ(failure(client.currentUser()), XAPIError::http(400, QString::fromUtf8(refusal)));
    transport.answer(401, R"({"detail":"Unauthorized"})");
    EXPECT_EQ(failure(client.currentUser()), XAPIError::http(401, QStringLiteral("Unauthorized")));
    transport.answer(429, {}, {{"x-rate-limit-reset", "123"}});
    EXPECT_EQ(failure(client.currentUser()), XAPIError::rateLimited(Instant::fromSecondsSince1970(123)));
    EXPECT_EQ(transport.requests().size(), 3);
    EXPECT_EQ(stored(), expiringIn(0));
}

TEST_F(XAPIClientRefresh, ReportsAnUnreadableAnswerAndKeepsTheOldTokens)
{
    store(expiringIn(0));
    for (const char* const answer :
         {"", "<html>", R"({"refresh_token":"newer"})", R"({"access_token":"new","expires_in":"100"})"}) {
        transport.answer(200, answer);
        EXPECT_EQ(failure(client.currentUser()), XAPIError::invalidResponse()) << answer;
    }
    EXPECT_EQ(stored(), expiringIn(0));
}

TEST_F(XAPIClientRefresh, AsksToReconnectWhenTheNewTokenOrTheUserIsEmpty)
{
    store(expiringIn(0));
    transport.answer(200, R"({"access_token":""})");
    EXPECT_EQ(failure(client.currentUser()), XAPIError::reconnectRequired());
    XCredentials credentials = expiringIn(0);
    credentials.userID.clear();
    store(credentials);
    transport.answer(200, R"({"access_token":"new"})");
    EXPECT_EQ(failure(client.currentUser()), XAPIError::reconnectRequired());
    EXPECT_EQ(stored().accessToken, QStringLiteral("new"));
}

TEST_F(XAPIClientRefresh, PassesFailuresOfTheTransportOn)
{
    store(expiringIn(0));
    EXPECT_THROW(static_cast<void>(blockOn(client.currentUser())), ConnectionLost);
}

TEST_F(XAPIClientRefresh, PassesAFailureToSaveOnWithoutUsingTheNewToken)
{
    VaultThatCannotSave locked(expiringIn(0));
    XAPIClient other(locked, transport, QUrl(QStringLiteral("https://api.example/2")),
                     [] { return Instant::fromSecondsSince1970(nowSeconds); });
    transport.answer(200, R"({"access_token":"new"})");
    EXPECT_THROW(static_cast<void>(blockOn(other.currentUser())), VaultLocked);
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_F(XAPIClientRefresh, TellsNoSecretThatXQuotes)
{
    XCredentials credentials = expiringIn(0);
    credentials.clientSecret = QStringLiteral("planted-client-secret");
    credentials.refreshToken = QStringLiteral("planted+refresh/token");
    store(credentials);
    transport.answer(400, R"({"detail":"planted-client-secret, planted+refresh/token and the rest"})");
    EXPECT_EQ(failure(client.currentUser()),
              XAPIError::http(400, QStringLiteral("[hidden], [hidden] and the rest")));
    transport.answer(400, R"({"detail":"sent: refresh_token=planted+refresh/token&client_id=c"})");
    EXPECT_EQ(failure(client.currentUser()),
              XAPIError::http(400, QStringLiteral("sent: refresh_token=[hidden]&client_id=c")));
    transport.answer(400, R"(no JSON: planted+refresh\/token)");
    EXPECT_EQ(failure(client.currentUser()), XAPIError::http(400, QStringLiteral("no JSON: [hidden]")));
    credentials.refreshToken = QStringLiteral("planted%refresh=token&\u00e9");
    store(credentials);
    transport.answer(400, "no");
    static_cast<void>(failure(client.currentUser()));
    const QByteArray sent = transport.requests().last().body;
    ASSERT_TRUE(sent.contains("planted"));
    transport.answer(400, "sent: " + sent);
    EXPECT_FALSE(failure(client.currentUser())->description().contains(QStringLiteral("planted")));
    credentials.accessToken = QStringLiteral("planted-access-token");
    credentials.expiresAt.reset();
    store(credentials);
    transport.answer(403, "no planted-access-token here");
    EXPECT_EQ(failure(client.currentUser()), XAPIError::http(403, QStringLiteral("no [hidden] here")));
}

// The answer to a refresh comes when the credentials have changed.
class LateXAPIClientRefresh : public XAPIClientTest
{
protected:
    // A call that has asked for a new token ends as if there were no account, and asks nothing else.
    void expectNotConnectedAfter(const std::function<void()>& change)
    {
        store(expiringIn(0));
        auto asking = late.currentUser();
        ASSERT_EQ(network.count(), 1);
        change();
        network.answer(0, 200, R"({"access_token":"new"})");
        EXPECT_EQ(failure(std::move(asking)), XAPIError::credentialsMissing());
        EXPECT_EQ(network.count(), 1);
    }

    void expectKept(const XCredentials& another)
    {
        expectNotConnectedAfter([&] { store(another); });
        EXPECT_EQ(stored(), another);
    }

    HeldTransport network;
    XAPIClient late{vault, network, QUrl(QStringLiteral("https://api.example/2")),
                    [] { return Instant::fromSecondsSince1970(nowSeconds); }};
};

TEST_F(LateXAPIClientRefresh, DoesNotBringBackWhatWasRemovedMeanwhile)
{
    expectNotConnectedAfter([this] { blockOn(vault.clearAll()); });
    EXPECT_EQ(blockOn(vault.loadXCredentials()), std::nullopt);
}

TEST_F(LateXAPIClientRefresh, DoesNotReplaceAnotherAccountThatWasConnectedMeanwhile)
{
    XCredentials another = standardCredentials();
    another.userID = QStringLiteral("another");
    expectKept(another);
}

TEST_F(LateXAPIClientRefresh, DoesNotReplaceAnotherClientThatWasConnectedMeanwhile)
{
    XCredentials another = standardCredentials();
    another.clientID = QStringLiteral("another");
    expectKept(another);
}

TEST_F(XAPIClientRefresh, IsMarkedAsARequestThatCannotBeRepeated)
{
    store(expiringIn(0));
    transport.answer(200, R"({"access_token":"new"})");
    transport.answer(200, userAnswer);
    static_cast<void>(blockOn(client.currentUser()));
    EXPECT_TRUE(transport.requests().first().isUnrepeatable);
    EXPECT_FALSE(transport.requests().last().isUnrepeatable);
}

// Its second read answers late, with what was stored when it began.
class VaultWithALateRead : public InMemoryCredentialVault
{
public:
    using InMemoryCredentialVault::InMemoryCredentialVault;

    QCoro::Task<std::optional<XCredentials>> loadXCredentials() override
    {
        const auto stored = co_await InMemoryCredentialVault::loadXCredentials();
        if (m_reads++ == 1)
            co_await late.opened();
        co_return std::as_const(stored);
    }

    Gate late;

private:
    int m_reads = 0;
};

TEST_F(LateXAPIClientRefresh, DoesNotBringBackWhatIsRemovedWhileItLooks)
{
    VaultWithALateRead slow(expiringIn(0));
    XAPIClient other(slow, network, QUrl(QStringLiteral("https://api.example/2")),
                     [] { return Instant::fromSecondsSince1970(nowSeconds); });
    auto asking = other.currentUser();
    ASSERT_EQ(network.count(), 1);
    network.answer(0, 200, R"({"access_token":"new"})");
    blockOn(slow.clearAll());
    slow.late.open();
    EXPECT_EQ(failure(std::move(asking)), XAPIError::credentialsMissing());
    EXPECT_EQ(blockOn(slow.loadXCredentials()), std::nullopt);
}

// Can be read once.
class VaultThatGetsUnreadable : public InMemoryCredentialVault
{
public:
    using InMemoryCredentialVault::InMemoryCredentialVault;

    QCoro::Task<std::optional<XCredentials>> loadXCredentials() override
    {
        if (m_reads++ > 0)
            throw VaultLocked();
        return InMemoryCredentialVault::loadXCredentials();
    }

    QCoro::Task<> saveXCredentials(XCredentials credentials) override
    {
        saved = credentials;
        co_return;
    }

    std::optional<XCredentials> saved;

private:
    int m_reads = 0;
};

TEST_F(XAPIClientRefresh, SavesTheNewTokenAlsoWhenTheVaultCannotBeReadAnyMore)
{
    VaultThatGetsUnreadable unreadable(expiringIn(0));
    XAPIClient other(unreadable, transport, QUrl(QStringLiteral("https://api.example/2")),
                     [] { return Instant::fromSecondsSince1970(nowSeconds); });
    transport.answer(200, R"({"access_token":"new"})");
    transport.answer(200, userAnswer);
    static_cast<void>(blockOn(other.currentUser()));
    ASSERT_TRUE(unreadable.saved);
    EXPECT_EQ(unreadable.saved->accessToken, QStringLiteral("new"));
}

} // namespace
} // namespace mirel
