#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include "credentials/InMemoryCredentialVault.h"
#include "model/Demo.h"
#include "model/MirelAppModel.h"
#include "support/BlockOn.h"
#include "x/XAPIClient.h"

#include <QCoro/QCoroFuture>
#include <QCoro/QCoroTimer>
#include <QPromise>

#include <gtest/gtest.h>

#include <vector>

namespace mirel {
namespace {

class Canceled : public Error
{
public:
    [[nodiscard]] QString description() const override { return QStringLiteral("canceled"); }
};

// Calls that nobody answers.
class SilentCalls
{
public:
    // Throws unless `isAnswered` by then.
    QCoro::Task<> wait(const bool& isAnswered = never)
    {
        auto& promise = m_promises.emplace_back();
        promise.start();
        const auto end = promise.future();
        co_await end;
        if (!isAnswered)
            throw Canceled();
    }

    void cancelAll()
    {
        for (auto& promise : m_promises)
            promise.finish();
        m_promises.clear();
    }

private:
    static constexpr bool never = false;

    std::vector<QPromise<void>> m_promises;
};

class SilentTransport : public HTTPTransport
{
public:
    QCoro::Task<HTTPResponse> data(HTTPRequest) override
    {
        co_await m_calls.wait();
        co_return {};
    }
    void cancelAll() override { m_calls.cancelAll(); }

private:
    SilentCalls m_calls;
};

class SilentVault : public InMemoryCredentialVault
{
public:
    QCoro::Task<std::optional<XCredentials>> loadXCredentials() override
    {
        co_await m_calls.wait();
        co_return std::nullopt;
    }
    void cancelAll() override { m_calls.cancelAll(); }

private:
    SilentCalls m_calls;
};

class ShutDown : public ::testing::Test
{
protected:
    void makeModel(
        std::function<std::unique_ptr<CredentialVault>()> makeVault,
        std::function<std::unique_ptr<HTTPTransport>()> makeTransport = [] {
            return std::make_unique<SilentTransport>();
        })
    {
        MirelServices services;
        services.store = std::make_unique<Serial<LocalLibraryStore>>(
            std::make_shared<ServiceThread>(QStringLiteral("library")), [this] { return library.open(); });
        const auto thread = std::make_shared<ServiceThread>(QStringLiteral("services"));
        services.vault = std::make_unique<Serial<CredentialVault>>(thread, makeVault);
        services.transport = std::make_unique<Serial<HTTPTransport>>(thread, makeTransport);
        services.x = std::make_unique<Serial<XDirectAPI>>(thread, [&] {
            return std::make_unique<XAPIClient>(services.vault->unguarded(), services.transport->unguarded(),
                                                QUrl(QStringLiteral("https://x.example/2")),
                                                library.clock.clock());
        });
        services.syncService = std::make_unique<Serial<MirelSyncService>>(thread, [&] {
            return std::make_unique<MirelSyncService>(services.x->unguarded(), *services.store,
                                                      library.clock.clock());
        });
        vaultOnItsThread = services.vault.get();
        transportOnItsThread = services.transport.get();
        model = std::make_unique<MirelAppModel>(std::move(services));
    }

