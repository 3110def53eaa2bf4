#include "testing/Printing.h"

#include "model/ConnectionBench.h"
#include "testing/Eventually.h"

#include "model/DefaultBrowser.h"
#include "model/platform/PageOpener.h"
#include "support/WebURL.h"

#include <QFile>

namespace mirel {
namespace {

using testing::eventually;

// With a program in the place of the one that opens the user's browser, which notes what it is given.
class DefaultBrowser : public testing::ConnectionBench
{
protected:
    void SetUp() override
    {
        ConnectionBench::SetUp();
        m_searchPath = qgetenv("PATH");
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("X_CLIENT_SECRET"), QStringLiteral("planted-client-secret"));
        environment.insert(QStringLiteral("OPENAI_API_KEY"), QStringLiteral("planted-openai-key"));
        environment.insert(QStringLiteral("MIREL_TEST_VARIABLE"), QStringLiteral("kept"));
    }

    void TearDown() override
    {
        qputenv("PATH", m_searchPath);
        ConnectionBench::TearDown();
    }

    void installOpener(int exitStatus = 0)
    {
        QFile program(library.directory() + u'/' + pageOpener());
        ASSERT_TRUE(program.open(QFile::WriteOnly));
        const QByteArray notes = QFile::encodeName(notesPath());
        program.write("#!/bin/sh\n{ echo \"arguments: $#\"; printf '%s\\n' \"$@\"; env; "
                      "[ \"$(cut -d ' ' -f 6 /proc/$$/stat)\" = $$ ] && echo leads its session; } >'" +
                      notes + ".part'\nmv '" + notes + ".part' '" + notes + "'\nexit " +
                      QByteArray::number(exitStatus) + '\n');
        program.close();
        ASSERT_TRUE(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        qputenv("PATH", QFile::encodeName(library.directory()) + ':' + m_searchPath);
    }

    // What the program was given, once it has ended.
    QByteArray notes() const
    {
        EXPECT_TRUE(eventually([this] { return QFile::exists(notesPath()); }));
        QFile file(notesPath());
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        return file.readAll();
    }

    // A sign-in in the browser of the system.
    void signIn()
    {
        MirelServices parts = services({});
        parts.oauth = std::make_unique<Serial<XOAuthService>>(
            std::make_shared<ServiceThread>(QStringLiteral("sign-in")), [this] {
                return std::make_unique<XOAuthService>(
                    *vault, *transport, QUrl(QStringLiteral("https://api.example/2")),
                    QUrl(QStringLiteral("https://x.example/i/oauth2/authorize")), library.clock.clock(),
                    [](qsizetype count) { return QByteArray(count, 'r'); });
            });
        parts.makeWebAuthenticationSession = [this] {
            return std::make_unique<BrowserAuthenticationSession>(
                [this](const QUrl& page, const std::function<void()>& failed) {
                    return openInDefaultBrowser(page, environment, failed);
                });
        };
        blockOn(model->shutDown());
        model = std::make_unique<MirelAppModel>(std::move(parts));
        blockOn(model->beginXOAuth(QStringLiteral("client"), QStringLiteral("typed-client-secret"),
                                   XOAuthService::nativeRedirectURI));
    }

    QString notesPath() const { return library.directory() + QStringLiteral("/notes"); }

    QProcessEnvironment environment;

private:
    QByteArray m_searchPath;
};

TEST_F(DefaultBrowser, GetsThePageOfASignInAndNoSecret)
{
    installOpener();
    signIn();
    EXPECT_TRUE(model->isAuthorizingX());
    const QByteArray given = notes();
    EXPECT_TRUE(
        given.startsWith("arguments: 1\n" + absoluteString(model->xAuthorizationURL()).toUtf8() + '\n'));
    EXPECT_TRUE(given.contains("MIREL_TEST_VARIABLE=kept"));
    EXPECT_TRUE(given.endsWith("leads its session\n")) << "so it outlives Mirel";
    const QByteArray verifier = QByteArray(48, 'r').toBase64(QByteArray::Base64UrlEncoding);
    for (const QByteArray& secret : {verifier, QByteArray("planted-client-secret"),
                                     QByteArray("planted-openai-key"), QByteArray("typed-client-secret")})
        EXPECT_FALSE(given.contains(secret)) << secret.constData();
}

TEST_F(DefaultBrowser, ThatCannotBeOpenedEndsTheSignIn)
{
    installOpener(3);
    signIn();
    EXPECT_TRUE(eventually([this] { return !model->isAuthorizingX(); }));
    EXPECT_EQ(error(), QStringLiteral("The secure X authorization session could not be started."));
}

TEST_F(DefaultBrowser, ThatFailsAfterTheSignInWasGivenUpIsNotTold)
{
    int ends = 0;
    std::function<void()> fail;
    std::optional<BrowserAuthenticationSession> session(
        [&](const QUrl&, const std::function<void()>& failed) {
            fail = failed;
            return true;
        });
    ASSERT_TRUE(session->start({}, [&](const auto&) { ++ends; }));
    session->cancel();
    fail();
    EXPECT_EQ(ends, 1) << "of the cancellation alone";
    session.reset();
    fail();
    EXPECT_EQ(ends, 1);
}

TEST_F(DefaultBrowser, IsMissedWhereNothingOpensPages)
{
    qputenv("PATH", QFile::encodeName(library.directory()));
    EXPECT_FALSE(openInDefaultBrowser(QUrl(QStringLiteral("https://x.example/")), environment));
}

TEST_F(DefaultBrowser, TakesAnAddressAsOneArgumentWhateverIsInIt)
{
    installOpener();
    QUrl page(QStringLiteral("https://x.example/"));
    page.setQuery(QStringLiteral("a='b' c\"d;$(touch e)&f=`g`"));
    EXPECT_TRUE(openInDefaultBrowser(page, environment));
    EXPECT_TRUE(notes().startsWith("arguments: 1\n" + absoluteString(page).toUtf8() + '\n'));
}

} // namespace
} // namespace mirel
