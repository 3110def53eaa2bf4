#include "testing/Printing.h"

#include "model/ConnectionBench.h"

#include "x/XAPIError.h"

namespace mirel {
namespace {

const QString locked = QStringLiteral("The vault is locked.");
const QString unauthorized = QStringLiteral("X returned HTTP 401: Unauthorized");

class Connections : public testing::ConnectionBench
{
protected:
    void refuse()
    {
        x->user = [](int) -> XUser { throw XAPIError::http(401, QStringLiteral("Unauthorized")); };
    }

    void persist(const char* clientID, const char* secret, const char* access, const char* refresh,
                 const char* userID, const char* username)
    {
        const auto text = [](const char* field) { return QString::fromLatin1(field); };
        blockOn(model->persistXCredentials(text(clientID), text(secret), text(access), text(refresh),
                                           text(userID), text(username)));
    }

    void connect()
    {
        makeModel(storedCredentials());
        blockOn(model->refreshCredentialState());
        ASSERT_TRUE(model->xConfigured());
    }
};

// Knowing what is connected.

TEST_F(Connections, CredentialsThatXRefusesShowAsNotConnectedWithoutAnError)
{
    makeModel(storedCredentials());
    refuse();
    blockOn(model->refreshCredentialState());
    EXPECT_FALSE(model->xConfigured());
    EXPECT_EQ(error(), QString());
}

TEST_F(Connections, WithoutCredentialsXIsNotAsked)
{
    blockOn(model->refreshCredentialState());
    EXPECT_FALSE(model->xConfigured());
    EXPECT_EQ(x->questions, 0);
}

TEST_F(Connections, AVaultThatFailsShowsAsNotConnectedWithoutAnError)
{
    makeModel(storedCredentials());
    vault->failing = 0;
    blockOn(model->refreshCredentialState());
    EXPECT_FALSE(model->xConfigured());
    EXPECT_EQ(error(), QString());
}

TEST_F(Connections, TheLastCheckToStartDecides)
{
    makeModel(storedCredentials());
    x->hold(0);
    x->user = [](int call) -> XUser {
        if (call == 0)
            throw XAPIError::http(401, QStringLiteral("Unauthorized"));
        return {};
    };
    auto older = model->refreshCredentialState();
    waitForQuestions(1);
    blockOn(model->refreshCredentialState());
    EXPECT_TRUE(model->xConfigured());
    x->release(0);
    blockOn(std::move(older));
    EXPECT_TRUE(model->xConfigured());
}

TEST_F(Connections, ACheckThatStartedBeforeTheCredentialsWereRemovedIsDropped)
{
    makeModel(storedCredentials());
    x->hold(0);
    auto older = model->refreshCredentialState();
    waitForQuestions(1);
    blockOn(model->clearCredentials());
    EXPECT_FALSE(model->xConfigured());
    x->release(0);
    blockOn(std::move(older));
    EXPECT_FALSE(model->xConfigured());
}

TEST_F(Connections, ACheckThatStartedBeforeAPreferencesChangeIsDropped)
{
    makeModel(storedCredentials());
    x->hold(0);
    x->user = [](int call) -> XUser {
        if (call > 0)
            throw XAPIError::http(401, QStringLiteral("Unauthorized"));
        return {};
    };
    auto older = model->refreshCredentialState();
    waitForQuestions(1);
    blockOn(model->savePreferences(smallPages()));
    EXPECT_FALSE(model->xConfigured());
    x->release(0);
    blockOn(std::move(older));
    EXPECT_FALSE(model->xConfigured());
}

// Preferences.

TEST_F(Connections, PreferencesShowAtOnceAndAreStored)
{
    auto saving = model->savePreferences(smallPages());
    EXPECT_EQ(model->preferences().pageSize, 20);
    blockOn(std::move(saving));
    EXPECT_EQ(library.open()->preferences().pageSize, 20);
    EXPECT_EQ(error(), QString());
}

TEST_F(Connections, PreferencesThatCannotBeStoredStayOnTheScreen)
{
    library.connect()->execute("ALTER TABLE app_state RENAME TO gone");
    blockOn(model->savePreferences(smallPages()));
    EXPECT_TRUE(model->lastError());
    EXPECT_EQ(model->preferences().pageSize, 20);
    library.connect()->execute("ALTER TABLE gone RENAME TO app_state");
    EXPECT_EQ(library.open()->preferences().pageSize, AppPreferences().pageSize);
}

// Connecting by tokens.

TEST_F(Connections, TokensConnectAnAccountUnderTheNameThatXTells)
{
    persist(" client ", "secret", "access\n", "refresh", "7", "typed");
    EXPECT_EQ(inVault(), (XCredentials{.clientID = QStringLiteral("client"),
                                       .clientSecret = QStringLiteral("secret"),
                                       .accessToken = QStringLiteral("access"),
                                       .refreshToken = QStringLiteral("refresh"),
                                       .userID = QStringLiteral("7"),
                                       .username = QStringLiteral("ada")}));
    EXPECT_TRUE(model->xConfigured());
    EXPECT_EQ(error(), QString());
}

TEST_F(Connections, ABlankFieldKeepsWhatIsStored)
{
    makeModel(storedCredentials());
    persist("", " ", "\t", "", "", "");
    XCredentials expected = storedCredentials();
    expected.username = QStringLiteral("ada");
    EXPECT_EQ(inVault(), expected);
    persist("", "", "other-access", "", "", "");
    expected.accessToken = QStringLiteral("other-access");
    // When the other one expires is not known.
    expected.expiresAt.reset();
    EXPECT_EQ(inVault(), expected);
}

TEST_F(Connections, TokensNeedAClientAndAUser)
{
    const QString incomplete =
        QStringLiteral("X client ID, user access token, and X user ID are required for a manual connection.");
    const QList<std::array<const char*, 3>> rows{
        {"", "a", "7"}, {"c", " ", "7"}, {"c", "a", ""}, {"", "", ""}};
    for (const auto& [clientID, access, userID] : rows) {
        model->dismissError();
        persist(clientID, "secret", access, "refresh", userID, "ada");
        EXPECT_EQ(error(), incomplete);
        EXPECT_EQ(inVault(), std::nullopt);
    }
    EXPECT_EQ(x->questions, 0);
}

TEST_F(Connections, TokensThatXRefusesAreToldAndShowAsNotConnected)
{
    connect();
    refuse();
    persist("", "", "bad-access", "", "", "");
    EXPECT_EQ(error(), unauthorized);
    EXPECT_FALSE(model->xConfigured());
    EXPECT_EQ(inVault()->accessToken, QStringLiteral("bad-access"));
    EXPECT_EQ(inVault()->username, QStringLiteral("stored-name"));
}

TEST_F(Connections, AVaultThatFailsWhileTokensAreSavedIsTold)
{
    // Reading what is stored, saving, reading and saving for the name.
    for (const int failing : {0, 1, 2, 3}) {
        makeModel(storedCredentials());
        vault->failing = failing;
        persist("", "", "other-access", "", "", "");
        EXPECT_EQ(error(), locked) << failing;
        EXPECT_EQ(inVault()->accessToken == QStringLiteral("other-access"), failing >= 2) << failing;
        EXPECT_EQ(inVault()->username, QStringLiteral("stored-name")) << failing;
    }
}

TEST_F(Connections, CredentialsRemovedWhileTokensAreCheckedStayRemoved)
{
    x->hold(0);
    auto persisting =
        model->persistXCredentials(QStringLiteral("c"), {}, QStringLiteral("a"), {}, QStringLiteral("7"), {});
    waitForQuestions(1);
    blockOn(model->clearCredentials());
    x->release(0);
    blockOn(std::move(persisting));
    EXPECT_EQ(inVault(), std::nullopt);
    EXPECT_FALSE(model->xConfigured());
}

// Checking.

TEST_F(Connections, WithoutAConnectionThereIsNothingToValidate)
{
    blockOn(model->validateConnections());
    EXPECT_EQ(status(), QString());
    EXPECT_EQ(error(), QString());
    EXPECT_EQ(x->questions, 0);
}

TEST_F(Connections, ValidatesTheConnectionToX)
{
    connect();
    QList<bool> working;
    QObject::connect(model.get(), &MirelAppModel::isWorkingChanged,
                     [&] { working.append(model->isWorking()); });
    blockOn(model->validateConnections());
    EXPECT_EQ(status(), QStringLiteral("Validated X directly."));
    EXPECT_EQ(working, QList<bool>({true, false}));
}

TEST_F(Connections, AConnectionThatNoLongerWorksIsTold)
{
    connect();
    refuse();
    blockOn(model->validateConnections());
    EXPECT_EQ(error(), unauthorized);
    EXPECT_EQ(status(), QString());
    EXPECT_FALSE(model->isWorking());
}

TEST_F(Connections, AValidationThatTheRemovalOfCredentialsOvertakesSaysNothing)
{
    for (const bool isRefused : {false, true}) {
        connect();
        x->hold(1);
        if (isRefused)
            refuse();
        auto validating = model->validateConnections();
        waitForQuestions(2);
        EXPECT_TRUE(model->isWorking());
        blockOn(model->clearCredentials());
        x->release(1);
        blockOn(std::move(validating));
        EXPECT_EQ(status(), QStringLiteral("Provider credentials removed."));
        EXPECT_EQ(error(), QString());
        EXPECT_FALSE(model->isWorking());
    }
}

TEST_F(Connections, AValidationThatAPreferencesChangeOvertakesSaysNothing)
{
    connect();
    x->hold(1);
    auto validating = model->validateConnections();
    waitForQuestions(2);
    blockOn(model->savePreferences(smallPages()));
    x->release(1);
    blockOn(std::move(validating));
    EXPECT_EQ(status(), QString());
    EXPECT_TRUE(model->xConfigured());
    EXPECT_FALSE(model->isWorking());
}

// Removing.

TEST_F(Connections, RemovesCredentials)
{
    connect();
    blockOn(model->clearCredentials());
    EXPECT_EQ(status(), QStringLiteral("Provider credentials removed."));
    EXPECT_FALSE(model->xConfigured());
    EXPECT_EQ(inVault(), std::nullopt);
}

TEST_F(Connections, CredentialsThatCannotBeRemovedAreToldAndStay)
{
    connect();
    vault->failing = vault->calls.load();
    blockOn(model->clearCredentials());
    EXPECT_EQ(error(), locked);
    EXPECT_EQ(status(), QString());
    EXPECT_TRUE(model->xConfigured());
    EXPECT_EQ(inVault(), storedCredentials());
}

TEST_F(Connections, CredentialsThatAreRemovedInPartShowAsGone)
{
    connect();
    vault->failsHalfWay = true;
    blockOn(model->clearCredentials());
    EXPECT_EQ(error(), locked);
    EXPECT_EQ(status(), QString());
    EXPECT_EQ(inVault(), std::nullopt);
    EXPECT_FALSE(model->xConfigured());
}

TEST_F(Connections, RemovingCredentialsGivesUpASignIn)
{
    begin();
    const QUrl callback = callbackOf(browser->page);
    blockOn(model->clearCredentials());
    EXPECT_FALSE(model->isAuthorizingX());
    prepareGrant();
    blockOn(model->handleOpenURL(callback));
    EXPECT_EQ(error(), QStringLiteral("Start the X connection again before opening this callback."));
    EXPECT_EQ(inVault(), std::nullopt);
}

} // namespace
} // namespace mirel
