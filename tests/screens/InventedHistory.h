#pragma once

#include "testing/TemporaryLibrary.h"

namespace mirel::testing {

// A run as an earlier process left it; the newest is recorded last. Returns its id.
inline qint64 inventRun(const TemporaryLibrary& library, SyncRun::Status status,
                        const std::optional<QString>& error = {}, std::optional<Instant> resetAt = {})
{
    library.clock.advance(3'600);
    const auto opened = library.open();
    const qint64 id = opened->createSyncRun(SyncRun::Kind::automatic).id;
    opened->appendSyncLogEntry(
        id, SyncLogEntry::Event::started,
        QStringLiteral("Started incremental automatic bookmark sync with 50-item X pages."));
    if (status == SyncRun::Status::queued)
        return id;
    opened->appendSyncLogEntry(
        id, SyncLogEntry::Event::page, QStringLiteral("Bookmark page 1"),
        {.page = 1, .requested = 50, .received = 49, .reported = 48, .cumulative = 49, .hasNextPage = true});
    opened->updateSyncRun(id, SyncRun::Status::running, 1, 49, 7, 42);
    if (status == SyncRun::Status::running)
        return id;
    opened->updateSyncRun(id, status, 1, 49, 7, 42, error, resetAt);
    opened->appendSyncLogEntry(
        id, error ? SyncLogEntry::Event::failed : SyncLogEntry::Event::completed,
        error.value_or(QStringLiteral("Completed incremental sync of 49 bookmarks across 1 pages.")));
    return id;
}

// One run of each status, of which the newest met a rate limit that still holds.
inline void inventHistory(const TemporaryLibrary& library)
{
    inventRun(library, SyncRun::Status::queued);
    inventRun(library, SyncRun::Status::running);
    inventRun(library, SyncRun::Status::completed);
    inventRun(library, SyncRun::Status::failed,
              QStringLiteral("X returned HTTP 503: ") +
                  QStringLiteral("over capacity, try again later; ").repeated(12));
    const Instant reset = Instant::now().addingSeconds(900);
    inventRun(library, SyncRun::Status::rateLimited, QStringLiteral("X rate limit reached until later."),
              reset);
    // The second newest, to be looked at in full.
    library.connect()->execute(
        "UPDATE sync_runs SET rate_limit_reset_at = 1900000000 WHERE status = 'failed'");
}

} // namespace mirel::testing
