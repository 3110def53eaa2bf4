#include "ConnectionEndToEndTest.h"
#include "testing/Eventually.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace mirel::testing {
namespace {

using Connection = ConnectionEndToEndTest;

TEST_F(Connection, ConnectsByAPastedAddressThenSyncsThenDisconnects)
{
    RunningProgram connect(programs::mirelctl, connecting(), environment());
    const QString page = connect.line();
    EXPECT_TRUE(page.startsWith(simulator.authorizeURL())) << qPrintable(page);
    connect.write("  " + simulator.callbackOf(page).toUtf8() + " ");
    const ProgramResult connected = connect.finish();
    EXPECT_EQ(connected.exitStatus, 0) << connected.errors.constData();
    EXPECT_EQ(connected.output, "Connected @mirel_demo.\n");
    EXPECT_TRUE(mirelctl("status").output.endsWith("X           connected\n"));
    expectSuccess(mirelctl("sync"), "Quick sync checked 120 recent bookmarks across 3 page(s), 120 new.\n");
    EXPECT_EQ(library().postIDs(), allPosts());
    expectSuccess(mirelctl("disconnect"), "Provider credentials removed.\n");
    EXPECT_EQ(storedCredentials(), std::nullopt);
    expectFailure(mirelctl("sync"), "X credentials are not configured.");
    EXPECT_EQ(library().postIDs(), allPosts()) << "the library stays";
    EXPECT_EQ(simulator.problems(), QJsonArray());
}

TEST_F(Connection, ConnectsByTheStartOfMirelThatTheDesktopMakesOfTheCallback)
{
    RunningProgram connect(programs::mirelctl, connecting() + QStringList{QStringLiteral("--json")},
                           environment());
    ASSERT_TRUE(connect.says("simulated-client"));
    connect.endInput();
    ASSERT_TRUE(connect.says("paste"));
    RunningProgram again(programs::mirelctl, connecting(), environment());
    const QString page = again.line();
    EXPECT_TRUE(again.says("another sign-in waits")) << "the first one receives callbacks";
    // One of another attempt does no harm.
    const ProgramResult wrong =
        runProgram(programs::application, {simulator.callbackOf(page)}, windowEnvironment());
    expectSuccess(wrong, "");
    EXPECT_TRUE(connect.says("The X authorization callback did not match this connection attempt."));
    again.interrupt();
    const ProgramResult interrupted = again.finish();
    EXPECT_EQ(interrupted.exitStatus, 1);
    EXPECT_TRUE(interrupted.errors.endsWith("mirelctl: X authorization canceled.\n"))
        << interrupted.errors.constData();
    EXPECT_EQ(storedCredentials(), std::nullopt);
    EXPECT_TRUE(connect.isRunning());
    connect.interrupt();
    EXPECT_EQ(connect.finish().exitStatus, 1);

    RunningProgram third(programs::mirelctl, connecting(), environment());
    const QString callback = simulator.callbackOf(third.line());
    expectSuccess(runProgram(programs::application, {callback}, windowEnvironment()), "");
    const ProgramResult connected = third.finish();
    EXPECT_EQ(connected.exitStatus, 0) << connected.errors.constData();
    EXPECT_EQ(connected.output, "Connected @mirel_demo.\n");
    EXPECT_TRUE(storedCredentials());
}

TEST_F(Connection, TellsWhatIsWrongAndGoesOnWaiting)
{
    RunningProgram connect(programs::mirelctl, connecting(), environment());
    const QString page = connect.line();
    connect.write("what?");
    EXPECT_TRUE(connect.says("That is not an address to which X returns: it begins with mirel://oauth/x."));
    connect.write("mirel://oauth/x?state=guessed&code=guessed");
    EXPECT_TRUE(connect.says("The X authorization callback did not match this connection attempt."));
    EXPECT_EQ(storedCredentials(), std::nullopt);
    connect.write(simulator.callbackOf(page).toUtf8());
    EXPECT_EQ(connect.finish().output, "Connected @mirel_demo.\n");
}

TEST_F(Connection, ReturnsByThePageOfMirelsWebSite)
{
    const QString page = QStringLiteral("https://mirel.example/mac/oauth/x/callback");
    RunningProgram connect(programs::mirelctl,
                           connecting() + QStringList{QStringLiteral("--redirect-uri"), page}, environment());
    const QString callback = simulator.callbackOf(connect.line());
    EXPECT_TRUE(callback.startsWith(page));
    connect.write(callback.toUtf8());
    EXPECT_EQ(connect.finish().output, "Connected @mirel_demo.\n");
}

TEST_F(Connection, EndsWhenXRefuses)
{
    simulator.setScenario(R"({"faults":[{"action":"denyAuthorization","path":"/i/oauth2/authorize"}]})");
    RunningProgram connect(programs::mirelctl, connecting(), environment());
    connect.write(simulator.callbackOf(connect.line()).toUtf8());
    const ProgramResult result = connect.finish();
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.endsWith("mirelctl: X authorization was not completed: access_denied\n"));
}

