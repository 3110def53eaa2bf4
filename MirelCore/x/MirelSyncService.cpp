#include "x/MirelSyncService.h"

#include "x/XAPIError.h"

namespace mirel {

namespace {

constexpr qint64 runsSearchedForCounters = 100;

struct Outcome
{
    SyncRun::Status status = SyncRun::Status::failed;
    QString message;
    std::optional<Instant> rateLimitResetAt;
};

Outcome outcomeOf(const std::exception_ptr& failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const XAPIError& error) {
        if (error.errorCase() == XAPIError::Case::rateLimited)
            return {SyncRun::Status::rateLimited, error.description(), error.resetAt()};
        return {SyncRun::Status::failed, error.description(), {}};
    } catch (...) {
        return {SyncRun::Status::failed, describe(failure), {}};
    }
}

// The counters of the run's last page, or zeros when they cannot be read.
SyncRun recordedCounters(LocalLibraryStore& library, qint64 runID)
{
    try {
        for (const SyncRun& run : library.syncRuns(runsSearchedForCounters)) {
            if (run.id == runID)
                return run;
        }
    } catch (const Error&) {
    }
    return {};
}

} // namespace

MirelSyncService::MirelSyncService(XDirectAPI& x, Serial<LocalLibraryStore>& store, Clock now)
    : m_x(x)
    , m_store(store)
    , m_bookmarkSync(x, store, now)
    , m_now(std::move(now))
{
}

QCoro::Task<BookmarkSyncSummary> MirelSyncService::sync(SyncRun::Kind kind, BookmarkSyncMode mode,
                                                        BookmarkSyncProgressHandler progress,
                                                        SyncCancellation cancellation)
{
    const SyncRun run =
        co_await m_store.call([kind](LocalLibraryStore& library) { return library.createSyncRun(kind); });
    co_await appendEntry(run.id, SyncLogEntry::Event::started,
                         QStringLiteral("Started %1 %2 bookmark sync with 50-item X pages.")
                             .arg(rawValue(mode), rawValue(kind)));
    co_await m_store.call([id = run.id](LocalLibraryStore& library) {
        library.updateSyncRun(id, SyncRun::Status::running, 0, 0, 0, 0);
    });
    std::exception_ptr failure;
    try {
        co_return co_await runAndComplete(run.id, mode, std::move(progress), cancellation);
    } catch (...) {
        failure = std::current_exception();
    }
    if (cancellation.isRequested())
        failure = std::make_exception_ptr(SyncCanceled());
    if (!cancellation.isAbandoned())
        co_await recordFailure(run.id, failure);
    std::rethrow_exception(failure);
}

QCoro::Task<BookmarkSyncSummary> MirelSyncService::runAndComplete(qint64 runID, BookmarkSyncMode mode,
                                                                  BookmarkSyncProgressHandler progress,
                                                                  SyncCancellation cancellation)
{
    // The history first: what the caller shows is never ahead of it.
    const auto recordAndReport = [this, runID, progress](BookmarkSyncProgress page) -> QCoro::Task<> {
        co_await recordPage(runID, page);
        if (progress)
            co_await progress(page);
    };
    const BookmarkSyncSummary summary = co_await m_bookmarkSync.sync(mode, recordAndReport, cancellation);
    cancellation.throwIfRequested();
    co_await followBookmarks(summary, cancellation);
    cancellation.throwIfRequested();
    const auto complete = [runID, summary](LocalLibraryStore& library) {
        library.updateSyncRun(runID, SyncRun::Status::completed, summary.pages, summary.fetched,
                              summary.created, summary.updated);
    };
    co_await m_store.call(complete);
    co_await appendEntry(runID, SyncLogEntry::Event::completed,
                         QStringLiteral("Completed %1 sync of %2 bookmarks across %3 pages.")
                             .arg(rawValue(mode))
                             .arg(summary.fetched)
                             .arg(summary.pages));
    co_return summary;
}

// What a sync does once the bookmarks are in.
QCoro::Task<> MirelSyncService::followBookmarks(BookmarkSyncSummary summary, SyncCancellation cancellation)
{
    const AppPreferences preferences =
        co_await m_store.call([](LocalLibraryStore& library) { return library.preferences(); });
    const bool fetchesThreads = preferences.threadEnrichment == AppPreferences::ThreadEnrichment::automatic;
    switch (summary.mode) {
    case BookmarkSyncMode::incremental:
        if (fetchesThreads)
            co_await enrichThreads(summary.createdBookmarkIDs, cancellation);
        break;
    case BookmarkSyncMode::full:
        if (!preferences.ignoreXFolders)
            co_await syncFolders(cancellation);
        if (fetchesThreads)
            co_await enrichAllThreads(cancellation);
        break;
    }
    cancellation.throwIfRequested();
    co_await m_store.call([](LocalLibraryStore& library) { return library.runEnabledRules(); });
}

QCoro::Task<> MirelSyncService::recordPage(qint64 runID, BookmarkSyncProgress page)
{
    co_await m_store.call([runID, page](LocalLibraryStore& library) {
        try {
            library.updateSyncRun(runID, SyncRun::Status::running, page.pages, page.fetched, page.created,
                                  page.updated);
        } catch (const Error&) {
            // A lost line of history must not end the sync.
        }
    });
    co_await appendEntry(runID, SyncLogEntry::Event::page, QStringLiteral("Bookmark page %1").arg(page.pages),
                         {.page = page.pages,
                          .requested = page.requested,
                          .received = page.received,
                          .reported = page.reported,
                          .cumulative = page.fetched,
                          .hasNextPage = page.hasNextPage});
}

QCoro::Task<> MirelSyncService::recordFailure(qint64 runID, std::exception_ptr failure)
{
    const Outcome outcome = outcomeOf(failure);
    const auto record = [runID, outcome](LocalLibraryStore& library) {
        const SyncRun counters = recordedCounters(library, runID);
        try {
            library.updateSyncRun(runID, outcome.status, counters.pages, counters.fetched, counters.created,
                                  counters.updated, outcome.message, outcome.rateLimitResetAt);
        } catch (const Error&) {
            // The failure itself is what the caller hears of.
        }
    };
    co_await m_store.call(record);
    co_await appendEntry(runID, SyncLogEntry::Event::failed, outcome.message);
}

QCoro::Task<> MirelSyncService::appendEntry(qint64 runID, SyncLogEntry::Event event, QString message,
                                            LocalLibraryStore::PageNumbers numbers)
{
    const auto append = [runID, event, message, numbers](LocalLibraryStore& library) {
        try {
            library.appendSyncLogEntry(runID, event, message, numbers);
        } catch (const Error&) {
            // A lost line of history must not end the sync.
        }
    };
    co_await m_store.call(append);
}

} // namespace mirel
