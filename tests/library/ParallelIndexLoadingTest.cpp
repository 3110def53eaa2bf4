#include "testing/Printing.h"

#include "library/ConnectionWatcher.h"
#include "library/LibraryFilling.h"
#include "library/ParallelIndexLoading.h"
#include "library/SQLiteStoreError.h"
#include "testing/FailingThreads.h"
#include "testing/TemporaryLibrary.h"

#include <QThread>

#include <gtest/gtest.h>

#include <numeric>

namespace mirel {
namespace {

using testing::ConnectionWatcher;

class ParallelLoading : public ::testing::Test
{
protected:
    void fill(int count)
    {
        testing::addBookmarks(connection, count);
        ids.resize(count);
        std::iota(ids.begin(), ids.end(), 1);
    }

    // The ids of what is handed over.
    QList<qint64> load(IndexDepth depth)
    {
        QList<qint64> loaded;
        ParallelIndexLoading(connection, ids, depth).run([&](const IndexBatch& batch) {
            EXPECT_EQ(QThread::currentThread(), mainThread);
            for (const IndexEntry& entry : batch.entries) {
                EXPECT_EQ(entry.depth, depth);
                EXPECT_FALSE(entry.failure);
                EXPECT_TRUE(entry.text.contains("post " + QByteArray::number(entry.id) + ' '));
                loaded.append(entry.id);
            }
        });
        std::sort(loaded.begin(), loaded.end());
        return loaded;
    }

    // Of one processor nothing is left for helpers.
    static int helpersFor(int bookmarks)
    {
        return std::min(bookmarks / 2'000, QThread::idealThreadCount() - 1);
    }

    QThread* const mainThread = QThread::currentThread();
    testing::TemporaryLibrary library;
    SQLiteConnection connection{(static_cast<void>(library.open()), library.path())};
    QList<qint64> ids;
};

TEST_F(ParallelLoading, OfNothingHandsOverNothing)
{
    EXPECT_TRUE(load(IndexDepth::texts).isEmpty());
}

TEST_F(ParallelLoading, OfFewBookmarksOpensNoFurtherConnection)
{
    fill(1'999);
    const ConnectionWatcher watcher;
    EXPECT_EQ(load(IndexDepth::texts), ids);
    EXPECT_EQ(ConnectionWatcher::opened, 0);
}

TEST_F(ParallelLoading, OfManyBookmarksLosesNoneAndRepeatsNone)
{
    fill(4'321);
    const ConnectionWatcher watcher;
    EXPECT_EQ(load(IndexDepth::texts), ids);
    EXPECT_EQ(load(IndexDepth::presentations), ids);
    EXPECT_EQ(ConnectionWatcher::opened, 2 * helpersFor(4'321));
}

TEST_F(ParallelLoading, LeavesOutWhatIsDeletedOrGone)
{
    fill(2'600);
    connection.execute(
        "UPDATE bookmarks SET deleted_at = 1 WHERE id = 7; DELETE FROM bookmarks WHERE id = 2000");
    const QList<qint64> loaded = load(IndexDepth::texts);
    EXPECT_EQ(loaded.size(), 2'598);
    EXPECT_FALSE(loaded.contains(7));
    EXPECT_FALSE(loaded.contains(2'000));
}

TEST_F(ParallelLoading, ReportsTheFailureOfAHelper)
{
    fill(2'600);
    if (helpersFor(2'600) == 0)
        GTEST_SKIP() << "this machine has one processor";
    const ConnectionWatcher watcher;
    ConnectionWatcher::refuses = true;
    EXPECT_THROW(load(IndexDepth::texts), SQLiteStoreError);
    ConnectionWatcher::refuses = false;
    EXPECT_EQ(load(IndexDepth::texts), ids);
}

TEST_F(ParallelLoading, DoesWithoutAHelperThatCannotBeStarted)
{
    fill(2'600);
    if (helpersFor(2'600) == 0)
        GTEST_SKIP() << "this machine has one processor";
    testing::failingThreads().arm(0);
    EXPECT_EQ(load(IndexDepth::texts), ids);
    EXPECT_TRUE(testing::failingThreads().fired());
}

TEST_F(ParallelLoading, ReportsItsOwnFailureAndEndsItsHelpers)
{
    fill(4'100);
    const auto fail = [](const IndexBatch&) { throw std::runtime_error("no more"); };
    EXPECT_THROW(ParallelIndexLoading(connection, ids, IndexDepth::texts).run(fail), std::runtime_error);
    EXPECT_EQ(load(IndexDepth::texts), ids);
}

} // namespace
} // namespace mirel