TEST_F(Connection, SaysThatItWasCanceledAlsoWhileItAsksWhoseTheTokensAre)
{
    simulator.setScenario(R"({"faults":[{"action":"stall","path":"/2/users/me"}]})");
    RunningProgram connect(programs::mirelctl, connecting(), environment());
    connect.write(simulator.callbackOf(connect.line()).toUtf8());
    ASSERT_TRUE(eventually([&] {
        const QJsonArray requests = simulator.requests();
        return !requests.isEmpty() &&
               requests.last()[QStringLiteral("path")] == QStringLiteral("/2/users/me");
    }));
    connect.interrupt();
    const ProgramResult result = connect.finish();
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.endsWith("mirelctl: X authorization canceled.\n")) << result.errors.constData();
    EXPECT_EQ(storedCredentials(), std::nullopt);
}

TEST_F(Connection, NeedsAClientAndAnAddressThatXMayReturnTo)
{
    expectFailure(mirelctl("connect"), "Enter an X OAuth client ID before connecting.");
    expectFailure(mirelctl("connect --client-id a --redirect-uri http://elsewhere.example/"),
                  "Enter a valid X OAuth redirect URI.");
}

TEST_F(Connection, EndsWhenTheSecretDoesNotCome)
{
    expectFailure(runProgram(programs::mirelctl, connectingWithSecret(), environment()),
                  "No client secret came on standard input.");
}

TEST_F(Connection, LeavesCallbacksToOthersUntilItHasTheSecret)
{
    RunningProgram connect(programs::mirelctl, connectingWithSecret(), environment());
    connect.writePart(plantedSecret.first(7));
    ASSERT_TRUE(eventually([&] { return connect.hasReadItsInput(); })) << "it waits for the rest";
    RunningProgram other(programs::mirelctl, connecting(), environment());
    EXPECT_FALSE(other.line().isEmpty());
    EXPECT_TRUE(other.says("If the browser cannot return"));
    // Would be the secret if that were waited for in the same way.
    expectSuccess(runProgram(programs::application,
                             {QStringLiteral("mirel://oauth/x?state=guessed&code=guessed")},
                             windowEnvironment()),
                  "");
    connect.write(plantedSecret.sliced(7));
    const QString page = connect.line();
    EXPECT_TRUE(connect.says("another sign-in waits"));
    connect.write(simulator.callbackOf(page).toUtf8());
    EXPECT_EQ(connect.finish().output, "Connected @mirel_demo.\n");
    ASSERT_TRUE(storedCredentials());
    EXPECT_EQ(storedCredentials()->clientSecret, QString::fromUtf8(plantedSecret));
}

