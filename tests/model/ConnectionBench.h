#pragma once

#include "testing/Eventually.h"
#include "testing/TemporaryLibrary.h"
#include "x/FailingVault.h"
#include "x/FakeX.h"
#include "x/RecordingTransport.h"

#include "model/MirelAppModel.h"
#include "support/BlockOn.h"

#include <QCoro/QCoroFuture>
#include <QPromise>
#include <QUrlQuery>

#include <gtest/gtest.h>

#include <atomic>
#include <map>

namespace mirel::testing {

// An X that tells whose the credentials are, at once or when the test lets it.
class AskedX : public FakeX
{
public:
    // Of the n-th question (from 0); may throw.
    std::function<XUser(int call)> user = [](int) {
        return XUser{QStringLiteral("7"), QStringLiteral("Ada"), QStringLiteral("ada")};
    };
    std::atomic<int> questions = 0;

    // Lets the n-th question wait until release().
    void hold(int call)
    {
        m_held[call] = std::make_unique<QPromise<void>>();
        m_held[call]->start();
    }
    void release(int call) { m_held.at(call)->finish(); }

    QCoro::Task<XUser> currentUser() override
    {
        const int call = questions++;
        if (const auto held = m_held.find(call); held != m_held.end()) {
            const QFuture<void> released = held->second->future();
            co_await released;
        }
        co_return user(call);
    }

private:
    std::map<int, std::unique_ptr<QPromise<void>>> m_held;
};

// A network that answers at once, or when the test lets it.
class HoldableTransport : public RecordingTransport
{
public:
    std::atomic<int> count = 0;

    // Lets requests wait until release().
    void hold()
    {
        m_held.start();
        m_isHolding = true;
    }
    void release() { m_held.finish(); }

    QCoro::Task<HTTPResponse> data(HTTPRequest request) override
    {
        ++count;
        if (m_isHolding) {
            const QFuture<void> released = m_held.future();
            co_await released;
        }
        auto answering = RecordingTransport::data(request);
        const HTTPResponse response = co_await std::move(answering);
        co_return response;
    }

private:
    std::atomic<bool> m_isHolding = false;
    QPromise<void> m_held;
};

// A browser that the test plays.
class PlayedBrowser : public WebAuthenticationSession
{
public:
    explicit PlayedBrowser(PlayedBrowser** current)
        : m_current(current)
    {
        *m_current = this;
    }
    ~PlayedBrowser() override
    {
        if (*m_current == this)
            *m_current = nullptr;
    }
    Q_DISABLE_COPY_MOVE(PlayedBrowser)

    [[nodiscard]] bool start(const QUrl& shown, Completion whenDone) override
    {
        page = shown;
        completion = std::move(whenDone);
        return canStart;
    }
    void cancel() override { finish({.failure = std::make_exception_ptr(WebAuthenticationCanceled())}); }
    void finish(const Outcome& outcome)
    {
        const Completion whenDone = completion;
        whenDone(outcome);
    }

    static inline bool canStart = true;
    QUrl page;
    Completion completion;

private:
    PlayedBrowser** m_current;
};

// A model with everything that a connection needs, each of which can fail.
class ConnectionBench : public ::testing::Test
{
protected:
    void SetUp() override { makeModel(); }

    void TearDown() override
    {
        PlayedBrowser::canStart = true;
        if (model)
            blockOn(model->shutDown());
    }

