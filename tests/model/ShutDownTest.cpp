#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include "credentials/InMemoryCredentialVault.h"
#include "model/Demo.h"
#include "model/MirelAppModel.h"
#include "support/BlockOn.h"
#include "x/XAPIClient.h"

#include <QCoro/QCoroFuture>
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
    QCoro::Task<> wait()
    {
        auto& promise = m_promises.emplace_back();
        promise.start();
        const auto end = promise.future();
        co_await end;
        throw Canceled();
    }

    void cancelAll()
    {
        for (auto& promise : m_promises)
            promise.finish();
        m_promises.clear();
    }

private:
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
    void makeModel(std::function<std::unique_ptr<CredentialVault>()> makeVault)
    {
        MirelServices services;
        services.store = std::make_unique<Serial<LocalLibraryStore>>(
            std::make_shared<ServiceThread>(QStringLiteral("library")), [this] { return library.open(); });
        const auto thread = std::make_shared<ServiceThread>(QStringLiteral("services"));
        services.vault = std::make_unique<Serial<CredentialVault>>(thread, makeVault);
        services.transport = std::make_unique<Serial<HTTPTransport>>(
            thread, [] { return std::make_unique<SilentTransport>(); });
        services.x = std::make_unique<Serial<XDirectAPI>>(thread, [&] {
            return std::make_unique<XAPIClient>(services.vault->unguarded(), services.transport->unguarded(),
                                                QUrl(QStringLiteral("https://x.example/2")),
                                                library.clock.clock());
        });
        services.syncService = std::make_unique<Serial<MirelSyncService>>(thread, [&] {
            return std::make_unique<MirelSyncService>(services.x->unguarded(), *services.store,
                                                      library.clock.clock());
        });
        model = std::make_unique<MirelAppModel>(std::move(services));
    }

    testing::TemporaryLibrary library;
    std::unique_ptr<MirelAppModel> model;
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

} // namespace
} // namespace mirel
