#include "testing/Printing.h"

#include "model/ModelTestBench.h"
#include "model/WiredModelTest.h"
#include "testing/Eventually.h"
#include "testing/LibraryChecks.h"
#include "x/HeldTransport.h"
#include "x/PageBuilding.h"

#include "credentials/InMemoryCredentialVault.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

#include <atomic>

namespace mirel {
namespace {

using testing::eventually;
using testing::makePage;

// Two syncs, both of which have asked for their first page. The parameter is the one that ends first.
class OverlappingSyncs : public testing::ModelTestBench, public ::testing::WithParamInterface<int>
{
protected:
    void SetUp() override
    {
        makeModel();
        for (auto& page : m_firstPages)
            page.start();
        x->answer = [this](int call) {
            return x->calls.at(static_cast<size_t>(call)).token ? makePage(1, 5)
                                                                : makePage(6, 10, QStringLiteral("older"));
        };
        x->meanwhile = [this](const QString&) -> QCoro::Task<> {
            const auto question = static_cast<size_t>(m_questions++);
            if (question >= m_firstPages.size())
                co_return;
            const QFuture<void> released = m_firstPages.at(question).future();
            co_await released;
        };
    }
    void TearDown() override
    {
        for (int sync = 0; sync < 2; ++sync)
            release(sync);
        ModelTestBench::TearDown();
    }

    [[nodiscard]] bool asked(int questions)
    {
        return eventually([this, questions] { return m_questions >= questions; });
    }
    void release(int sync) { m_firstPages.at(static_cast<size_t>(sync)).finish(); }

private:
    std::array<QPromise<void>, 2> m_firstPages;
    std::atomic<int> m_questions = 0;
};

TEST_P(OverlappingSyncs, LeaveTheirOwnRunsAndShowEachBookmarkOnce)
{
    const int early = GetParam();
    const int late = 1 - early;
    QObject::connect(model.get(), &MirelAppModel::syncChanged,
                     [&] { EXPECT_EQ(model->isSyncing(), model->syncProgress().has_value()); });
    std::array<QCoro::Task<>, 2> syncs;
    syncs[0] = model->syncNow(SyncRun::Kind::manual, true);
    ASSERT_TRUE(asked(1));
    syncs[1] = model->syncNow(SyncRun::Kind::automatic, true);
    ASSERT_TRUE(asked(2));

    release(early);
    blockOn(std::move(syncs.at(static_cast<size_t>(early))));
    EXPECT_EQ(shownTexts().size(), 10);
    // Newest first.
    QList<SyncRun> runs = library.open()->syncRuns(10);
    ASSERT_EQ(runs.size(), 2);
    EXPECT_EQ(runs[1 - early].status, SyncRun::Status::completed);
    EXPECT_EQ(runs[1 - late].status, SyncRun::Status::running);

    release(late);
    blockOn(std::move(syncs.at(static_cast<size_t>(late))));
    runs = library.open()->syncRuns(10);
    ASSERT_EQ(runs.size(), 2);
    EXPECT_EQ(model->syncRuns(), runs);
    EXPECT_EQ(runs[0].kind, SyncRun::Kind::automatic);
    EXPECT_EQ(runs[1].kind, SyncRun::Kind::manual);
    for (const SyncRun& run : runs) {
        EXPECT_EQ(run.status, SyncRun::Status::completed);
        EXPECT_EQ(run.pages, 2);
        EXPECT_EQ(run.fetched, 10);
        EXPECT_EQ(library.open()->syncLogEntries(run.id, 100).size(), 4);
    }
    EXPECT_EQ(model->syncLogEntries().size(), 8);
    EXPECT_EQ(runs[1 - early].created, 10);
    EXPECT_EQ(runs[1 - late].created, 0) << "the other one had stored them";
    EXPECT_EQ(runs[1 - late].updated, 10);

    QStringList expected;
    for (int number = 10; number >= 1; --number)
        expected.append(QStringLiteral("Post number %1").arg(number));
    EXPECT_EQ(shownTexts(), expected);
    EXPECT_EQ(model->counts().all, 10);
    EXPECT_EQ(model->lastError(), std::nullopt);
    EXPECT_FALSE(model->isSyncing());
    EXPECT_EQ(model->syncProgress(), std::nullopt);
    testing::expectWhole(library.path());
}

INSTANTIATE_TEST_SUITE_P(EndingFirst, OverlappingSyncs, ::testing::Values(0, 1),
                         [](const auto& row) { return row.param == 0 ? "TheFirst" : "TheSecond"; });

// A connected account on a network on which the test answers each request when it pleases.
class SyncOverNetwork : public testing::WiredModelTest
{
protected:
    void SetUp() override
    {
        const XCredentials credentials{.clientID = QStringLiteral("client"),
                                       .accessToken = QStringLiteral("access"),
                                       .refreshToken = QStringLiteral("refresh"),
                                       .expiresAt = library.clock.now().addingSeconds(3600),
                                       .userID = QStringLiteral("42")};
        makeModel([=] { return std::make_unique<InMemoryCredentialVault>(credentials); },
                  [] { return std::make_unique<HeldTransport>(); });
        auto checking = model->refreshCredentialState();
        ASSERT_TRUE(asked(1));
        answer(0, R"({"data":{"id":"42","name":"Ada","username":"ada"}})");
        blockOn(std::move(checking));
        ASSERT_TRUE(model->xConfigured());
    }
    void TearDown() override
    {
        if (model)
            blockOn(model->shutDown());
    }

