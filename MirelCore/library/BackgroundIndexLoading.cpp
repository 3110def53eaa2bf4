#include "library/BackgroundIndexLoading.h"

#include "library/IndexTextBudget.h"
#include "support/Error.h"

#include <system_error>

namespace mirel {

namespace {

// Few enough that ending between two batches is soon.
constexpr qsizetype batchSize = 200;

QList<qint64> listedBookmarks(SQLiteConnection& connection)
{
    QList<qint64> ids;
    for (const IndexEntry& entry : loadOutlines(connection)) {
        if (entry.authorID)
            ids.append(entry.id);
    }
    return ids;
}

} // namespace

BackgroundIndexLoading::BackgroundIndexLoading(const QString& databasePath, IndexDepth depth)
    : m_databasePath(databasePath)
    , m_depth(depth)
{
    try {
        m_thread = std::jthread([this](const std::stop_token& stop) { load(stop); });
    } catch (const std::system_error&) {
        // Whoever needs the bookmarks reads them without help.
    }
}

std::vector<IndexBatch> BackgroundIndexLoading::finish()
{
    m_thread.request_stop();
    if (m_thread.joinable())
        m_thread.join();
    return std::exchange(m_batches, {});
}

void BackgroundIndexLoading::load(const std::stop_token& stop)
{
    try {
        SQLiteConnection connection(m_databasePath);
        const QList<qint64> ids = listedBookmarks(connection);
        IndexTextBudget budget(ids.size());
        for (qsizetype begin = 0; begin < ids.size() && !stop.stop_requested(); begin += batchSize) {
            IndexBatch batch = loadIndexBatch(connection, ids.mid(begin, batchSize), m_depth);
            for (IndexEntry& entry : batch.entries) {
                budget.limit(entry);
                budget.add(entry);
            }
            m_batches.push_back(std::move(batch));
        }
    } catch (const Error&) {
        // Whoever needs the rest reads it again, and reports what keeps it from being read.
    }
}

} // namespace mirel
