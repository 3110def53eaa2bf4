#include "testing/Printing.h"

#include "model/ModelTestBench.h"
#include "testing/Eventually.h"

#include <QSemaphore>

namespace mirel {
namespace {

using testing::HeldLibrary;

// What the screens may ask for while something else goes on.
class SyncGuards : public testing::ModelTestBench
{
protected:
    void waitUntilIdle() const
    {
        ASSERT_TRUE(testing::eventually([this] { return !model->isSyncing(); }));
    }
};

TEST_F(SyncGuards, ASyncThatIsAskedForDuringAnotherDoesNotBegin)
{
    startWith(3);
    QSemaphore isAsked;
    QSemaphore goesOn;
    x->answer = [&](int) {
        isAsked.release();
        EXPECT_TRUE(goesOn.tryAcquire(1, 60'000));
        return XBookmarkPage{};
    };
    model->requestSync(false);
    ASSERT_TRUE(testing::eventually([&] { return isAsked.tryAcquire(1); }));
    model->requestSync(true);
    goesOn.release(2);
    waitUntilIdle();
    EXPECT_EQ(library.open()->syncRuns(10).size(), 1);
    EXPECT_EQ(x->calls.size(), 1U);
}

TEST_F(SyncGuards, NoSyncBeginsWhileEverythingIsDeleted)
{
    startWith(3);
    HeldLibrary held(*model);
    auto deleting = model->deleteAllData();
    model->requestSync(false);
    blockOn(model->syncIfDue());
    EXPECT_FALSE(model->isSyncing());
    held.release();
    blockOn(std::move(deleting));
    EXPECT_TRUE(library.open()->syncRuns(10).isEmpty());

    model->requestSync(false);
    EXPECT_TRUE(model->isSyncing()) << "afterwards one may";
    waitUntilIdle();
}

TEST_F(SyncGuards, ADeletionThatFailsLeavesSyncsAlone)
{
    startWith(3);
    library.connect()->execute("CREATE TRIGGER refusing BEFORE DELETE ON bookmarks "
                               "BEGIN SELECT RAISE(ABORT, 'no'); END");
    blockOn(model->deleteAllData());
    ASSERT_TRUE(model->lastError());
    model->requestSync(false);
    EXPECT_TRUE(model->isSyncing());
    waitUntilIdle();
}

} // namespace
} // namespace mirel
