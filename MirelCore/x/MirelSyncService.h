#pragma once

#include "x/BookmarkSyncService.h"
#include "x/XDirectAPI.h"

namespace mirel {

// A whole sync: the walk of BookmarkSyncService, recorded in the sync history. The only writer of that
// history. Lives on the services thread.
class MirelSyncService
{
public:
    // `x` and `store` outlive the service.
    MirelSyncService(XDirectAPI& x, Serial<LocalLibraryStore>& store, Clock now = Instant::now);

    // Runs one sync and leaves one run in the history, whatever comes. `progress` (which may be empty) is
    // awaited after each page is recorded. Throws the first failure of the walk or of the history's
    // opening and closing writes; failures of the others are ignored.
    QCoro::Task<BookmarkSyncSummary> sync(SyncRun::Kind kind, BookmarkSyncMode mode,
                                          BookmarkSyncProgressHandler progress);

private:
    QCoro::Task<BookmarkSyncSummary> runAndComplete(qint64 runID, BookmarkSyncMode mode,
                                                    BookmarkSyncProgressHandler progress);
    QCoro::Task<> recordPage(qint64 runID, BookmarkSyncProgress page);
    QCoro::Task<> recordFailure(qint64 runID, std::exception_ptr failure);
    QCoro::Task<> appendEntry(qint64 runID, SyncLogEntry::Event event, QString message,
                              LocalLibraryStore::PageNumbers numbers = {});

    Serial<LocalLibraryStore>& m_store;
    BookmarkSyncService m_bookmarkSync;
};

} // namespace mirel
