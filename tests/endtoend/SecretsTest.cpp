#include "ConnectionEndToEndTest.h"
#include "testing/Eventually.h"

#include <QDirIterator>
#include <QFile>
#include <QUrl>
#include <QUrlQuery>

namespace mirel::testing {
namespace {

QByteArray queryValue(const QString& form, const QString& name)
{
    return QUrlQuery(form).queryItemValue(name).toUtf8();
}

// What must stand nowhere, and all places where it could.
class Secrets : public ConnectionEndToEndTest
{
protected:
    // Agrees to a sign-in. Returns where X then sends the browser.
    QString agreeTo(const QString& page)
    {
        m_shown += page.toUtf8();
        const QString callback = simulator.callbackOf(page);
        m_secrets.append(queryValue(QUrl(callback).query(), QStringLiteral("code")));
        return callback;
    }

    void noteShown(const QByteArray& bytes) { m_shown += bytes; }
    void noteShown(const ProgramResult& result) { m_shown += result.output + result.errors; }
    void runAndNote(const QByteArray& words) { noteShown(mirelctl(words)); }

    // What the exchange gave, and what proved to X that the code was asked for here.
    void noteTokens()
    {
        const auto credentials = storedCredentials();
        ASSERT_TRUE(credentials && credentials->refreshToken);
        EXPECT_EQ(credentials->clientSecret, QString::fromUtf8(plantedSecret));
        m_secrets.append({credentials->accessToken.toUtf8(), credentials->refreshToken->toUtf8()});
        const QString verifier = QStringLiteral("code_verifier");
        for (const QJsonValue& request : simulator.requests()) {
            if (const QByteArray value = queryValue(request[u"body"].toString(), verifier); !value.isEmpty())
                m_secrets.append(value);
        }
    }

    // Connects an account in a terminal, with the secret in the environment.
    void connectAccount()
    {
        QProcessEnvironment withSecret = environment();
        withSecret.insert(secretVariable, QString::fromUtf8(plantedSecret));
        RunningProgram connect(programs::mirelctl, connecting(), withSecret);
        const QString callback = agreeTo(connect.line());
        const QByteArray visible = connect.visibleParts();
        EXPECT_TRUE(visible.contains("X_CLIENT_SECRET=")) << "it was there";
        noteShown(visible);
        connect.write(callback.toUtf8());
        const ProgramResult connected = connect.finish();
        ASSERT_EQ(connected.exitStatus, 0) << connected.errors.constData();
        noteShown(connected);
        noteTokens();
    }

