#include "screens/WindowBench.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QUrlQuery>

namespace mirel::testing {

class SettingsWindow : public WindowBench
{
protected:
    void openSettings()
    {
        openWindow();
        // All of the page is on the screen.
        window().resize(1240, 1500);
        press(Qt::Key_Comma, Qt::ControlModifier);
        ASSERT_TRUE(eventually(
            [this] { return visible("clientIDInput") && visible("clientIDInput")->hasActiveFocus(); }));
    }

    void enter(const char* field, const char* content)
    {
        visible(field)->forceActiveFocus(Qt::TabFocusReason);
        type(content);
    }

    bool isPassword(const char* field) const
    {
        constexpr int password = 2; // TextInput.Password, which has no public C++ name
        return visible(field)->property("echoMode").toInt() == password;
    }

    QString name(const char* field) const { return visible(field)->property("name").toString(); }
};

TEST_F(SettingsWindow, ShowsTheConnectionOfX)
{
    openSettings();
    EXPECT_EQ(text("providerStatusText"), QStringLiteral("X not configured"));
    EXPECT_EQ(name("clientID"), QStringLiteral("OAuth client ID / X API key"));
    EXPECT_EQ(name("clientSecret"), QStringLiteral("Client secret (optional for public clients)"));
    EXPECT_TRUE(isPassword("clientSecretInput"));
    EXPECT_EQ(text("redirectHint"), QStringLiteral("Register this exact URL in X"));
    EXPECT_EQ(text("redirectURI"), QStringLiteral("mirel://oauth/x"));
    EXPECT_EQ(text("connectX"), QStringLiteral("Connect with X OAuth"));
    EXPECT_EQ(text("showTokens"), QStringLiteral("Use an existing Mirel user token bundle"));
    EXPECT_EQ(text("validateConnections"), QStringLiteral("Validate Configured Connections"));
    EXPECT_FALSE(visible("validateConnections")->isEnabled()) << "there is nothing to validate";
    EXPECT_EQ(text("clearCredentials"), QStringLiteral("Clear Credentials"));
    EXPECT_EQ(visible("accessTokenInput"), nullptr);
    click(visible("showTokens"));
    ASSERT_TRUE(eventually([this] { return visible("saveTokens") != nullptr; }));
    EXPECT_EQ(name("accessToken"), QStringLiteral("User access token"));
    EXPECT_EQ(name("refreshToken"), QStringLiteral("Refresh token"));
    EXPECT_EQ(name("userID"), QStringLiteral("X user ID"));
    EXPECT_EQ(name("username"), QStringLiteral("X username"));
    EXPECT_EQ(text("saveTokens"), QStringLiteral("Save X Credentials"));
    EXPECT_TRUE(isPassword("accessTokenInput"));
    EXPECT_TRUE(isPassword("refreshTokenInput"));
}

TEST_F(SettingsWindow, CopiesTheAddressToRegister)
{
    openSettings();
    click(visible("copyRedirectURI"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("mirel://oauth/x"));
    click(visible("otherRedirectURI"));
    EXPECT_TRUE(eventually([this] { return text("redirectURI").startsWith(QStringLiteral("https://")); }));
    click(visible("otherRedirectURI"));
    EXPECT_TRUE(eventually([this] { return text("redirectURI") == QStringLiteral("mirel://oauth/x"); }));
}

TEST_F(SettingsWindow, SignsInInTheBrowserAndCanBeCanceled)
{
    openSettings();
    EXPECT_EQ(visible("cancelConnectX"), nullptr);
    type("my-client");
    click(visible("connectX"));
    ASSERT_TRUE(eventually([this] { return visible("cancelConnectX") != nullptr; }));
    ASSERT_EQ(openedPages.size(), 1);
    const QUrlQuery query(openedPages.first());
    EXPECT_EQ(query.queryItemValue(QStringLiteral("client_id")), QStringLiteral("my-client"));
    EXPECT_EQ(query.queryItemValue(QStringLiteral("redirect_uri"), QUrl::FullyDecoded),
              QStringLiteral("mirel://oauth/x"));
    EXPECT_EQ(model->statusMessage(),
              QStringLiteral("Complete authorization in X; Mirel will handle the callback."));
    click(visible("cancelConnectX"));
    ASSERT_TRUE(eventually([this] { return visible("cancelConnectX") == nullptr; }));
    EXPECT_EQ(model->statusMessage(), QStringLiteral("X authorization canceled."));
}

TEST_F(SettingsWindow, HelpsWhereTheBrowserDoesNotOpenOrCannotReturn)
{
    openSettings();
    EXPECT_EQ(visible("callback"), nullptr);
    type("my-client");
    click(visible("connectX"));
    ASSERT_TRUE(eventually([this] { return visible("callback") != nullptr; }));
    expectNothingIsCut();
    keepPicture(QStringLiteral("sign-in"));
    click(visible("copySignInPage"));
    EXPECT_EQ(QUrl(QGuiApplication::clipboard()->text()), openedPages.value(0));

    enter("callbackInput", "https://x.com/home");
    click(visible("takeCallback"));
    ASSERT_TRUE(eventually([this] { return model->lastError().has_value(); }));
    EXPECT_EQ(model->lastError(),
              QStringLiteral("That is not an address to which X returns: it begins with mirel://oauth/x."));
    EXPECT_TRUE(model->isAuthorizingX()) << "the browser may return yet";

    const QString state = QUrlQuery(openedPages.value(0)).queryItemValue(QStringLiteral("state"));
    visible("callbackInput")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_A, Qt::ControlModifier);
    enter("callbackInput", (QStringLiteral(" mirel://oauth/x?error=access_denied&state=") + state).toUtf8());
    click(visible("takeCallback"));
    ASSERT_TRUE(eventually([this] { return !model->isAuthorizingX(); }));
    EXPECT_EQ(visible("callback"), nullptr);
    ASSERT_TRUE(eventually([this] {
        return model->lastError() == QStringLiteral("X authorization was not completed: access_denied");
    })) << qPrintable(model->lastError().value_or(QString()));
}

TEST_F(SettingsWindow, TellsInTheFormWhatIsMissing)
{
    openSettings();
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return model->lastError().has_value(); }));
    EXPECT_EQ(model->lastError(), QStringLiteral("Enter an X OAuth client ID before connecting."));
    EXPECT_EQ(allVisible("errorLine").size(), 2) << "in the window, and over it in the form";
    EXPECT_TRUE(openedPages.isEmpty());
}

