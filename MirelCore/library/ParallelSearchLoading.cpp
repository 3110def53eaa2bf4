#include "library/ParallelSearchLoading.h"

#include <sqlite3.h>

#include <thread>

namespace mirel {

namespace {

constexpr qsizetype batchSize = 500;
// A helper costs a connection, which fewer batches are not worth.
constexpr qsizetype batchesPerHelper = 4;

QString fileOf(const SQLiteConnection& connection)
{
    return QString::fromUtf8(sqlite3_db_filename(connection.handle(), "main"));
}

} // namespace

ParallelSearchLoading::ParallelSearchLoading(SQLiteConnection& connection, const QList<qint64>& ids,
                                             SearchPresentations presentations)
    : m_connection(connection)
    , m_ids(ids)
    , m_presentations(presentations)
{
}

void ParallelSearchLoading::run(const std::function<void(SearchBatch)>& add)
{
    {
        std::vector<std::jthread> helpers;
        for (int i = 0; i < helperCount(); ++i)
            helpers.emplace_back([this] { help(); });
        try {
            while (const auto ids = nextIDs()) {
                add(loadSearchBatch(m_connection, *ids, m_presentations));
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

int ParallelSearchLoading::helperCount() const
{
    const qsizetype useful = m_ids.size() / (batchSize * batchesPerHelper);
    const qsizetype possible = QThread::idealThreadCount() - 1;
    return static_cast<int>(std::min(useful, possible));
}

std::optional<QList<qint64>> ParallelSearchLoading::nextIDs()
{
    const qsizetype begin = m_taken.fetch_add(batchSize);
    if (begin >= m_ids.size())
        return std::nullopt;
    return m_ids.mid(begin, batchSize);
}

void ParallelSearchLoading::help()
{
    try {
        SQLiteConnection connection(fileOf(m_connection));
        while (const auto ids = nextIDs()) {
            SearchBatch batch = loadSearchBatch(connection, *ids, m_presentations);
            const std::lock_guard lock(m_mutex);
            m_ready.push_back(std::move(batch));
        }
    } catch (...) {
        m_taken = m_ids.size();
        const std::lock_guard lock(m_mutex);
        m_failure = std::current_exception();
    }
}

void ParallelSearchLoading::deliver(const std::function<void(SearchBatch)>& add)
{
    std::vector<SearchBatch> ready;
    {
        const std::lock_guard lock(m_mutex);
        ready.swap(m_ready);
    }
    for (SearchBatch& batch : ready)
        add(std::move(batch));
}

} // namespace mirel
