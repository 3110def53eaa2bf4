#include "KeyringEndToEndTest.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QThread>
#include <QUrl>
#include <QUrlQuery>

#include <csignal>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace mirel::testing {
namespace {

const QByteArray plantedSecret = "planted-client-secret";

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A program that runs while the test goes on.
class Program
{
public:
    Program(const QString& path, const QStringList& arguments, const QProcessEnvironment& environment)
    {
        m_process.setProcessEnvironment(environment);
        m_process.start(path, arguments);
        m_process.waitForStarted();
    }
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Program)

    // The next line of standard output; empty when it ended.
    QString line()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(60'000)) {
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }
    // Waits for text on standard error. Returns whether it came.
    bool says(const QByteArray& text)
    {
        m_process.setReadChannel(QProcess::StandardError);
        while (!m_errors.contains(text)) {
            if (m_process.bytesAvailable() == 0 && !m_process.waitForReadyRead(60'000))
                break;
            m_errors += m_process.readAllStandardError();
        }
        m_process.setReadChannel(QProcess::StandardOutput);
        return m_errors.contains(text);
    }
    void write(const QByteArray& line) { writePart(line + '\n'); }
    void writePart(const QByteArray& ofLine)
    {
        m_process.write(ofLine);
        m_process.waitForBytesWritten();
    }
    // Whether all that was written has been read.
    [[nodiscard]] bool hasReadItsInput() const
    {
        const QString path = QStringLiteral("/proc/%1/fd/0").arg(m_process.processId());
        const int input = ::open(path.toUtf8().constData(), O_RDONLY | O_NONBLOCK);
        int unread = -1;
        ::ioctl(input, FIONREAD, &unread);
        ::close(input);
        return unread == 0;
    }
    void endInput() { m_process.closeWriteChannel(); }
    void interrupt() const { ::kill(static_cast<pid_t>(m_process.processId()), SIGINT); }
    void terminate() { m_process.terminate(); }
    ProgramResult finish()
    {
        ProgramResult result = testing::finish(m_process);
        result.errors.prepend(m_errors);
        return result;
    }
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }
    [[nodiscard]] bool hasOpened(const QString& path) const
    {
        const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(m_process.processId()));
        const QStringList names = descriptors.entryList(QDir::Files | QDir::System);
        return std::any_of(names.begin(), names.end(), [&](const QString& name) {
            return QFile::symLinkTarget(descriptors.filePath(name)) == path;
        });
    }

    // What every user of the machine and the user's other programs can see of it.
    [[nodiscard]] QByteArray visibleParts() const
    {
        const QString directory = QStringLiteral("/proc/%1/").arg(m_process.processId());
        return contentsOf(directory + QStringLiteral("cmdline")) +
               contentsOf(directory + QStringLiteral("environ"));
    }

private:
    QProcess m_process;
    QByteArray m_errors;
};

// An account that is connected by the program itself, with a real keyring.
class Connection : public KeyringEndToEndTest
{
protected:
    static QStringList connecting()
    {
        return {QStringLiteral("connect"), QStringLiteral("--client-id"), QStringLiteral("simulated-client")};
    }

    // The window program without a screen.
    [[nodiscard]] QProcessEnvironment windowEnvironment() const
    {
        QProcessEnvironment result = environment();
        result.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        result.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        return result;
    }

    static QStringList connectingWithSecret()
    {
        return connecting() + QStringList{QStringLiteral("--client-secret-stdin")};
    }

    [[nodiscard]] QString libraryPath() const { return directory.filePath(QStringLiteral("mirel.sqlite3")); }

    static QString socketPath()
    {
        return QDir(qEnvironmentVariable("XDG_RUNTIME_DIR")).filePath(QStringLiteral("mirel.sock"));
    }