    static XCredentials storedCredentials()
    {
        return {.clientID = QStringLiteral("stored-client"),
                .clientSecret = QStringLiteral("stored-secret"),
                .accessToken = QStringLiteral("stored-access"),
                .refreshToken = QStringLiteral("stored-refresh"),
                .expiresAt = Instant::fromSecondsSince1970(1'900'000'000),
                .userID = QStringLiteral("7"),
                .username = QStringLiteral("stored-name")};
    }

    static AppPreferences smallPages()
    {
        AppPreferences preferences;
        preferences.pageSize = 20;
        return preferences;
    }

    void makeModel(const std::optional<XCredentials>& credentials = {})
    {
        if (model)
            blockOn(model->shutDown());
        model.reset();
        model = std::make_unique<MirelAppModel>(services(credentials));
    }

    MirelServices services(const std::optional<XCredentials>& credentials)
    {
        MirelServices result;
        result.store = std::make_unique<Serial<LocalLibraryStore>>(
            std::make_shared<ServiceThread>(QStringLiteral("library")), [this] { return library.open(); });
        const auto thread = std::make_shared<ServiceThread>(QStringLiteral("services"));
        result.vault = std::make_unique<Serial<CredentialVault>>(
            thread, [&] { return std::make_unique<FailingVault>(credentials); });
        vault = static_cast<FailingVault*>(&result.vault->unguarded());
        result.transport = std::make_unique<Serial<HTTPTransport>>(
            thread, [] { return std::make_unique<HoldableTransport>(); });
        transport = static_cast<HoldableTransport*>(&result.transport->unguarded());
        result.x = std::make_unique<Serial<XDirectAPI>>(thread, [] { return std::make_unique<AskedX>(); });
        x = static_cast<AskedX*>(&result.x->unguarded());
        result.syncService = std::make_unique<Serial<MirelSyncService>>(thread, [&] {
            return std::make_unique<MirelSyncService>(*x, *result.store, library.clock.clock());
        });
        result.oauth = std::make_unique<Serial<XOAuthService>>(thread, [&] {
            return std::make_unique<XOAuthService>(
                *vault, *transport, QUrl(QStringLiteral("https://api.example/2")),
                QUrl(QStringLiteral("https://x.example/i/oauth2/authorize")), library.clock.clock());
        });
        result.makeWebAuthenticationSession = [this] {
            ++openedBrowsers;
            return std::make_unique<PlayedBrowser>(&browser);
        };
        result.cacheDirectory = QDir(library.directory()).filePath(QStringLiteral("caches"));
        return result;
    }

    // What X grants for a code, and whose it is.
    void prepareGrant(const QByteArray& accessToken = "granted-access")
    {
        transport->answer(200, R"({"access_token":")" + accessToken +
                                   R"(","refresh_token":"granted-refresh","expires_in":7200})");
        transport->answer(200, R"({"data":{"id":"7","name":"Ada","username":"ada"}})");
    }

    void begin(const QString& clientID = QStringLiteral("client"))
    {
        blockOn(model->beginXOAuth(clientID, QString(), XOAuthService::nativeRedirectURI));
    }

    // Where X sends the browser that showed `page`.
    static QUrl callbackOf(const QUrl& page, const QString& code = QStringLiteral("code"))
    {
        QUrl url(XOAuthService::nativeRedirectURI);
        url.setQuery(QStringLiteral("state=") + QUrlQuery(page).queryItemValue(QStringLiteral("state")) +
                     QStringLiteral("&code=") + code);
        return url;
    }

    std::optional<XCredentials> inVault()
    {
        return blockOn(vault->InMemoryCredentialVault::loadXCredentials());
    }

    QString error() const { return model->lastError().value_or(QString()); }
    QString status() const { return model->statusMessage().value_or(QString()); }

    // Runs the event loop until X was asked that often whose the credentials are.
    void waitForQuestions(int count) const
    {
        ASSERT_TRUE(eventually([this, count] { return x->questions >= count; }));
    }

    TemporaryLibrary library;
    std::unique_ptr<MirelAppModel> model;
    // These belong to the model and live on its services thread.
    FailingVault* vault = nullptr;
    HoldableTransport* transport = nullptr;
    AskedX* x = nullptr;
    // Null when none is open.
    PlayedBrowser* browser = nullptr;
    int openedBrowsers = 0;
};

} // namespace mirel::testing
