#pragma once

#include "library/IndexLoading.h"

#include <atomic>
#include <mutex>
#include <thread>

namespace mirel {

// Loads many bookmarks into the index on all processors: the calling thread and helpers, which read through
// connections of their own.
class ParallelIndexLoading
{
public:
    // `connection` and `ids` outlive this object.
    ParallelIndexLoading(SQLiteConnection& connection, const QList<qint64>& ids, IndexDepth depth);

    // Hands over every batch, on the calling thread, in no particular order. Throws SQLiteStoreError.
    void run(const std::function<void(IndexBatch)>& add);

private:
    [[nodiscard]] std::vector<std::jthread> startHelpers();
    [[nodiscard]] int helperCount() const;
    // Absent when all have been taken.
    [[nodiscard]] std::optional<QList<qint64>> nextIDs();
    void help();
    void deliver(const std::function<void(IndexBatch)>& add);

    SQLiteConnection& m_connection;
    const QList<qint64>& m_ids;
    IndexDepth m_depth;
    std::atomic<qsizetype> m_taken = 0;
    // Guards what follows.
    std::mutex m_mutex;
    std::vector<IndexBatch> m_ready;
    std::exception_ptr m_failure;
};

} // namespace mirel