    // Returns whether it happened within a minute.
    template <typename Condition>
    static bool eventually(Condition condition)
    {
        const QDeadlineTimer deadline(60'000);
        while (!condition()) {
            if (deadline.hasExpired())
                return false;
            QThread::msleep(20);
        }
        return true;
    }

    // The files that Mirel can have written, but for what the keyring has encrypted.
    QStringList filesWith(const QByteArray& secret) const
    {
        const QString home = qEnvironmentVariable("HOME");
        QStringList found;
        for (const QString& root : {home, directory.path()}) {
            QDirIterator files(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                const QString path = files.next();
                if (!path.startsWith(home + QStringLiteral("/data/keyrings/")) &&
                    contentsOf(path).contains(secret))
                    found.append(path);
            }
        }
        return found;
    }
};

TEST_F(Connection, ConnectsByAPastedAddressThenSyncsThenDisconnects)
{
    Program connect(programs::mirelctl, connecting(), environment());
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
    Program connect(programs::mirelctl, connecting() + QStringList{QStringLiteral("--json")}, environment());
    ASSERT_TRUE(connect.says("simulated-client"));
    connect.endInput();
    ASSERT_TRUE(connect.says("paste"));
    Program again(programs::mirelctl, connecting(), environment());
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

    Program third(programs::mirelctl, connecting(), environment());
    const QString callback = simulator.callbackOf(third.line());
    expectSuccess(runProgram(programs::application, {callback}, windowEnvironment()), "");
    const ProgramResult connected = third.finish();
    EXPECT_EQ(connected.exitStatus, 0) << connected.errors.constData();
    EXPECT_EQ(connected.output, "Connected @mirel_demo.\n");
    EXPECT_TRUE(storedCredentials());
}

TEST_F(Connection, TellsWhatIsWrongAndGoesOnWaiting)
{
    Program connect(programs::mirelctl, connecting(), environment());
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
    Program connect(programs::mirelctl, connecting() + QStringList{QStringLiteral("--redirect-uri"), page},
                    environment());
    const QString callback = simulator.callbackOf(connect.line());
    EXPECT_TRUE(callback.startsWith(page));
    connect.write(callback.toUtf8());
    EXPECT_EQ(connect.finish().output, "Connected @mirel_demo.\n");
}

TEST_F(Connection, EndsWhenXRefuses)
{
    simulator.setScenario(R"({"faults":[{"action":"denyAuthorization","path":"/i/oauth2/authorize"}]})");
    Program connect(programs::mirelctl, connecting(), environment());
    connect.write(simulator.callbackOf(connect.line()).toUtf8());
    const ProgramResult result = connect.finish();
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.endsWith("mirelctl: X authorization was not completed: access_denied\n"));
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
    Program connect(programs::mirelctl, connectingWithSecret(), environment());
    connect.writePart(plantedSecret.first(7));
    ASSERT_TRUE(eventually([&] { return connect.hasReadItsInput(); })) << "it waits for the rest";
    Program other(programs::mirelctl, connecting(), environment());
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
    Program connect(programs::mirelctl, connecting(), environment());
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
    Program connect(programs::mirelctl, connecting(), environment());
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

    Program window(programs::application, {}, windowEnvironment());
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
    Program second(programs::application, {}, elsewhere);
    EXPECT_TRUE(
        eventually([&] { return QFile::exists(other.filePath(QStringLiteral("mirel.sqlite3-wal"))); }));
    EXPECT_TRUE(second.isRunning());
    EXPECT_TRUE(window.isRunning());
}

TEST_F(Connection, AGuessedCallbackHandedToTheWindowConnectsNothing)
{
    Program window(programs::application, {}, windowEnvironment());
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
    Program connect(programs::mirelctl, connecting(), environment());
    ASSERT_FALSE(connect.line().isEmpty());
    ASSERT_TRUE(QFile::exists(socketPath()));
    Program window(programs::application, {}, windowEnvironment());
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
        Program window(programs::application, {}, windowEnvironment());
        ASSERT_TRUE(eventually([] { return QFile::exists(socketPath()); }));
    }
    ASSERT_TRUE(QFile::exists(socketPath()));
    Program connect(programs::mirelctl, connecting(), environment());
    const QString page = connect.line();
    EXPECT_TRUE(connect.says("If the browser cannot return to Mirel"));
    expectSuccess(runProgram(programs::application, {simulator.callbackOf(page)}, windowEnvironment()), "");
    EXPECT_EQ(connect.finish().output, "Connected @mirel_demo.\n");
}