    template <typename Operation>
    auto onNetwork(Operation operation)
    {
        const auto call = [operation](HTTPTransport& it) {
            return operation(static_cast<HeldTransport&>(it));
        };
        return blockOn(transport->call(call));
    }

    [[nodiscard]] bool asked(qsizetype requests)
    {
        return eventually([this, requests] { return requestCount() >= requests; });
    }
    qsizetype requestCount()
    {
        return onNetwork([](HeldTransport& network) { return network.count(); });
    }
    QString path(size_t index)
    {
        return onNetwork([index](HeldTransport& network) { return network.request(index).url.path(); });
    }
    void answer(size_t index, const QByteArray& body)
    {
        onNetwork([index, body](HeldTransport& network) { network.answer(index, 200, body); });
    }
};

class SyncWithoutCredentials : public SyncOverNetwork
{
protected:
    // What the removal of the credentials during `sync` leaves, once the sync has its answer.
    void expectDisconnected(QCoro::Task<> sync, int requests)
    {
        ASSERT_TRUE(eventually([&] { return sync.isReady() || requestCount() > requests; }));
        EXPECT_EQ(requestCount(), requests) << "no request without credentials";
        EXPECT_EQ(blockOn(vault->call([](CredentialVault& it) { return it.loadXCredentials(); })),
                  std::nullopt);
        ASSERT_TRUE(sync.isReady());
        blockOn(std::move(sync));
        EXPECT_FALSE(model->xConfigured());
        EXPECT_FALSE(model->isSyncing());
        EXPECT_EQ(model->syncProgress(), std::nullopt);
        ASSERT_EQ(model->syncRuns().size(), 1);
        EXPECT_EQ(model->syncRuns().first().status, SyncRun::Status::failed);
        EXPECT_EQ(model->syncRuns().first().errorMessage, missing);
        ASSERT_FALSE(model->syncLogEntries().isEmpty());
        EXPECT_EQ(model->syncLogEntries().first().event, SyncLogEntry::Event::failed);
        EXPECT_EQ(model->syncLogEntries().first().message, missing);
        EXPECT_EQ(model->lastError(), missing);
    }

