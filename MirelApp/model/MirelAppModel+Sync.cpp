#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"

namespace mirel {

namespace {

constexpr qint64 shownRuns = 20;
constexpr qint64 shownLogEntries = 1000;

QString statusOf(const BookmarkSyncSummary& summary)
{
    const QString form =
        summary.mode == BookmarkSyncMode::full
            ? QStringLiteral("Full sync checked every page X made available: %1 bookmarks across %2 page(s), "
                             "%3 new.")
            : QStringLiteral("Quick sync checked %1 recent bookmarks across %2 page(s), %3 new.");
    return form.arg(summary.fetched).arg(summary.pages).arg(summary.created);
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
    co_await refreshOrganization();
    endSync();
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

} // namespace mirel
