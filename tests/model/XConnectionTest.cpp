#include "testing/Printing.h"

#include "model/ConnectionBench.h"
#include "testing/Eventually.h"

#include "model/SettingsValidationError.h"
#include "x/XAPIError.h"

namespace mirel {
namespace {

const QString waiting = QStringLiteral("Complete authorization in X; Mirel will handle the callback.");
const QString noAttempt = QStringLiteral("Start the X connection again before opening this callback.");
const QString otherAttempt =
    QStringLiteral("The X authorization callback did not match this connection attempt.");
const QString canceled = QStringLiteral("X authorization canceled.");
const QString locked = QStringLiteral("The vault is locked.");

TEST(SettingsValidation, TellsWhatIsMissing)
{
    using Case = SettingsValidationError::Case;
    const auto text = [](Case errorCase) { return SettingsValidationError(errorCase).description(); };
    EXPECT_EQ(text(Case::incompleteXCredentials),
              QStringLiteral("X client ID, user access token, and X user ID are required for a manual "
                             "connection."));
    EXPECT_EQ(text(Case::missingXClientID), QStringLiteral("Enter an X OAuth client ID before connecting."));
    EXPECT_EQ(text(Case::invalidXRedirectURI), QStringLiteral("Enter a valid X OAuth redirect URI."));
    EXPECT_EQ(text(Case::xAuthenticationSessionDidNotStart),
              QStringLiteral("The secure X authorization session could not be started."));
}

class XConnection : public testing::ConnectionBench
{
};

TEST_F(XConnection, ShowsThePageOfXInTheBrowser)
{
    begin(QStringLiteral("  client "));
    ASSERT_TRUE(browser);
    EXPECT_EQ(browser->page.host(), QStringLiteral("x.example"));
    EXPECT_EQ(QUrlQuery(browser->page).queryItemValue(QStringLiteral("client_id")), QStringLiteral("client"));
    EXPECT_EQ(model->xAuthorizationURL(), browser->page);
    EXPECT_TRUE(model->isAuthorizingX());
    EXPECT_EQ(status(), waiting);
    EXPECT_EQ(error(), QString());
}

TEST_F(XConnection, KnowsTheAddressesToWhichXMayReturn)
{
    EXPECT_EQ(model->xRedirectURIs().size(), 2);
    EXPECT_EQ(model->xRedirectURIs().first(), QStringLiteral("mirel://oauth/x"));
}

TEST_F(XConnection, NeedsAClientAndAnAddressToReturnTo)
{
    begin(QStringLiteral(" \n"));
    EXPECT_EQ(error(), QStringLiteral("Enter an X OAuth client ID before connecting."));
    for (const char* const address : {"", "mirel://oauth/y", "https://elsewhere.example/", "no address"}) {
        model->dismissError();
        blockOn(model->beginXOAuth(QStringLiteral("client"), QString(), QString::fromLatin1(address)));
        EXPECT_EQ(error(), QStringLiteral("Enter a valid X OAuth redirect URI.")) << address;
    }
    EXPECT_FALSE(browser);
    EXPECT_FALSE(model->isAuthorizingX());
}

TEST_F(XConnection, AMistakeInTheFormLeavesTheSignInThatIsOpen)
{
    begin();
    prepareGrant();
    const QUrl callback = callbackOf(browser->page);
    begin(QString());
    EXPECT_TRUE(model->isAuthorizingX());
    blockOn(model->handleOpenURL(callback));
    EXPECT_EQ(status(), QStringLiteral("Connected @ada."));
}

TEST_F(XConnection, ConnectsByTheCallbackThatComesAsALink)
{
    begin();
    prepareGrant();
    blockOn(model->handleOpenURL(callbackOf(browser->page)));
    EXPECT_EQ(status(), QStringLiteral("Connected @ada."));
    EXPECT_EQ(error(), QString());
    EXPECT_TRUE(model->xConfigured());
    EXPECT_FALSE(model->isAuthorizingX());
    EXPECT_TRUE(model->xAuthorizationURL().isEmpty());
    EXPECT_EQ(inVault()->accessToken, QStringLiteral("granted-access"));
}

TEST_F(XConnection, ConnectsByTheCallbackThatTheSessionBrings)
{
    begin();
    prepareGrant();
    browser->finish({.callbackURL = callbackOf(browser->page)});
    EXPECT_FALSE(model->isAuthorizingX());
    waitForQuestions(1);
    blockOn(model->shutDown());
    EXPECT_EQ(status(), QStringLiteral("Connected @ada."));
    EXPECT_EQ(inVault()->username, QStringLiteral("ada"));
}

TEST_F(XConnection, TellsThatTheBrowserDidNotOpen)
{
    testing::PlayedBrowser::canStart = false;
    begin();
    EXPECT_EQ(error(), QStringLiteral("The secure X authorization session could not be started."));
    EXPECT_EQ(status(), QString());
    EXPECT_FALSE(model->isAuthorizingX());
}

TEST_F(XConnection, CancelingIsNoErrorAndItsCallbackComesTooLate)
{
    begin();
    const QUrl callback = callbackOf(browser->page);
    model->cancelXAuthorization();
    EXPECT_EQ(status(), canceled);
    EXPECT_EQ(error(), QString());
    EXPECT_FALSE(model->isAuthorizingX());
    EXPECT_FALSE(browser);
    prepareGrant();
    blockOn(model->handleOpenURL(callback));
    EXPECT_EQ(error(), noAttempt);
    EXPECT_EQ(transport->requests().size(), 0);
    EXPECT_EQ(inVault(), std::nullopt);
}

TEST_F(XConnection, CancelingWithoutASignInDoesNothing)
{
    model->cancelXAuthorization();
    EXPECT_EQ(status(), QString());
}

TEST_F(XConnection, TellsWhyTheSessionEnded)
{
    begin();
    browser->finish({.failure = std::make_exception_ptr(ConnectionLost())});
    EXPECT_EQ(error(), QStringLiteral("The connection was lost."));
    EXPECT_FALSE(model->isAuthorizingX());
    begin();
    browser->finish({});
    EXPECT_EQ(error(), QStringLiteral("X authorization did not return a callback."));
    EXPECT_FALSE(model->isAuthorizingX());
    EXPECT_EQ(status(), waiting) << "nothing was canceled by the user";
}

TEST_F(XConnection, ANewSignInEndsTheOldOne)
{
    begin();
    const QUrl older = callbackOf(browser->page);
    begin();
    const QUrl newer = callbackOf(browser->page);
    EXPECT_NE(older, newer);
    EXPECT_EQ(status(), waiting);
    prepareGrant();
    blockOn(model->handleOpenURL(older));
    EXPECT_EQ(error(), otherAttempt);
    EXPECT_TRUE(model->isAuthorizingX());
    EXPECT_EQ(inVault(), std::nullopt);
    blockOn(model->handleOpenURL(newer));
    EXPECT_EQ(status(), QStringLiteral("Connected @ada."));
}

TEST_F(XConnection, OfTwoThatBeginAtOnceOnlyTheLastOpensTheBrowser)
{
    auto first = model->beginXOAuth(QStringLiteral("one"), {}, XOAuthService::nativeRedirectURI);
    auto second = model->beginXOAuth(QStringLiteral("two"), {}, XOAuthService::nativeRedirectURI);
    blockOn(std::move(first));
    blockOn(std::move(second));
    EXPECT_EQ(openedBrowsers, 1);
    ASSERT_TRUE(browser);
    EXPECT_EQ(QUrlQuery(browser->page).queryItemValue(QStringLiteral("client_id")), QStringLiteral("two"));
}

TEST_F(XConnection, RemovingCredentialsWhileASignInBeginsKeepsTheBrowserClosed)
{
    auto beginning = model->beginXOAuth(QStringLiteral("one"), {}, XOAuthService::nativeRedirectURI);
    blockOn(model->clearCredentials());
    blockOn(std::move(beginning));
    EXPECT_FALSE(browser);
    EXPECT_FALSE(model->isAuthorizingX());
    EXPECT_EQ(status(), QStringLiteral("Provider credentials removed."));
}

TEST_F(XConnection, AWrongCallbackChangesNothing)
{
    makeModel(storedCredentials());
    begin();
    const QUrl right = callbackOf(browser->page);
    const struct
    {
        const char* url;
        const char* message;
    } rows[] = {
        {"mirel://oauth/x?state=guessed&code=c",
         "The X authorization callback did not match this connection attempt."},
        {"mirel://oauth/x?code=c", "The X authorization callback did not match this connection attempt."},
        {"mirel://oauth/x", "The X authorization callback did not match this connection attempt."},
        {"MIREL://OAUTH/X?code=1", "The X authorization callback did not match this connection attempt."},
        {"mirel://oauth/x?error=access_denied", "X authorization was not completed: access_denied"},
        {"mirel://oauth/x?state=a&state=b&code=c", "X returned an unreadable OAuth response."},
    };
    for (const auto& row : rows) {
        blockOn(model->handleOpenURL(QUrl(QString::fromLatin1(row.url))));
        EXPECT_EQ(error(), QString::fromLatin1(row.message)) << row.url;
        EXPECT_TRUE(model->isAuthorizingX()) << row.url;
        EXPECT_EQ(inVault(), storedCredentials()) << row.url;
    }
    EXPECT_EQ(transport->requests().size(), 0);
    prepareGrant();
    blockOn(model->handleOpenURL(right));
    EXPECT_EQ(status(), QStringLiteral("Connected @ada."));
}

TEST_F(XConnection, ARepeatedCallbackChangesNothing)
{
    begin();
    prepareGrant();
    const QUrl callback = callbackOf(browser->page);
    blockOn(model->handleOpenURL(callback));
    const auto connected = inVault();
    prepareGrant("another-access");
    blockOn(model->handleOpenURL(callback));
    EXPECT_EQ(error(), noAttempt);
    EXPECT_EQ(inVault(), connected);
    EXPECT_TRUE(model->xConfigured());
}

TEST_F(XConnection, OfTwoEqualCallbacksAtOnceOneConnects)
{
    begin();
    prepareGrant();
    const QUrl callback = callbackOf(browser->page);
    auto first = model->handleOpenURL(callback);
    auto second = model->handleOpenURL(callback);
    blockOn(std::move(first));
    blockOn(std::move(second));
    EXPECT_EQ(status(), QStringLiteral("Connected @ada."));
    EXPECT_EQ(error(), noAttempt);
    EXPECT_EQ(inVault()->accessToken, QStringLiteral("granted-access"));
    EXPECT_TRUE(model->xConfigured());
}

TEST_F(XConnection, ADenialEndsTheSignInThatItBelongsTo)
{
    begin();
    QUrl denial(XOAuthService::nativeRedirectURI);
    denial.setQuery(QStringLiteral("error=access_denied&error_description=You%20said%20no&state=") +
                    QUrlQuery(browser->page).queryItemValue(QStringLiteral("state")));
    blockOn(model->handleOpenURL(denial));
    EXPECT_EQ(error(), QStringLiteral("X authorization was not completed: You said no"));
    EXPECT_FALSE(model->isAuthorizingX());
}

TEST_F(XConnection, ACallbackThatNobodyWaitsForIsTold)
{
    blockOn(model->handleOpenURL(QUrl(QStringLiteral("mirel://oauth/x?state=s&code=c"))));
    EXPECT_EQ(error(), noAttempt);
}

TEST_F(XConnection, AFailureOfXIsToldAndAFreshCodeStillConnects)
{
    begin();
    const QUrl page = browser->page;
    transport->answer(503, "down");
    blockOn(model->handleOpenURL(callbackOf(page)));
    EXPECT_EQ(error(), QStringLiteral("X OAuth returned HTTP 503: down"));
    EXPECT_FALSE(model->xConfigured());
    prepareGrant();
    blockOn(model->handleOpenURL(callbackOf(page, QStringLiteral("fresh"))));
    EXPECT_EQ(status(), QStringLiteral("Connected @ada."));
}

TEST_F(XConnection, AVaultThatFailsAtAnyCallIsToldOrShowsAsNotConnected)
{
    // Saving the tokens, and reading them for the check.
    for (const int failing : {0, 1}) {
        makeModel();
        begin();
        prepareGrant();
        vault->failing = failing;
        blockOn(model->handleOpenURL(callbackOf(browser->page)));
        EXPECT_EQ(vault->calls, failing + 1) << "no further call";
        EXPECT_EQ(error(), failing == 0 ? locked : QString());
        EXPECT_FALSE(model->xConfigured());
    }
}

TEST_F(XConnection, CredentialsRemovedWhileACodeIsExchangedStayRemoved)
{
    begin();
    prepareGrant();
    transport->hold();
    auto completing = model->handleOpenURL(callbackOf(browser->page));
    ASSERT_TRUE(testing::eventually([this] { return transport->count > 0; }));
    blockOn(model->clearCredentials());
    EXPECT_EQ(transport->count, 1) << "X has not answered yet";
    transport->release();
    blockOn(std::move(completing));
    EXPECT_EQ(error(), noAttempt);
    EXPECT_EQ(inVault(), std::nullopt);
    EXPECT_FALSE(model->xConfigured());
}

TEST(XConnectionWithoutServices, DoesNothing)
{
    MirelAppModel model{MirelServices{}};
    blockOn(model.beginXOAuth(QString(), {}, {}));
    blockOn(model.persistXCredentials({}, {}, {}, {}, {}, {}));
    blockOn(model.validateConnections());
    blockOn(model.clearCredentials());
    blockOn(model.savePreferences({}));
    model.cancelXAuthorization();
    EXPECT_EQ(model.lastError(), std::nullopt);
    EXPECT_EQ(model.statusMessage(), std::nullopt);
    EXPECT_FALSE(model.isAuthorizingX());
}

} // namespace
} // namespace mirel
