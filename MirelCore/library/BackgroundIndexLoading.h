#pragma once

#include "library/IndexLoading.h"

#include <thread>

namespace mirel {

// Loads bookmarks for the index on another processor, through a connection of its own, while the calling
// thread does something else.
class BackgroundIndexLoading
{
public:
    // Begins to load all live bookmarks of the library at `databasePath`, which is in WAL mode. Throws
    // nothing: what keeps it from loading, a thread that cannot be started too, leaves it with nothing
    // loaded.
    BackgroundIndexLoading(const QString& databasePath, IndexDepth depth);

    // Ends like finish().
    ~BackgroundIndexLoading() = default;
    Q_DISABLE_COPY_MOVE(BackgroundIndexLoading)

    // Ends after the batch under way and hands over what was loaded until then, in no particular order: it
    // may be everything, and is nothing when the library cannot be read.
    [[nodiscard]] std::vector<IndexBatch> finish();

private:
    void load(const std::stop_token& stop);

    QString m_databasePath;
    IndexDepth m_depth;
    // Belongs to the thread until that has ended.
    std::vector<IndexBatch> m_batches;
    std::jthread m_thread;
};

} // namespace mirel