    const QString missing = QStringLiteral("X credentials are not configured.");
};

TEST_F(SyncWithoutCredentials, DoesNotBringBackATokenThatWasBeingRefreshed)
{
    library.clock.advance(3600);
    auto sync = model->syncNow({}, true);
    ASSERT_TRUE(asked(2));
    ASSERT_EQ(path(1), QStringLiteral("/2/oauth2/token"));
    blockOn(model->clearCredentials());
    EXPECT_EQ(model->statusMessage(), QStringLiteral("Provider credentials removed."));
    answer(1, R"({"access_token":"late","refresh_token":"late","expires_in":7200})");
    expectDisconnected(std::move(sync), 2);
    EXPECT_EQ(model->syncRuns().value(0).pages, 0);
}

TEST_F(SyncWithoutCredentials, KeepsThePageThatWasOnItsWay)
{
    auto sync = model->syncNow({}, true);
    ASSERT_TRUE(asked(2));
    ASSERT_EQ(path(1), QStringLiteral("/2/users/42/bookmarks"));
    blockOn(model->clearCredentials());
    const QByteArray post = testPages::post("77", R"(,"created_at":"2026-01-01T00:00:00.000Z")");
    answer(1, testPages::page({post}).chopped(1) + R"(,"meta":{"result_count":1,"next_token":"more"}})");
    expectDisconnected(std::move(sync), 2);
    EXPECT_EQ(model->syncRuns().value(0).pages, 1);
    EXPECT_EQ(model->syncRuns().value(0).created, 1);
    EXPECT_EQ(library.open()->libraryCounts().all, 1);
    testing::expectWhole(library.path());
}

class CancelingASync : public SyncOverNetwork
{
protected:
    void SetUp() override
    {
        SyncOverNetwork::SetUp();
        m_sync.emplace(model->syncNow({}, true));
        ASSERT_TRUE(asked(2));
        ASSERT_EQ(path(1), QStringLiteral("/2/users/42/bookmarks"));
    }

    // Cancels the sync, for which X has not yet answered.
    void cancelSync()
    {
        model->cancelSync();
        blockOn(*std::move(m_sync));
        EXPECT_FALSE(model->isSyncing());
        ASSERT_EQ(model->syncRuns().size(), 1);
        EXPECT_EQ(model->syncRuns().first().status, SyncRun::Status::failed);
        EXPECT_EQ(model->syncRuns().first().errorMessage, QStringLiteral("Sync canceled."));
    }

    const QByteArray page = testPages::page({testPages::post("77", "")});

private:
    std::optional<QCoro::Task<>> m_sync;
};

TEST_F(CancelingASync, DoesNotWaitForXAndDropsWhatComesLate)
{
    cancelSync();
    EXPECT_EQ(model->statusMessage(),
              QStringLiteral("The sync was canceled. What had arrived is in the library."));
    answer(1, page);
    blockOn(model->shutDown());
    EXPECT_EQ(library.open()->libraryCounts().all, 0);
}

TEST_F(CancelingASync, LeavesACheckOfTheConnectionAlone)
{
    auto checking = model->validateConnections();
    ASSERT_TRUE(asked(3));
    cancelSync();
    answer(2, R"({"data":{"id":"42","name":"Ada","username":"ada"}})");
    blockOn(std::move(checking));
    EXPECT_EQ(model->statusMessage(), QStringLiteral("Validated X directly."));
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(CancelingASync, LetsTheNextOneBeginAtOnce)
{
    cancelSync();
    auto next = model->syncNow({}, false);
    ASSERT_TRUE(asked(3));
    answer(2, page);
    blockOn(std::move(next));
    EXPECT_EQ(model->syncRuns().first().status, SyncRun::Status::completed);
    answer(1, page);
    blockOn(model->shutDown());
    EXPECT_EQ(library.open()->syncRuns(10).value(1).status, SyncRun::Status::failed);
}

TEST_F(CancelingASync, EndsAtOnceAlsoWhenTheProgramEndsBeforeXAnswers)
{
    cancelSync();
    blockOn(model->shutDown());
    model.reset();
    EXPECT_EQ(library.open()->syncRuns(10).size(), 1);
    testing::expectWhole(library.path());
}

} // namespace
} // namespace mirel