    testing::TemporaryLibrary library;
    std::unique_ptr<MirelAppModel> model;
    // These belong to the model.
    Serial<CredentialVault>* vaultOnItsThread = nullptr;
    Serial<HTTPTransport>* transportOnItsThread = nullptr;
};

TEST_F(ShutDown, EndsARequestThatBeginsAfterTheOthersWereEnded)
{
    makeModel([] { return std::make_unique<InMemoryCredentialVault>(Demo::account()); });
    model->requestSync(false);
    blockOn(model->shutDown());
    EXPECT_FALSE(model->isSyncing());
    EXPECT_EQ(model->lastError(), std::nullopt);
    ASSERT_EQ(model->syncRuns().size(), 1);
    EXPECT_EQ(model->syncRuns().first().status, SyncRun::Status::running)
        << "the end of the program is no attempt that failed";
}

TEST_F(ShutDown, DoesNotWaitForAKeyringThatWaitsForItsUser)
{
    makeModel([] { return std::make_unique<SilentVault>(); });
    blockOn(model->start());
    model->requestSync(false);
    blockOn(model->shutDown());
    EXPECT_FALSE(model->isSyncing());
    EXPECT_FALSE(model->xConfigured());
}

TEST_F(ShutDown, ACanceledSyncEndsAlsoWhenTheModelGoesAtOnce)
{
    makeModel([] { return std::make_unique<InMemoryCredentialVault>(Demo::account()); });
    model->requestSync(false);
    model->cancelSync();
    blockOn(model->shutDown());
    EXPECT_EQ(model->statusMessage(),
              QStringLiteral("The sync was canceled. What had arrived is in the library."));
    model.reset();
    const QList<SyncRun> runs = library.open()->syncRuns(10);
    ASSERT_EQ(runs.size(), 1);
    EXPECT_EQ(runs.first().status, SyncRun::Status::failed);
    EXPECT_EQ(runs.first().errorMessage, QStringLiteral("Sync canceled."));
}

// Asks for a token, for which it waits until the test sends it.
class TokenTransport : public HTTPTransport
{
public:
    QCoro::Task<HTTPResponse> data(HTTPRequest request) override
    {
        if (!request.isUnrepeatable) {
            co_await m_silent.wait();
            co_return {};
        }
        isAsked = true;
        co_await m_tokens.wait(m_sent);
        co_return HTTPResponse{200, {}, R"({"access_token":"fresh","refresh_token":"fresher"})"};
    }
    void cancelAll() override
    {
        m_silent.cancelAll();
        m_tokens.cancelAll();
    }
    void cancelRepeatable() override { m_silent.cancelAll(); }

    void sendToken()
    {
        m_sent = true;
        m_tokens.cancelAll();
    }

    std::atomic<bool> isAsked = false;

private:
    SilentCalls m_silent;
    SilentCalls m_tokens;
    bool m_sent = false;
};

class ShutDownDuringARefresh : public ShutDown
{
protected:
    void SetUp() override
    {
        XCredentials credentials = Demo::account();
        credentials.refreshToken = QStringLiteral("old");
        credentials.expiresAt = library.clock.now();
        makeModel([credentials] { return std::make_unique<InMemoryCredentialVault>(credentials); },
                  [this] {
                      auto made = std::make_unique<TokenTransport>();
                      transport = made.get();
                      return made;
                  });
        model->requestSync(false);
        while (!transport->isAsked)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }

    // When others have long been ended.
    void sendToken()
    {
        blockOn(QCoro::sleepFor(std::chrono::milliseconds(100)));
        blockOn(transportOnItsThread->call(
            [](HTTPTransport& it) { static_cast<TokenTransport&>(it).sendToken(); }));
    }

    std::optional<QString> storedToken()
    {
        const auto stored =
            blockOn(vaultOnItsThread->call([](CredentialVault& vault) { return vault.loadXCredentials(); }));
        return stored ? stored->refreshToken : std::nullopt;
    }

    TokenTransport* transport = nullptr;
};

TEST_F(ShutDownDuringARefresh, SavesTheTokenThatXHasSent)
{
    auto ending = model->shutDown();
    sendToken();
    blockOn(std::move(ending));
    EXPECT_EQ(storedToken(), QStringLiteral("fresher"));
}

TEST_F(ShutDownDuringARefresh, SavesTheTokenAlsoWhenTheSyncIsCanceled)
{
    auto ending = model->endSyncEarly();
    sendToken();
    blockOn(std::move(ending));
    EXPECT_FALSE(model->isSyncing());
    EXPECT_EQ(storedToken(), QStringLiteral("fresher"));
}

TEST_F(ShutDownDuringARefresh, DoesNotWaitForEverForAToken)
{
    blockOn(model->shutDown());
    EXPECT_EQ(storedToken(), QStringLiteral("old"));
}

} // namespace
} // namespace mirel