    // Whether X was asked for bookmarks since the requests were last forgotten.
    bool areBookmarksAsked() const
    {
        const QJsonArray requests = simulator.requests();
        return std::any_of(requests.begin(), requests.end(), [](const QJsonValue& request) {
            return request[u"path"].toString().endsWith(QStringLiteral("/bookmarks"));
        });
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

    // `count` secrets are known, and none of them was shown or stands in a file.
    void expectNoneIsSeen(qsizetype count) const
    {
        ASSERT_EQ(m_secrets.size(), count);
        for (const QByteArray& secret : m_secrets) {
            ASSERT_GT(secret.size(), 8);
            EXPECT_FALSE(m_shown.contains(secret)) << secret.constData();
            EXPECT_EQ(filesWith(secret), QStringList()) << secret.constData();
        }
    }

    const QString secretVariable = QStringLiteral("X_CLIENT_SECRET");

private:
    QByteArrayList m_secrets{plantedSecret};
    QByteArray m_shown;
};

TEST_F(Secrets, AreSeenNowhereWhenConnecting)
{
    RunningProgram connect(programs::mirelctl, connectingWithSecret(), environment());
    connect.write(plantedSecret);
    const QString page = connect.line();
    const QString callback = agreeTo(page);
    noteShown(connect.visibleParts());
    // The exchange fails, and X's answer quotes what it was asked with.
    const QByteArray code = queryValue(QUrl(callback).query(), QStringLiteral("code"));
    simulator.setScenario(
        R"({"faults":[{"action":"status","status":400,"path":"/2/oauth2/token","requests":1,)"
        R"("bodyText":"{\"error_description\":\"bad )" +
        plantedSecret + " " + code + R"(\"}"}]})");
    connect.write(callback.toUtf8());
    const ProgramResult failed = connect.finish();
    EXPECT_EQ(failed.exitStatus, 1);
    EXPECT_TRUE(failed.errors.contains("X OAuth returned HTTP 400: bad [hidden] [hidden]"))
        << failed.errors.constData();
    noteShown(failed);
    simulator.setScenario();
    connectAccount();
    // The client's, and of two attempts the code and its proof; and two tokens.
    expectNoneIsSeen(7);
}

TEST_F(Secrets, AreSeenNowhereWhenSyncing)
{
    connectAccount();
    // While it uses the tokens: the sync waits for X.
    simulator.setScenario(R"({"faults":[{"action":"stall"}]})");
    simulator.forgetRequests();
    {
        RunningProgram sync(programs::mirelctl, {QStringLiteral("sync")}, environment());
        ASSERT_TRUE(eventually([this] { return areBookmarksAsked(); }));
        const QByteArray visible = sync.visibleParts();
        EXPECT_TRUE(visible.contains("MIREL_X_API_URL")) << "the sync runs";
        sync.interrupt();
        const ProgramResult interrupted = sync.finish();
        EXPECT_EQ(interrupted.exitStatus, 1);
        noteShown(visible);
        noteShown(interrupted);
    }
    simulator.setScenario();
    runAndNote("sync");
    for (const char* const action : {R"("status","status":401)", R"("status","status":500,"body":"html")",
                                     R"("cutInBody")", R"("undecodable")"}) {
        simulator.setScenario(QByteArray(R"({"faults":[{"action":)") + action + "}]}");
        runAndNote("sync --full");
        runAndNote("status --json");
    }
    simulator.setScenario();
    runAndNote("list --json --limit 500");
    expectNoneIsSeen(5);
    runAndNote("disconnect");
    runAndNote("sync");
    expectNoneIsSeen(5);
    // The search finds what is there.
    EXPECT_FALSE(filesWith(simulator.accountIDs().first().toUtf8()).isEmpty());
}

// The window program with the secret in its environment, and a browser that only notes how it was started.
class WindowSecrets : public Secrets
{
protected:
    WindowSecrets()
    {
        QFile browser(m_browser.filePath(QStringLiteral("xdg-open")));
        if (!browser.open(QIODevice::WriteOnly))
            return;
        const QByteArray note = notePath().toUtf8();
        browser.write("#!/bin/sh\n"
                      "{ printf '%s\\n' \"$1\"; tr '\\0' '\\n' </proc/$$/cmdline; env; } >'" +
                      note + ".part'\nmv '" + note + ".part' '" + note + "'\n");
        browser.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    [[nodiscard]] QProcessEnvironment environmentWithSecret() const
    {
        QProcessEnvironment result = windowEnvironment();
        result.insert(secretVariable, QString::fromUtf8(plantedSecret));
        result.insert(QStringLiteral("PATH"),
                      m_browser.path() + u':' + qEnvironmentVariable("PATH", QStringLiteral("/usr/bin")));
        return result;
    }

    // What the browser that the window started was given: a line with the page, then all that is visible of
    // it.
    [[nodiscard]] QByteArray startOfBrowser() const
    {
        return eventually([this] { return QFile::exists(notePath()); }) ? contentsOf(notePath())
                                                                        : QByteArray();
    }

private:
    [[nodiscard]] QString notePath() const { return m_browser.filePath(QStringLiteral("note")); }

    QTemporaryDir m_browser;
};

TEST_F(WindowSecrets, AreSeenNowhereWhenTheWindowConnectsAndSyncs)
{
    QProcessEnvironment driven = environmentWithSecret();
    driven.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(MIREL_TEST_PLUGINS));
    driven.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("mirelwindowdriver"));
    RunningProgram window(programs::application, {}, driven);
    const QByteArray browser = startOfBrowser();
    ASSERT_TRUE(browser.contains("\nMIREL_X_API_URL=")) << "it inherits the environment";
    noteShown(browser);
    const QString callback = agreeTo(QString::fromUtf8(browser.left(browser.indexOf('\n'))));
    expectSuccess(runProgram(programs::application, {callback}, windowEnvironment()), "");
    ASSERT_TRUE(eventually([this] { return storedCredentials().has_value(); }));
    noteTokens();
    const QByteArray visible = window.visibleParts();
    EXPECT_TRUE(visible.contains("X_CLIENT_SECRET=")) << "it was there";
    noteShown(visible);
    EXPECT_TRUE(window.isRunning());
    window.terminate();
    noteShown(window.finish());

    // The next start syncs by itself.
    simulator.forgetRequests();
    RunningProgram again(programs::application, {}, environmentWithSecret());
    ASSERT_TRUE(eventually([this] { return areBookmarksAsked(); }));
    ASSERT_TRUE(eventually([this] { return library().postIDs() == allPosts(); }));
    noteShown(again.visibleParts());
    EXPECT_TRUE(again.isRunning());
    again.terminate();
    noteShown(again.finish());
    expectNoneIsSeen(5);
}

} // namespace
} // namespace mirel::testing