TEST_F(Connection, DeletesEverythingOnlyWhenItIsMeant)
{
    RunningProgram connect(programs::mirelctl, connecting(), environment());
    connect.write(simulator.callbackOf(connect.line()).toUtf8());
    ASSERT_EQ(connect.finish().exitStatus, 0);
    ASSERT_EQ(mirelctl("sync").exitStatus, 0);
    const ProgramResult refused = mirelctl("purge");
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_TRUE(refused.errors.contains("Nothing was deleted")) << refused.errors.constData();
    EXPECT_EQ(library().postIDs(), allPosts());
    EXPECT_TRUE(storedCredentials());
    expectSuccess(mirelctl("purge --yes"), "All local Mirel data and credentials were deleted.\n");
    EXPECT_EQ(library().postIDs(), QSet<QString>());
    EXPECT_EQ(library().rows("SELECT id FROM sync_runs"), QList<QStringList>());
    EXPECT_EQ(library().damage(), QStringList());
    EXPECT_EQ(storedCredentials(), std::nullopt);
}

TEST_F(Connection, TheWindowThatIsOpenTakesTheLinkOfASecondStart)
{
    RunningProgram connect(programs::mirelctl, connecting(), environment());
    connect.write(simulator.callbackOf(connect.line()).toUtf8());
    ASSERT_EQ(connect.finish().exitStatus, 0);
    ASSERT_EQ(mirelctl("sync").exitStatus, 0);
    // Beyond the first page of the list, with a picture of its own, which only the reader loads.
    const auto rows = library().rows("SELECT tweet_id, json_extract(media_json, '$[0].url') FROM bookmarks "
                                     "WHERE json_extract(media_json, '$[0].kind') = 'photo'");
    const QByteArray listed = mirelctl("list --json --limit 50").output;
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const QStringList& columns) {
        return !listed.contains(columns[0].toUtf8());
    });
    ASSERT_NE(row, rows.end());
    const QString id = row->at(0);
    const QString picture = QUrl(row->at(1)).path();
    const auto isPictureAsked = [&] {
        const QJsonArray requests = simulator.requests();
        return std::any_of(requests.begin(), requests.end(),
                           [&](const QJsonValue& request) { return request[u"path"].toString() == picture; });
    };

    RunningProgram window(programs::application, {}, windowEnvironment());
    ASSERT_TRUE(eventually([] { return QFile::exists(socketPath()); }));
    constexpr auto ofOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                              QFile::WriteOther | QFile::ExeOther;
    const auto permissions = [] { return QFileInfo(socketPath()).permissions(); };
    EXPECT_EQ(permissions() & ofOthers, QFile::Permissions()) << "from the beginning";
    // A socket is made executable for its owner.
    EXPECT_TRUE(eventually([&] { return !permissions().testFlag(QFile::ExeOwner); }));
    EXPECT_FALSE(isPictureAsked());
    expectSuccess(
        runProgram(programs::application, {QStringLiteral("mirel://open/") + id}, windowEnvironment()), "");
    EXPECT_TRUE(eventually(isPictureAsked)) << "the post was not opened";
    // A start without a link brings the open window to the front.
    expectSuccess(runProgram(programs::application, {}, windowEnvironment()), "");
    // Unless it is for another library.
    QProcessEnvironment elsewhere = windowEnvironment();
    const QTemporaryDir other;
    elsewhere.insert(QStringLiteral("MIREL_LOCAL_DATA_DIR"), other.path());
    RunningProgram second(programs::application, {}, elsewhere);
    EXPECT_TRUE(
        eventually([&] { return QFile::exists(other.filePath(QStringLiteral("mirel.sqlite3-wal"))); }));
    EXPECT_TRUE(second.isRunning());
    EXPECT_TRUE(window.isRunning());
}

TEST_F(Connection, AGuessedCallbackHandedToTheWindowConnectsNothing)
{
    RunningProgram window(programs::application, {}, windowEnvironment());
    // It receives before it opens the library.
    ASSERT_TRUE(eventually([&] { return window.hasOpened(libraryPath()); }));
    simulator.forgetRequests();
    expectSuccess(runProgram(programs::application,
                             {QStringLiteral("mirel://oauth/x?state=guessed&code=guessed")},
                             windowEnvironment()),
                  "");
    EXPECT_TRUE(window.isRunning());
    EXPECT_EQ(storedCredentials(), std::nullopt);
    EXPECT_EQ(simulator.requests(), QJsonArray()) << "X is asked nothing";
}

