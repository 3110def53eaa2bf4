#include "KeyringEndToEndTest.h"

#include <QDirIterator>
#include <QFile>

namespace mirel::testing {
namespace {

const QByteArray quickSync = "Quick sync checked 120 recent bookmarks across 3 page(s), 120 new.\n";

// With credentials imported from a document.
class KeyringSync : public KeyringEndToEndTest
{
protected:
    void TearDown() override
    {
        if (HasFatalFailure())
            return;
        for (const char* secret : {"simulated-access-token", "simulated-refresh-token",
                                   "planted-client-secret", "planted-openai-key"}) {
            EXPECT_FALSE(m_outputs.contains(secret)) << secret;
            expectNotInFiles(secret);
        }
        KeyringEndToEndTest::TearDown();
    }

    // The account of the simulator, its token due `expiresAt`, with the members that `changes` replaces.
    void importCredentials(const QString& expiresAt, const QJsonObject& changes = {})
    {
        QJsonObject document{
            {QStringLiteral("client_id"), QStringLiteral("simulated-client")},
            {QStringLiteral("client_secret"), QStringLiteral("planted-client-secret")},
            {QStringLiteral("access_token"), QStringLiteral("simulated-access-token")},
            {QStringLiteral("refresh_token"), QStringLiteral("simulated-refresh-token")},
            {QStringLiteral("expires_at"), expiresAt},
            {QStringLiteral("user_id"), QStringLiteral("1471900000000000001")},
            {QStringLiteral("username"), QStringLiteral("mirel_demo")},
            {QStringLiteral("openai_api_key"), QStringLiteral("planted-openai-key")},
        };
        for (const QString& key : changes.keys())
            document[key] = changes[key];
        const ProgramResult result =
            runProgram(programs::application, {QStringLiteral("--import-credentials-stdin")}, environment(),
                       writeJSON(document));
        expectSuccess(result, "{\"ok\":true,\"openAI\":true,\"x\":true}\n");
        m_outputs += result.output + result.errors;
    }

    ProgramResult run(const QByteArray& words)
    {
        const ProgramResult result = mirelctl(words);
        m_outputs += result.output + result.errors;
        return result;
    }

    void expectNotInFiles(const char* secret) const
    {
        QDirIterator files(directory.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            EXPECT_FALSE(file.readAll().contains(secret)) << secret << " in " << qPrintable(file.fileName());
        }
    }

