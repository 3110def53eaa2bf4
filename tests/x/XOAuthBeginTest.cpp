#include "testing/Printing.h"

#include "x/XOAuthServiceTest.h"

#include <QRegularExpression>
#include <QUrlQuery>

namespace mirel {
namespace {

class XOAuthBegin : public XOAuthServiceTest
{
protected:
    std::optional<XOAuthError> beginFailure(const QString& clientID, const QString& redirectURI)
    {
        try {
            static_cast<void>(service.begin(clientID, std::nullopt, redirectURI));
        } catch (const XOAuthError& error) {
            return error;
        }
        return std::nullopt;
    }

    static QString item(const PendingXAuthorization& attempt, const QString& name)
    {
        return QUrlQuery(attempt.authorizationURL).queryItemValue(name, QUrl::FullyDecoded);
    }
};

TEST_F(XOAuthBegin, KnowsTheAddressesToReturnTo)
{
    EXPECT_EQ(XOAuthService::nativeRedirectURI, QStringLiteral("mirel://oauth/x"));
    const QUrl handoff(XOAuthService::httpsHandoffRedirectURI, QUrl::StrictMode);
    EXPECT_EQ(handoff.scheme(), QStringLiteral("https"));
    EXPECT_FALSE(handoff.host().isEmpty());
    EXPECT_EQ(handoff.path(), QStringLiteral("/mac/oauth/x/callback"));
    EXPECT_EQ(XOAuthService::supportedRedirectURIs,
              (QStringList{XOAuthService::nativeRedirectURI, XOAuthService::httpsHandoffRedirectURI}));
}

TEST_F(XOAuthBegin, MakesTheAddressWithItsItemsInOrder)
{
    const PendingXAuthorization attempt = begin();
    EXPECT_EQ(attempt.state, QStringLiteral("AgICAgICAgICAgICAgICAgICAgICAgIC"));
    EXPECT_EQ(attempt.authorizationURL.toEncoded(),
              "https://x.example/i/oauth2/authorize?response_type=code&client_id=client"
              "&redirect_uri=mirel://oauth/x"
              "&scope=tweet.read%20users.read%20bookmark.read%20bookmark.write%20offline.access"
              "&state=AgICAgICAgICAgICAgICAgICAgICAgIC"
              "&code_challenge=gPU_RIwAAtUroAS3jKZXwnjnNcFHrKm3VmhXzo85nRE&code_challenge_method=S256");
    EXPECT_TRUE(transport.requests().isEmpty());
    EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(XOAuthBegin, ComparesWhatItReturnsByValue)
{
    const PendingXAuthorization attempt = begin();
    EXPECT_EQ(attempt, PendingXAuthorization(attempt));
    EXPECT_FALSE(attempt == begin());
}

TEST_F(XOAuthBegin, TakesTheVerifierAndThenTheStateFromTheRandomSource)
{
    static_cast<void>(begin());
    EXPECT_EQ(randomCounts, (QList<qsizetype>{48, 24}));
}

TEST_F(XOAuthBegin, WritesRandomBytesInTheAlphabetOfAddresses)
{
    XOAuthService other(vault, transport, QUrl(QStringLiteral("https://api.example/2")),
                        QUrl(QStringLiteral("https://x.example/authorize")), &now, [](qsizetype count) {
                            return QByteArray("\xfb\xef\xbe\xff\xff\xff").repeated(count / 6);
                        });
    const PendingXAuthorization attempt = begin(other);
    EXPECT_EQ(attempt.state, QStringLiteral("----____").repeated(4));
    EXPECT_EQ(item(attempt, QStringLiteral("code_challenge")),
              QStringLiteral("Cq5avmOR5hQSnrurvRAm0SyzWohb60c6_atMmEY1a48"));
    transport.answer(500, {});
    static_cast<void>(failure(other.complete(callback(attempt))));
    EXPECT_TRUE(transport.requests().first().body.contains(
        "code_verifier=" + QByteArray("----____").repeated(8) + "&"));
}

TEST_F(XOAuthBegin, MakesSecretsThatNobodyGuesses)
{
    XOAuthService real(vault, transport, QUrl(QStringLiteral("https://api.example/2")),
                       QUrl(QStringLiteral("https://x.example/authorize")));
    const QRegularExpression urlSafe(QStringLiteral("\\A[A-Za-z0-9_-]+\\z"));
    QSet<QString> states;
    QSet<QString> challenges;
    constexpr int attempts = 100;
    for (int i = 0; i < attempts; ++i) {
        const PendingXAuthorization attempt = begin(real);
        EXPECT_EQ(attempt.state.size(), 32);
        EXPECT_TRUE(urlSafe.match(attempt.state).hasMatch());
        states.insert(attempt.state);
        challenges.insert(item(attempt, QStringLiteral("code_challenge")));
    }
    EXPECT_EQ(states.size(), attempts);
    EXPECT_EQ(challenges.size(), attempts);
}

TEST_F(XOAuthBegin, NeedsAClientIdentifier)
{
    for (const char16_t* const blank : {u"", u"   ", u" \n\t\u00a0"}) {
        const auto error = beginFailure(QString::fromUtf16(blank), XOAuthService::nativeRedirectURI);
        ASSERT_EQ(error, XOAuthError::invalidConfiguration());
        EXPECT_EQ(error->description(), QStringLiteral("Enter an X OAuth client ID and redirect URI."));
    }
}

TEST_F(XOAuthBegin, RefusesAnAddressThatXCannotReturnTo)
{
    for (const char* const address :
         {"", "  ", "mirel://oauth/x/", "mirel://oauth/X", "MIREL://oauth/x", "mirel://oauth/x?a=b",
          "mirel:/oauth/x", "https://elsewhere.example/mac/oauth/x/callback", "http://[", "not an address"})
        EXPECT_EQ(beginFailure(QStringLiteral("client"), QString::fromUtf8(address)),
                  XOAuthError::invalidConfiguration())
            << address;
    QString unencrypted = XOAuthService::httpsHandoffRedirectURI;
    unencrypted.replace(QStringLiteral("https:"), QStringLiteral("http:"));
    EXPECT_EQ(beginFailure(QStringLiteral("client"), unencrypted), XOAuthError::invalidConfiguration());
}

TEST_F(XOAuthBegin, SendsTheTrimmedTexts)
{
    for (const QString& address : XOAuthService::supportedRedirectURIs) {
        const PendingXAuthorization attempt =
            service.begin(QStringLiteral(" \n a&b=c d\t"), QStringLiteral(" secret\n"),
                          QStringLiteral("\n") + address + QStringLiteral(" "));
        EXPECT_EQ(item(attempt, QStringLiteral("client_id")), QStringLiteral("a&b=c d"));
        EXPECT_EQ(item(attempt, QStringLiteral("redirect_uri")), address);
        transport.answer(500, {});
        static_cast<void>(failure(service.complete(callback(attempt))));
        const HTTPRequest& request = transport.requests().last();
        EXPECT_TRUE(request.body.contains("client_id=a%26b%3Dc%20d&")) << request.body.toStdString();
        EXPECT_TRUE(request.body.endsWith("&redirect_uri=" + address.toLatin1()))
            << request.body.toStdString();
        EXPECT_EQ(request.header("Authorization"), "Basic " + QByteArray("a&b=c d:secret").toBase64());
    }
}

TEST_F(XOAuthBegin, ReplacesTheQueryOfThePage)
{
    XOAuthService other(vault, transport, QUrl(QStringLiteral("https://api.example/2")),
                        QUrl(QStringLiteral("http://127.0.0.1:8080/authorize?lang=en")));
    const QByteArray url = begin(other).authorizationURL.toEncoded();
    EXPECT_TRUE(url.startsWith("http://127.0.0.1:8080/authorize?response_type=code&")) << url.toStdString();
    EXPECT_FALSE(url.contains("lang"));
}

TEST_F(XOAuthBegin, FailsWithoutAPageToShow)
{
    XOAuthService other(vault, transport, QUrl(QStringLiteral("https://api.example/2")), QUrl());
    try {
        static_cast<void>(begin(other));
        ADD_FAILURE() << "began without a page";
    } catch (const XOAuthError& error) {
        EXPECT_EQ(error, XOAuthError::invalidConfiguration());
    }
    EXPECT_EQ(failure(other.complete(callback(QStringLiteral("code=1")))),
              XOAuthError::noPendingAuthorization());
}

TEST_F(XOAuthBegin, LeavesTheOlderAttemptWhenItFails)
{
    const PendingXAuthorization attempt = begin();
    EXPECT_EQ(beginFailure(QStringLiteral(" "), XOAuthService::nativeRedirectURI),
              XOAuthError::invalidConfiguration());
    EXPECT_EQ(beginFailure(QStringLiteral("client"), QStringLiteral("mirel://else")),
              XOAuthError::invalidConfiguration());
    prepareSuccess();
    EXPECT_EQ(blockOn(service.complete(callback(attempt))), ada);
}

TEST_F(XOAuthBegin, ReplacesTheOlderAttempt)
{
    const PendingXAuthorization older = begin();
    const PendingXAuthorization newer = begin();
    EXPECT_NE(older.state, newer.state);
    EXPECT_EQ(failure(service.complete(callback(older))), XOAuthError::stateMismatch());
    EXPECT_TRUE(transport.requests().isEmpty());
    prepareSuccess();
    EXPECT_EQ(blockOn(service.complete(callback(newer))), ada);
}

} // namespace
} // namespace mirel