TEST_F(Connection, AWindowTakesLinksOnceTheSignInThatTookThemIsOver)
{
    RunningProgram connect(programs::mirelctl, connecting(), environment());
    ASSERT_FALSE(connect.line().isEmpty());
    ASSERT_TRUE(QFile::exists(socketPath()));
    RunningProgram window(programs::application, {}, windowEnvironment());
    ASSERT_TRUE(eventually([&] { return window.hasOpened(libraryPath()); }));
    connect.interrupt();
    EXPECT_EQ(connect.finish().exitStatus, 1);
    ASSERT_TRUE(eventually([] { return QFile::exists(socketPath()); }));
    expectSuccess(runProgram(programs::application, {}, windowEnvironment()), "");
    EXPECT_TRUE(window.isRunning());
}

TEST_F(Connection, AWindowThatWasKilledLeavesNothingInTheWay)
{
    {
        RunningProgram window(programs::application, {}, windowEnvironment());
        ASSERT_TRUE(eventually([] { return QFile::exists(socketPath()); }));
    }
    ASSERT_TRUE(QFile::exists(socketPath()));
    RunningProgram connect(programs::mirelctl, connecting(), environment());
    const QString page = connect.line();
    EXPECT_TRUE(connect.says("If the browser cannot return to Mirel"));
    expectSuccess(runProgram(programs::application, {simulator.callbackOf(page)}, windowEnvironment()), "");
    EXPECT_EQ(connect.finish().output, "Connected @mirel_demo.\n");
}

// Without a keyring that takes or gives anything.
class ConnectionWithoutKeyring : public EndToEndTest
{
protected:
    ConnectionWithoutKeyring()
        : EndToEndTest(10, true)
    {
    }

    // Connecting, disconnecting and deleting all end in `message`.
    void expectFailures(const QByteArray& message)
    {
        RunningProgram connect(
            programs::mirelctl,
            {QStringLiteral("connect"), QStringLiteral("--client-id"), QStringLiteral("simulated-client")},
            environment());
        connect.write(simulator.callbackOf(connect.line()).toUtf8());
        const ProgramResult result = connect.finish();
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_TRUE(result.errors.endsWith("mirelctl: " + message + '\n')) << result.errors.constData();
        EXPECT_EQ(result.output, "") << "beside the page";
        expectFailure(mirelctl("disconnect"), message);
        expectFailure(mirelctl("purge --yes"), message);
        EXPECT_TRUE(mirelctl("status").output.endsWith(
            "X           not connected, or not reachable at the moment\n"));
    }
};

TEST_F(ConnectionWithoutKeyring, FailsInWordsThatHelp)
{
    if (qgetenv("MIREL_TEST_KEYRING") != "without-service")
        FAIL() << "Run this through with-private-keyring.sh.";
    expectFailures("No secret service is running. Start or install a keyring (for example GNOME Keyring or "
                   "KWallet) and try again.");
}

using ConnectionWithLockedKeyring = ConnectionWithoutKeyring;
using ConnectionSeed = ConnectionWithoutKeyring;

// Runs before the keyring is locked, in a process of its own.
TEST_F(ConnectionSeed, IsSaved)
{
    const QByteArray document = R"({"client_id":"c","access_token":"t","user_id":"1"})";
    expectSuccess(runProgram(programs::application, {QStringLiteral("--import-credentials-stdin")},
                             environment(), document),
                  "{\"ok\":true,\"openAI\":false,\"x\":true}\n");
}

TEST_F(ConnectionWithLockedKeyring, AsksToUnlockIt)
{
    if (qgetenv("MIREL_TEST_KEYRING") != "locked")
        FAIL() << "Run this through with-private-keyring.sh.";
    expectFailures("The keyring is locked. Unlock it and try again.");
}

} // namespace
} // namespace mirel::testing