TEST_F(Connection, LeavesNoSecretAnywhere)
{
    QByteArray shown;
    Program connect(programs::mirelctl, connectingWithSecret(), environment());
    connect.write(plantedSecret);
    const QString page = connect.line();
    const QString callback = simulator.callbackOf(page);
    const QByteArray code = QUrlQuery(QUrl(callback)).queryItemValue(QStringLiteral("code")).toUtf8();
    ASSERT_FALSE(code.isEmpty());
    shown += page.toUtf8() + connect.visibleParts();
    // The first exchange fails, and X's answer quotes what it was asked with.
    simulator.setScenario(
        R"({"faults":[{"action":"status","status":400,"path":"/2/oauth2/token","requests":1,)"
        R"("bodyText":"{\"error_description\":\"bad )" +
        plantedSecret + " " + code + R"(\"}"}]})");
    connect.write(callback.toUtf8());
    const ProgramResult failed = connect.finish();
    EXPECT_EQ(failed.exitStatus, 1);
    EXPECT_TRUE(failed.errors.contains("X OAuth returned HTTP 400: bad [hidden] [hidden]"))
        << failed.errors.constData();
    shown += failed.output + failed.errors;
    simulator.setScenario();

    QProcessEnvironment withSecret = environment();
    withSecret.insert(QStringLiteral("X_CLIENT_SECRET"), QString::fromUtf8(plantedSecret));
    Program retry(programs::mirelctl, connecting(), withSecret);
    const QString secondPage = retry.line();
    const QString secondCallback = simulator.callbackOf(secondPage);
    retry.write(secondCallback.toUtf8());
    const ProgramResult connected = retry.finish();
    ASSERT_EQ(connected.exitStatus, 0) << connected.errors.constData();
    shown += secondPage.toUtf8() + connected.output + connected.errors;

    const auto credentials = storedCredentials();
    ASSERT_TRUE(credentials && credentials->refreshToken);
    EXPECT_EQ(credentials->clientSecret, QString::fromUtf8(plantedSecret));
    QList<QByteArray> secrets{plantedSecret, code,
                              QUrlQuery(QUrl(secondCallback)).queryItemValue(QStringLiteral("code")).toUtf8(),
                              credentials->accessToken.toUtf8(), credentials->refreshToken->toUtf8()};
    // What proved to X that the code was asked for here.
    for (const QJsonValue& request : simulator.requests()) {
        const QUrlQuery form(request[u"body"].toString());
        if (form.hasQueryItem(QStringLiteral("code_verifier")))
            secrets.append(form.queryItemValue(QStringLiteral("code_verifier")).toUtf8());
    }
    ASSERT_EQ(secrets.size(), 7);
    const auto run = [&](const QByteArray& words) {
        const ProgramResult result = mirelctl(words);
        shown += result.output + result.errors;
    };
    const auto search = [&] {
        for (const QByteArray& secret : secrets) {
            ASSERT_GT(secret.size(), 8);
            EXPECT_FALSE(shown.contains(secret)) << secret.constData();
            EXPECT_EQ(filesWith(secret), QStringList()) << secret.constData();
        }
    };
    // While it uses the tokens: the sync waits for X.
    simulator.setScenario(R"({"faults":[{"action":"stall"}]})");
    simulator.forgetRequests();
    {
        Program sync(programs::mirelctl, {QStringLiteral("sync")}, environment());
        const auto isAsked = [&] {
            const QJsonArray requests = simulator.requests();
            return std::any_of(requests.begin(), requests.end(), [](const QJsonValue& request) {
                return request[u"path"].toString().endsWith(QStringLiteral("/bookmarks"));
            });
        };
        ASSERT_TRUE(eventually(isAsked));
        const QByteArray visible = sync.visibleParts();
        EXPECT_TRUE(visible.contains("MIREL_X_API_URL")) << "the sync runs";
        sync.interrupt();
        const ProgramResult interrupted = sync.finish();
        EXPECT_EQ(interrupted.exitStatus, 1);
        shown += visible + interrupted.output + interrupted.errors;
    }
    simulator.setScenario();
    run("sync");
    for (const char* const action : {R"("status","status":401)", R"("status","status":500,"body":"html")",
                                     R"("cutInBody")", R"("undecodable")"}) {
        simulator.setScenario(QByteArray(R"({"faults":[{"action":)") + action + "}]}");
        run("sync --full");
        run("status --json");
    }
    simulator.setScenario();
    run("list --json --limit 500");
    search();
    run("disconnect");
    run("sync");
    search();
    // The search finds what is there.
    EXPECT_FALSE(filesWith(simulator.accountIDs().first().toUtf8()).isEmpty());
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
        Program connect(
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