TEST_F(SettingsWindow, ConnectsWithTokensAndForgetsThemWhenItIsClosed)
{
    openSettings();
    type("my-client");
    enter("clientSecretInput", "planted-secret");
    click(visible("showTokens"));
    ASSERT_TRUE(eventually([this] { return visible("saveTokens") != nullptr; }));
    enter("accessTokenInput", "planted-access");
    enter("refreshTokenInput", "planted-refresh");
    enter("userIDInput", "42");
    enter("usernameInput", "ada");
    click(visible("saveTokens"));
    ASSERT_TRUE(eventually([this] { return model->xConfigured(); }));
    EXPECT_EQ(text("providerStatusText"), QStringLiteral("X configured"));
    press(Qt::Key_Escape);
    ASSERT_TRUE(eventually([this] { return visible("saveTokens") == nullptr; }));
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("saveTokens") != nullptr; }));
    EXPECT_EQ(text("clientSecretInput"), QString());
    EXPECT_EQ(text("accessTokenInput"), QString());
    EXPECT_EQ(text("refreshTokenInput"), QString());
    EXPECT_EQ(text("clientIDInput"), QStringLiteral("my-client"));
}

TEST_F(SettingsWindow, TellsWhatIncompleteTokensLack)
{
    openSettings();
    click(visible("showTokens"));
    ASSERT_TRUE(eventually([this] { return visible("saveTokens") != nullptr; }));
    click(visible("saveTokens"));
    EXPECT_TRUE(eventually([this] {
        return model->lastError() == QStringLiteral("X client ID, user access token, and X user ID are "
                                                    "required for a manual connection.");
    }));
}

TEST_F(SettingsWindow, ValidatesTheConnection)
{
    makeModel({}, true);
    openSettings();
    EXPECT_EQ(text("providerStatusText"), QStringLiteral("X configured"));
    click(visible("validateConnections"));
    EXPECT_TRUE(
        eventually([this] { return model->statusMessage() == QStringLiteral("Validated X directly."); }));
}

