#include "model/ContinuousPause.h"

#include "support/BlockOn.h"
#include "support/ContinuousClock.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

using namespace std::chrono_literals;

// A clock that shows one reading after the other, and then the last one for ever.
ContinuousPause::Clock clockOf(std::vector<std::chrono::milliseconds> readings)
{
    const auto next = std::make_shared<std::size_t>(0);
    return [readings, next] {
        const std::size_t reading = std::min(*next, readings.size() - 1);
        ++*next;
        return readings[reading];
    };
}

TEST(ContinuousPause, HasPassedWhenTheClockSaysSo)
{
    // The computer slept after the beginning.
    ContinuousPause pause(clockOf({100ms, 900'100ms}));
    blockOn(pause.lastFor(900s));
}

TEST(ContinuousPause, GoesOnWhileTheClockHasNotComeSoFar)
{
    int readings = 0;
    ContinuousPause pause([&readings] { return ++readings < 6 ? 100ms : 105ms; });
    blockOn(pause.lastFor(5ms));
    EXPECT_EQ(readings, 6) << "a timer that has run down does not decide";
}

TEST(ContinuousPause, LooksAtTheClockEveryHalfMinuteAndAtTheEnd)
{
    EXPECT_EQ(ContinuousPause::step(900s), 30s);
    EXPECT_EQ(ContinuousPause::step(30s), 30s);
    EXPECT_EQ(ContinuousPause::step(7ms), 7ms);
}

TEST(ContinuousPause, CanBeInterruptedAndUsedAgain)
{
    ContinuousPause pause;
    auto first = pause.lastFor(24h);
    EXPECT_FALSE(first.isReady());
    pause.interrupt();
    blockOn(std::move(first));
    auto second = pause.lastFor(24h);
    EXPECT_FALSE(second.isReady()) << "an interruption counts for one pause";
    pause.interrupt();
    blockOn(std::move(second));
}

TEST(ContinuousPause, OfNoTimeIsOver)
{
    ContinuousPause pause;
    EXPECT_TRUE(pause.lastFor(0ms).isReady());
}

TEST(ContinuousClock, NeverGoesBack)
{
    const auto earlier = ContinuousClock::now();
    EXPECT_GT(earlier, 0ms);
    EXPECT_GE(ContinuousClock::now(), earlier);
}

} // namespace
} // namespace mirel
