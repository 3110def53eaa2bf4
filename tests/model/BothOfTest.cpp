#include "testing/Printing.h"

#include "model/BothOf.h"
#include "support/BlockOn.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

#include <gtest/gtest.h>

#include <stdexcept>

namespace mirel {
namespace {

// A result that comes when the test lets it come.
struct Later
{
    Later() { promise.start(); }

    void succeed(int result)
    {
        promise.addResult(result);
        promise.finish();
    }
    void fail(const char* reason)
    {
        promise.setException(std::make_exception_ptr(std::runtime_error(reason)));
        promise.finish();
    }
    QCoro::Task<int> task()
    {
        QFuture<int> future = promise.future();
        co_return co_await future;
    }

    QPromise<int> promise;
};

class BothOf : public ::testing::Test
{
protected:
    // What was thrown; empty when nothing was.
    std::string failure()
    {
        try {
            blockOn(bothOf(first.task(), second.task()));
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return {};
    }

    Later first;
    Later second;
};

TEST_F(BothOf, GivesBothResultsInWhateverOrderTheyCome)
{
    auto both = bothOf(first.task(), second.task());
    second.succeed(2);
    EXPECT_FALSE(both.isReady());
    first.succeed(1);
    EXPECT_EQ(blockOn(std::move(both)), std::pair(1, 2));
}

TEST_F(BothOf, WaitsForTheOtherOneWhenOneFails)
{
    auto both = bothOf(first.task(), second.task());
    first.fail("the first");
    QCoreApplication::processEvents();
    EXPECT_FALSE(both.isReady());
    second.succeed(2);
    EXPECT_THROW(blockOn(std::move(both)), std::runtime_error);
}

TEST_F(BothOf, ThrowsTheFailureOfTheSecond)
{
    first.succeed(1);
    second.fail("the second");
    EXPECT_EQ(failure(), "the second");
}

TEST_F(BothOf, OfTwoFailuresThrowsTheFirst)
{
    second.fail("the second");
    first.fail("the first");
    EXPECT_EQ(failure(), "the first");
}

} // namespace
} // namespace mirel
