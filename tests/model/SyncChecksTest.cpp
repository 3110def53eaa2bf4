#include "testing/Printing.h"

#include "model/ModelTestBench.h"

#include "model/SyncChecks.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

namespace mirel {
namespace {

using namespace std::chrono_literals;
using testing::makePage;

// Lasts until the test lets it pass.
class HeldPause : public Pause
{
public:
    QCoro::Task<> lastFor(std::chrono::milliseconds time) override
    {
        asked.push_back(time);
        m_promise = QPromise<void>();
        m_promise.start();
        const QFuture<void> end = m_promise.future();
        co_await end;
    }
    void interrupt() override
    {
        ++interruptions;
        pass();
    }
    void pass() { m_promise.finish(); }

    std::vector<std::chrono::milliseconds> asked;
    int interruptions = 0;

private:
    QPromise<void> m_promise;
};

class SyncCheckLoop : public testing::ModelTestBench
{
protected:
    void SetUp() override
    {
        syncsAutomatically = true;
        makeModel();
        x->answer = [](int) { return makePage(1, 5); };
        blockOn(model->load());
        blockOn(model->refreshCredentialState());
    }

    void waitFor(std::size_t pauses)
    {
        runUntil([&] { return pause.asked.size() >= pauses; });
    }

    HeldPause pause;
};

TEST_F(SyncCheckLoop, AsksEvery900SecondsWhetherASyncIsDue)
{
    SyncChecks checks(*model, pause);
    auto running = checks.run();
    EXPECT_EQ(pause.asked, std::vector({900'000ms}));
    EXPECT_TRUE(x->calls.empty()) << "the first question is asked by the start of the model";
    pause.pass();
    waitFor(2);
    EXPECT_EQ(model->syncRuns().size(), 1) << "the next pause begins when the sync has ended";
    EXPECT_FALSE(model->isSyncing());
    pause.pass();
    waitFor(3);
    EXPECT_EQ(model->syncRuns().size(), 1) << "not due";
    library.clock.advance(86'400);
    pause.pass();
    waitFor(4);
    EXPECT_EQ(model->syncRuns().size(), 2);
    checks.end();
    blockOn(std::move(running));
    EXPECT_EQ(pause.interruptions, 1);
    EXPECT_EQ(pause.asked.size(), 4U) << "after its end it pauses no more";
}

TEST_F(SyncCheckLoop, AsksOnceMoreAfterAnInterruptedPause)
{
    SyncChecks checks(*model, pause);
    auto running = checks.run();
    pause.interrupt();
    waitFor(2);
    EXPECT_EQ(model->syncRuns().size(), 1);
    checks.end();
    blockOn(std::move(running));
}

TEST_F(SyncCheckLoop, TheLastQuestionOfAWindowThatClosesStartsNoSync)
{
    SyncChecks checks(*model, pause);
    auto running = checks.run();
    auto shuttingDown = model->shutDown();
    checks.end();
    blockOn(std::move(shuttingDown));
    blockOn(std::move(running));
    EXPECT_TRUE(checks.hasEnded());
    EXPECT_TRUE(x->calls.empty());
}

} // namespace
} // namespace mirel
