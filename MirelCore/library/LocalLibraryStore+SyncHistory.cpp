#include "library/LocalLibraryStore.h"

#include "library/RowDecoding.h"
#include "library/SQLiteStoreError.h"

namespace mirel {

namespace {

constexpr qint64 mostLogEntries = 5000;

bool isFinal(SyncRun::Status status)
{
    return status == SyncRun::Status::completed || status == SyncRun::Status::rateLimited ||
           status == SyncRun::Status::failed;
}

} // namespace

SyncRun LocalLibraryStore::createSyncRun(SyncRun::Kind kind)
{
    m_database.run("INSERT INTO sync_runs (kind, status, created_at) VALUES (?, ?, ?)",
                   {rawValue(kind), rawValue(SyncRun::Status::queued), m_now()});
    return syncRun(m_database.lastInsertedRowID());
}

void LocalLibraryStore::updateSyncRun(qint64 id, SyncRun::Status status, qint64 pages, qint64 fetched,
                                      qint64 created, qint64 updated,
                                      const std::optional<QString>& errorMessage,
                                      std::optional<Instant> rateLimitResetAt)
{
    const Instant now = m_now();
    m_database.run("UPDATE sync_runs SET status = ?, pages = ?, fetched = ?, created = ?, updated = ?, "
                   "error_message = ?, rate_limit_reset_at = ?, "
                   "started_at = CASE WHEN ? = 'running' THEN COALESCE(started_at, ?) ELSE started_at END, "
                   "completed_at = CASE WHEN ? = 1 THEN ? ELSE completed_at END WHERE id = ?",
                   {rawValue(status), pages, fetched, created, updated, errorMessage, rateLimitResetAt,
                    rawValue(status), now, isFinal(status), now, id});
}

SyncLogEntry LocalLibraryStore::appendSyncLogEntry(qint64 runID, SyncLogEntry::Event event,
                                                   const QString& message, const PageNumbers& numbers)
{
    m_database.run("INSERT INTO sync_log_entries (sync_run_id, event, message, page, requested, received, "
                   "reported, cumulative, has_next_page, created_at) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                   {runID, rawValue(event), message, numbers.page, numbers.requested, numbers.received,
                    numbers.reported, numbers.cumulative, numbers.hasNextPage, m_now()});
    return syncLogEntry(m_database.lastInsertedRowID());
}

QList<SyncRun> LocalLibraryStore::syncRuns(qint64 limit)
{
    QList<SyncRun> runs;
    for (const SQLiteRow& row :
         m_database.rows("SELECT * FROM sync_runs ORDER BY created_at DESC, id DESC LIMIT ?", {limit}))
        runs.append(decodeSyncRun(row));
    return runs;
}

QList<SyncLogEntry> LocalLibraryStore::syncLogEntries(std::optional<qint64> runID, qint64 limit)
{
    const qint64 clamped = std::clamp<qint64>(limit, 1, mostLogEntries);
    const auto rows =
        runID ? m_database.rows("SELECT * FROM sync_log_entries WHERE sync_run_id = ? "
                                "ORDER BY created_at, id LIMIT ?",
                                {*runID, clamped})
              : m_database.rows("SELECT * FROM sync_log_entries ORDER BY created_at DESC, id DESC LIMIT ?",
                                {clamped});
    QList<SyncLogEntry> entries;
    for (const SQLiteRow& row : rows)
        entries.append(decodeSyncLogEntry(row));
    return entries;
}

SyncRun LocalLibraryStore::syncRun(qint64 id)
{
    const auto row = m_database.firstRow("SELECT * FROM sync_runs WHERE id = ?", {id});
    if (!row) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The sync run no longer exists."));
    }
    return decodeSyncRun(*row);
}

SyncLogEntry LocalLibraryStore::syncLogEntry(qint64 id)
{
    const auto row = m_database.firstRow("SELECT * FROM sync_log_entries WHERE id = ?", {id});
    if (!row) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The sync diagnostic entry no longer exists."));
    }
    return decodeSyncLogEntry(*row);
}

} // namespace mirel