TEST_F(SettingsWindow, ClearsTheCredentialsWhenTheUserMeansIt)
{
    makeModel({}, true);
    openSettings();
    click(visible("clearCredentials"));
    ASSERT_TRUE(eventually([this] { return visible("refuse") && visible("refuse")->hasActiveFocus(); }));
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return visible("refuse") == nullptr; }));
    EXPECT_TRUE(model->xConfigured());
    click(visible("clearCredentials"));
    ASSERT_TRUE(eventually([this] { return visible("confirm") != nullptr; }));
    click(visible("confirm"));
    EXPECT_TRUE(eventually([this] { return !model->xConfigured(); }));
    EXPECT_EQ(model->statusMessage(), QStringLiteral("Provider credentials removed."));
    EXPECT_EQ(text("providerStatusText"), QStringLiteral("X not configured"));
}

TEST_F(SettingsWindow, AQuestionIsAnsweredByTheKeypadToo)
{
    makeModel({}, true);
    openSettings();
    click(visible("clearCredentials"));
    ASSERT_TRUE(eventually([this] { return visible("refuse") && visible("refuse")->hasActiveFocus(); }));
    press(Qt::Key_Enter, Qt::KeypadModifier);
    ASSERT_TRUE(eventually([this] { return visible("refuse") == nullptr; }));
    EXPECT_TRUE(model->xConfigured());
    click(visible("clearCredentials"));
    ASSERT_TRUE(eventually([this] { return visible("refuse") && visible("refuse")->hasActiveFocus(); }));
    press(Qt::Key_Tab);
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_TRUE(eventually([this] { return !model->xConfigured(); }));
}

TEST_F(SettingsWindow, DeletesEverythingWhenTheUserMeansIt)
{
    fillWithNumberedPosts(4);
    makeModel({}, true);
    openSettings();
    click(visible("deleteAllData"));
    ASSERT_TRUE(eventually([this] { return visible("confirmationText") != nullptr; }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(eventually([this] { return visible("confirmationText") == nullptr; }));
    EXPECT_NE(visible("deleteAllData"), nullptr) << "the question alone is closed";
    EXPECT_EQ(library.open()->libraryCounts().all, 4);
    click(visible("deleteAllData"));
    ASSERT_TRUE(eventually([this] { return visible("confirm") != nullptr; }));
    click(visible("confirm"));
    const QString done = QStringLiteral("All local Mirel data and credentials were deleted.");
    EXPECT_TRUE(eventually([this, done] { return model->statusMessage() == done; }));
    EXPECT_EQ(library.open()->libraryCounts().all, 0);
    EXPECT_TRUE(eventually([this] { return !model->xConfigured() && model->counts().all == 0; }));
}

TEST_F(SettingsWindow, TheKeyboardReachesEverythingAndStaysInSight)
{
    openWindow();
    window().resize(900, 520);
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(eventually(
        [this] { return visible("clientIDInput") && visible("clientIDInput")->hasActiveFocus(); }));
    QStringList reached;
    for (int step = 0; step < 20; ++step) {
        QQuickItem* const item = window().activeFocusItem();
        ASSERT_NE(item, nullptr);
        reached.append(item->objectName());
        const QRectF place = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        EXPECT_GE(place.top(), 0) << qPrintable(item->objectName());
        EXPECT_LE(place.bottom(), window().height()) << qPrintable(item->objectName());
        press(Qt::Key_Tab);
    }
    for (const char* control :
         {"clientIDInput", "clientSecretInput", "redirectURI", "copyRedirectURI", "otherRedirectURI",
          "connectX", "showTokens", "clearCredentials", "deleteAllData", "closeSheet"})
        EXPECT_TRUE(reached.contains(QString::fromLatin1(control)))
            << control << " in " << qPrintable(reached.join(u' '));
}

TEST_F(SettingsWindow, TheShortcutsOfTheWindowWaitUntilItIsClosed)
{
    fillWithNumberedPosts(2);
    openSettings();
    press(Qt::Key_2, Qt::ControlModifier);
    press(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(model->selection(), SidebarDestination::today);
    EXPECT_EQ(visible("postReferenceInput"), nullptr);
    click(visible("closeSheet"));
    ASSERT_TRUE(eventually([this] { return visible("clientIDInput") == nullptr; }));
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_TRUE(eventually([this] { return model->selection() == SidebarDestination::library; }));
}

} // namespace mirel::testing
