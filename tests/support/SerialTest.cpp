#include "support/Serial.h"
#include "support/BlockOn.h"
#include "support/Error.h"

#include <QCoro/QCoroTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

namespace mirel {
namespace {

using namespace std::chrono_literals;

struct Counter
{
    int value = 0;
    QThread* home = QThread::currentThread();

    int add(int amount)
    {
        value += amount;
        return value;
    }

    QCoro::Task<int> addLater(int amount)
    {
        QTimer timer;
        timer.start(1ms);
        co_await timer;
        value += amount;
        co_return value;
    }
};

std::unique_ptr<Serial<Counter>> makeCounter()
{
    return std::make_unique<Serial<Counter>>(std::make_shared<ServiceThread>(QStringLiteral("counter")),
                                             [] { return std::make_unique<Counter>(); });
}

TEST(Serial, RunsTheFunctionOnTheServicesThreadAndResumesTheCallerOnItsOwn)
{
    const auto counter = makeCounter();
    QThread* const caller = QThread::currentThread();
    blockOn([&]() -> QCoro::Task<> {
        QThread* const ran = co_await counter->call([](Counter&) { return QThread::currentThread(); });
        EXPECT_NE(ran, caller);
        EXPECT_EQ(ran, counter->unguarded().home);
        EXPECT_EQ(QThread::currentThread(), caller);
    }());
}

TEST(Serial, ReturnsWhatTheFunctionReturnsAlsoWhenItIsNothing)
{
    const auto counter = makeCounter();
    blockOn(counter->call([](Counter& it) { it.value = 5; }));
    EXPECT_EQ(blockOn(counter->call([](Counter& it) { return it.add(2); })), 7);
}

TEST(Serial, AwaitsATaskThatTheFunctionReturns)
{
    const auto counter = makeCounter();
    EXPECT_EQ(blockOn(counter->call([](Counter& it) { return it.addLater(3); })), 3);
}

TEST(Serial, PassesExceptionsOfFunctionsAndTasksThrough)
{
    const auto counter = makeCounter();
    EXPECT_THROW(blockOn(counter->call([](Counter&) { throw std::out_of_range("far"); })), std::out_of_range);
    EXPECT_THROW(blockOn(counter->call([](Counter& it) -> QCoro::Task<int> {
                     co_await it.addLater(1);
                     throw std::out_of_range("far");
                 })),
                 std::out_of_range);
}

TEST(Serial, PassesOnWhatTheFactoryThrows)
{
    const auto thread = std::make_shared<ServiceThread>(QStringLiteral("broken"));
    EXPECT_THROW(
        Serial<Counter>(thread, []() -> std::unique_ptr<Counter> { throw std::out_of_range("far"); }),
        std::out_of_range);
}

TEST(Serial, WaitsForCallsInFlightBeforeItDestroysTheService)
{
    auto counter = makeCounter();
    auto task = counter->call([](Counter& it) { return it.addLater(3); });
    // Lets the call begin.
    blockOn(counter->call([](Counter&) {}));
    counter.reset();
    EXPECT_EQ(blockOn(std::move(task)), 3);
}

} // namespace
} // namespace mirel