    const QString future = QStringLiteral("2999-01-01T00:00:00Z");
    const QString past = QStringLiteral("2020-01-01T00:00:00Z");

private:
    QByteArray m_outputs;
};

TEST_F(KeyringSync, BringsTheWholeAccount)
{
    importCredentials(future);
    expectSuccess(run("sync"), quickSync);
    expectSuccess(run("sync"), "Quick sync checked 50 recent bookmarks across 1 page(s), 0 new.\n");
    expectSuccess(run("sync --full"),
                  "Full sync checked every page X made available: 120 bookmarks across 3 page(s), 0 new.\n");
    EXPECT_EQ(library().postIDs(), allPosts());
    EXPECT_EQ(library().damage(), QStringList());
    EXPECT_TRUE(run("status").output.endsWith("X           connected\n"));
    EXPECT_EQ(run("list --json --limit 500").exitStatus, 0);
    EXPECT_EQ(storedCredentials().value().accessToken, QStringLiteral("simulated-access-token"));
    EXPECT_EQ(simulator.problems(), QJsonArray());
}

TEST_F(KeyringSync, RenewsTokensThatAreDueAndKeepsTheNewOnes)
{
    importCredentials(past);
    simulator.expireTokens();
    expectSuccess(run("sync"), quickSync);
    const XCredentials renewed = storedCredentials().value();
    EXPECT_NE(renewed.accessToken, QStringLiteral("simulated-access-token"));
    EXPECT_NE(renewed.refreshToken, QStringLiteral("simulated-refresh-token"));
    ASSERT_TRUE(renewed.expiresAt);
    EXPECT_GT(renewed.expiresAt->secondsSince1970(), Instant::now().secondsSince1970() + 3'600);
    EXPECT_EQ(renewed.clientSecret, QStringLiteral("planted-client-secret"));
    expectSuccess(run("sync"), "Quick sync checked 50 recent bookmarks across 1 page(s), 0 new.\n");
    EXPECT_EQ(storedCredentials().value(), renewed);
    EXPECT_EQ(simulator.problems(), QJsonArray());
}

TEST_F(KeyringSync, FollowsRefreshTokensThatChangeWithEveryUse)
{
    importCredentials(past);
    // Always due, since a token is renewed 30 seconds before it expires.
    simulator.setScenario(R"({"accessTokenLifetimeSeconds":29})");
    expectSuccess(run("sync"), quickSync);
    const XCredentials first = storedCredentials().value();
    expectSuccess(run("sync --full"),
                  "Full sync checked every page X made available: 120 bookmarks across 3 page(s), 0 new.\n");
    EXPECT_NE(storedCredentials().value().refreshToken, first.refreshToken);
    EXPECT_EQ(simulator.problems(), QJsonArray());
    EXPECT_EQ(library().postIDs(), allPosts());
}

TEST_F(KeyringSync, StopsWhereXRevokesTheTokenAndGoesOnOnceItIsRenewed)
{
    importCredentials(future);
    simulator.setScenario(R"({"faults":[{"action":"expireTokens","requests":2}]})");
    expectFailure(run("sync"), "X returned HTTP 401: Unauthorized");
    EXPECT_EQ(lastRun().first(4),
              QStringList({QStringLiteral("failed"), QStringLiteral("X returned HTTP 401: Unauthorized"),
                           QStringLiteral("1"), QStringLiteral("50")}));
    EXPECT_EQ(library().postIDs(), newestPosts(50));
    simulator.setScenario();
    importCredentials(past);
    expectSuccess(run("sync"), "Quick sync checked 50 recent bookmarks across 1 page(s), 0 new.\n");
    expectSuccess(run("sync --full"),
                  "Full sync checked every page X made available: 120 bookmarks across 3 page(s), 70 new.\n");
    EXPECT_EQ(library().postIDs(), allPosts());
}

TEST_F(KeyringSync, TellsThatARefreshTokenWasRefused)
{
    importCredentials(past,
                      {{QStringLiteral("refresh_token"), QStringLiteral("simulated-refresh-token-spent")}});
    const QByteArray message =
        "X returned HTTP 400: {\"error\":\"invalid_request\",\"error_description\":\"Value "
        "passed for the token was invalid.\"}";
    expectFailure(run("sync"), message);
    EXPECT_EQ(lastRun().first(2), QStringList({QStringLiteral("failed"), QString::fromUtf8(message)}));
    EXPECT_EQ(storedCredentials().value().refreshToken, QStringLiteral("simulated-refresh-token-spent"));
}

TEST_F(KeyringSync, TellsThatTheConnectionMustBeRenewed)
{
    importCredentials(past, {{QStringLiteral("refresh_token"), QString()}});
    expectFailure(run("sync"), "The X connection must be renewed.");
    EXPECT_EQ(lastRun().first(2),
              QStringList({QStringLiteral("failed"), QStringLiteral("The X connection must be renewed.")}));
    EXPECT_EQ(simulator.requests(), QJsonArray());
}

TEST_F(KeyringSync, TellsThatThereAreNoCredentials)
{
    expectFailure(run("sync"), "X credentials are not configured.");
    EXPECT_EQ(lastRun().first(2),
              QStringList({QStringLiteral("failed"), QStringLiteral("X credentials are not configured.")}));
    EXPECT_TRUE(run("status").output.endsWith("X           not connected, or not reachable at the moment\n"));
}

// Without any keyring.
class NoKeyringSync : public EndToEndTest
{
protected:
    NoKeyringSync()
        : EndToEndTest(120, true)
    {
    }
};

TEST_F(NoKeyringSync, FailsInWordsThatHelpAndListsAllTheSame)
{
    if (qgetenv("MIREL_TEST_KEYRING") != "without-service")
        FAIL() << "Run this through with-private-keyring.sh.";
    const QByteArray message = "No secret service is running. Start or install a keyring (for example GNOME "
                               "Keyring or KWallet) and try again.";
    expectFailure(mirelctl("sync"), message);
    EXPECT_EQ(lastRun().first(2), QStringList({QStringLiteral("failed"), QString::fromUtf8(message)}));
    expectSuccess(mirelctl("list"), "No bookmarks.\n");
    EXPECT_TRUE(
        mirelctl("status").output.endsWith("X           not connected, or not reachable at the moment\n"));
}

} // namespace
} // namespace mirel::testing
