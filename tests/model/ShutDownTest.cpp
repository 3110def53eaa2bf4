#include "testing/Printing.h"

#include "model/WiredModelTest.h"
#include "testing/Eventually.h"

#include "credentials/InMemoryCredentialVault.h"
#include "model/Demo.h"
#include "support/BlockOn.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

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
    // Throws unless `isAnswered` by then, which outlives the wait.
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

class ShutDown : public testing::WiredModelTest
{
protected:
    void makeModelWith(std::function<std::unique_ptr<CredentialVault>()> makeVault)
    {
        makeModel(std::move(makeVault), [] { return std::make_unique<SilentTransport>(); });
    }
};

TEST_F(ShutDown, EndsARequestThatBeginsAfterTheOthersWereEnded)
{
    makeModelWith([] { return std::make_unique<InMemoryCredentialVault>(Demo::account()); });
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
    makeModelWith([] { return std::make_unique<SilentVault>(); });
    blockOn(model->start());
    model->requestSync(false);
    blockOn(model->shutDown());
    EXPECT_FALSE(model->isSyncing());
    EXPECT_FALSE(model->xConfigured());
}

TEST_F(ShutDown, ACanceledSyncEndsAlsoWhenTheModelGoesAtOnce)
{
    makeModelWith([] { return std::make_unique<InMemoryCredentialVault>(Demo::account()); });
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
    void cancelRepeatable() override
    {
        ++rounds;
        m_silent.cancelAll();
    }

    void sendToken()
    {
        m_sent = true;
        m_tokens.cancelAll();
    }

    std::atomic<bool> isAsked = false;
    // How often the others were ended.
    std::atomic<int> rounds = 0;

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
                      m_transport = made.get();
                      return made;
                  });
        model->requestSync(false);
        ASSERT_TRUE(testing::eventually([this] { return m_transport->isAsked.load(); }));
    }

    // When others have long been ended.
    void sendToken()
    {
        ASSERT_TRUE(testing::eventually([this] { return m_transport->rounds >= 3; }));
        blockOn(transport->call([](HTTPTransport& it) { static_cast<TokenTransport&>(it).sendToken(); }));
    }

    std::optional<QString> storedToken()
    {
        const auto stored = blockOn(vault->call([](CredentialVault& it) { return it.loadXCredentials(); }));
        return stored ? stored->refreshToken : std::nullopt;
    }

private:
    // Belongs to the model.
    TokenTransport* m_transport = nullptr;
};

TEST_F(ShutDownDuringARefresh, SavesTheTokenThatXHasSent)
{
    auto ending = model->shutDown();
    sendToken();
    blockOn(std::move(ending));
    EXPECT_EQ(storedToken(), QStringLiteral("fresher"));
}

TEST_F(ShutDownDuringARefresh, SavesTheTokenThatACanceledSyncHasLeftBehind)
{
    blockOn(model->endSyncEarly());
    EXPECT_FALSE(model->isSyncing());
    EXPECT_EQ(storedToken(), QStringLiteral("old"));
    auto ending = model->shutDown();
    sendToken();
    blockOn(std::move(ending));
    EXPECT_EQ(storedToken(), QStringLiteral("fresher"));
}

TEST_F(ShutDownDuringARefresh, DoesNotWaitForEverForAToken)
{
    blockOn(model->shutDown());
    EXPECT_EQ(storedToken(), QStringLiteral("old"));
}

} // namespace
} // namespace mirel
