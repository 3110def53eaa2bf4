#include "library/ParallelIndexLoading.h"

#include <system_error>

namespace mirel {

namespace {

constexpr qsizetype batchSize = 500;
// A helper costs a connection, which fewer batches are not worth.
constexpr qsizetype batchesPerHelper = 4;

} // namespace

ParallelIndexLoading::ParallelIndexLoading(SQLiteConnection& connection, const QList<qint64>& ids,
                                           IndexDepth depth)
    : m_connection(connection)
    , m_ids(ids)
    , m_depth(depth)
{
}

void ParallelIndexLoading::run(const std::function<void(IndexBatch)>& add)
{
    {
        const std::vector<std::jthread> helpers = startHelpers();
        try {
            while (const auto ids = nextIDs()) {
                add(loadIndexBatch(m_connection, *ids, m_depth));
                deliver(add);
            }
        } catch (...) {
            m_taken = m_ids.size();
            throw;
        }
    }
    if (m_failure)
        std::rethrow_exception(m_failure);
    deliver(add);
}

std::vector<std::jthread> ParallelIndexLoading::startHelpers()
{
    std::vector<std::jthread> helpers;
    try {
        for (int i = 0; i < helperCount(); ++i)
            helpers.emplace_back([this] { help(); });
    } catch (const std::system_error&) {
        // The others do the work of a thread that cannot be started.
    }
    return helpers;
}

int ParallelIndexLoading::helperCount() const
{
    const qsizetype useful = m_ids.size() / (batchSize * batchesPerHelper);
    const qsizetype possible = QThread::idealThreadCount() - 1;
    return static_cast<int>(std::min(useful, possible));
}

std::optional<QList<qint64>> ParallelIndexLoading::nextIDs()
{
    const qsizetype begin = m_taken.fetch_add(batchSize);
    if (begin >= m_ids.size())
        return std::nullopt;
    return m_ids.mid(begin, batchSize);
}

void ParallelIndexLoading::help()
{
    try {
        SQLiteConnection connection(m_connection.path());
        while (const auto ids = nextIDs()) {
            IndexBatch batch = loadIndexBatch(connection, *ids, m_depth);
            const std::lock_guard lock(m_mutex);
            m_ready.push_back(std::move(batch));
        }
    } catch (...) {
        m_taken = m_ids.size();
        const std::lock_guard lock(m_mutex);
        m_failure = std::current_exception();
    }
}

void ParallelIndexLoading::deliver(const std::function<void(IndexBatch)>& add)
{
    std::vector<IndexBatch> ready;
    {
        const std::lock_guard lock(m_mutex);
        ready.swap(m_ready);
    }
    for (IndexBatch& batch : ready)
        add(std::move(batch));
}

} // namespace mirel
