#pragma once

#include "library/SearchLoading.h"

#include <atomic>
#include <mutex>

namespace mirel {

// Loads many bookmarks for the search on all processors: the calling thread and helpers, which read through
// connections of their own.
class ParallelSearchLoading
{
public:
    // `connection` and `ids` outlive this object.
    ParallelSearchLoading(SQLiteConnection& connection, const QList<qint64>& ids,
                          SearchPresentations presentations);

    // Hands over every batch, on the calling thread, in no particular order. Throws SQLiteStoreError.
    void run(const std::function<void(SearchBatch)>& add);

private:
    [[nodiscard]] int helperCount() const;
    // Absent when all have been taken.
    [[nodiscard]] std::optional<QList<qint64>> nextIDs();
    void help();
    void deliver(const std::function<void(SearchBatch)>& add);

    SQLiteConnection& m_connection;
    const QList<qint64>& m_ids;
    SearchPresentations m_presentations;
    std::atomic<qsizetype> m_taken = 0;
    // Guards what follows.
    std::mutex m_mutex;
    std::vector<SearchBatch> m_ready;
    std::exception_ptr m_failure;
};

} // namespace mirel
