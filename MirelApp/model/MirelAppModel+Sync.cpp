#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"

#include <QPromise>

namespace mirel {

namespace {

constexpr qint64 shownRuns = 20;
constexpr qint64 shownLogEntries = 1000;
constexpr qint64 secondsOfAnHour = 3600;

QString statusOf(const BookmarkSyncSummary& summary)
{
    const QString form =
        summary.mode == BookmarkSyncMode::full
            ? QStringLiteral("Full sync checked every page X made available: %1 bookmarks across %2 page(s), "
                             "%3 new.")
            : QStringLiteral("Quick sync checked %1 recent bookmarks across %2 page(s), %3 new.");
    return form.arg(summary.fetched).arg(summary.pages).arg(summary.created);
}

// A record as QML takes it, with its instants as dates.
template <typename Record>
QVariantMap variantOf(const Record& record,
                      std::initializer_list<std::pair<QString, std::optional<Instant>>> dates)
{
    QVariantMap map = toJSON(record).toVariant().toMap();
    for (const auto& [name, instant] : dates) {
        if (instant)
            map[name] = instant->toDateTime().toLocalTime();
    }
    return map;
}

} // namespace

QCoro::Task<> MirelAppModel::syncNow(std::optional<SyncRun::Kind> kind, bool fullScan)
{
    if (!m_services.syncService)
        co_return;
    const RunningCommand running(*this);
    m_isSyncing = true;
    m_syncProgress = BookmarkSyncProgress{};
    Q_EMIT syncChanged();
    setLastError({});
    const SyncRun::Kind effectiveKind =
        kind.value_or(m_counts.all == 0 ? SyncRun::Kind::initial : SyncRun::Kind::manual);
    const BookmarkSyncMode mode = fullScan ? BookmarkSyncMode::full : BookmarkSyncMode::incremental;
    const SyncCancellation cancellation;
    m_syncCancellation = cancellation;
    QPromise<void> ended;
    ended.start();
    m_syncEnded = ended.future();
    bool reloads = true;
    try {
        // The handler runs on the services thread. It is not awaited here: a busy screen must not slow
        // the sync, and the model outlives the service.
        const BookmarkSyncProgressHandler progress = [this](BookmarkSyncProgress page) -> QCoro::Task<> {
            QMetaObject::invokeMethod(
                this, [this, page] { showSyncProgress(page); }, Qt::QueuedConnection);
            co_return;
        };
        const auto sync = [effectiveKind, mode, progress, cancellation](MirelSyncService& service) {
            return service.sync(effectiveKind, mode, progress, cancellation);
        };
        m_lastSyncSummary = co_await m_services.syncService->call(sync);
        setStatusMessage(statusOf(*m_lastSyncSummary));
    } catch (...) {
        reloads = cancellation.isRequested();
        if (reloads)
            setStatusMessage(QStringLiteral("The sync was canceled. What had arrived is in the library."));
        else
            fail(std::current_exception());
    }
    if (reloads)
        co_await refreshLibrary();
    co_await refreshSyncRuns();
    if (reloads)
        co_await refreshOrganization();
    endSync();
    ended.finish();
    if (cancellation.isRequested())
        awaitLeftBehind(cancellation);
}

// What a canceled sync has asked X goes on behind it, and must not outlive the services.
QCoro::Task<> MirelAppModel::awaitLeftBehind(SyncCancellation cancellation)
{
    const RunningCommand running(*this);
    const auto wait = [cancellation](MirelSyncService&) { return cancellation.leftBehind(); };
    co_await m_services.syncService->call(wait);
}

QCoro::Task<> MirelAppModel::syncIfDue()
{
    if (m_isShuttingDown || m_isDeletingData || !m_preferences.automaticSync || !m_xConfigured || m_isSyncing)
        co_return;
    const std::optional<Instant> last = lastSyncAttempt();
    const auto interval = static_cast<double>(m_preferences.automaticSyncIntervalHours * secondsOfAnHour);
    if (last && m_now().secondsSince1970() - last->secondsSince1970() < interval)
        co_return;
    co_await syncNow(SyncRun::Kind::automatic, false);
}

// When the last run that has ended did so. One that an end of the process left unfinished counts for nothing.
std::optional<Instant> MirelAppModel::lastSyncAttempt() const
{
    for (const SyncRun& run : m_syncRuns) {
        if (run.status != SyncRun::Status::queued && run.status != SyncRun::Status::running)
            return run.completedAt.value_or(run.createdAt);
    }
    return std::nullopt;
}

// The rows arrive page by page.
void MirelAppModel::showSyncProgress(const BookmarkSyncProgress& progress)
{
    if (!m_isSyncing)
        return;
    m_syncProgress = progress;
    Q_EMIT syncChanged();
    if (progress.created > 0)
        refreshLibrary();
}

void MirelAppModel::endSync()
{
    m_isSyncing = false;
    m_syncProgress.reset();
    Q_EMIT syncChanged();
}

QCoro::Task<> MirelAppModel::refreshSyncRuns()
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    try {
        auto [runs, entries] = co_await m_services.store->call([](LocalLibraryStore& library) {
            return std::pair{library.syncRuns(shownRuns), library.syncLogEntries({}, shownLogEntries)};
        });
        m_syncRuns = std::move(runs);
        m_syncLogEntries = std::move(entries);
        Q_EMIT syncRunsChanged();
    } catch (...) {
        fail(std::current_exception());
    }
}

QVariant MirelAppModel::syncProgressVariant() const
{
    if (!m_syncProgress)
        return QVariant::fromValue(nullptr);
    return toJSON(*m_syncProgress).toVariant();
}

QVariantList MirelAppModel::syncRunsVariant() const
{
    QVariantList list;
    for (const SyncRun& run : m_syncRuns)
        list.append(variantOf(run, {{QStringLiteral("createdAt"), run.createdAt},
                                    {QStringLiteral("startedAt"), run.startedAt},
                                    {QStringLiteral("completedAt"), run.completedAt},
                                    {QStringLiteral("rateLimitResetAt"), run.rateLimitResetAt}}));
    return list;
}

QVariantList MirelAppModel::syncLogEntriesVariant() const
{
    QVariantList list;
    for (const SyncLogEntry& entry : m_syncLogEntries)
        list.append(variantOf(entry, {{QStringLiteral("createdAt"), entry.createdAt}}));
    return list;
}

} // namespace mirel
