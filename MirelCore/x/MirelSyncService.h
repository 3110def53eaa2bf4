#pragma once

#include "x/BookmarkSyncService.h"
#include "x/XDirectAPI.h"

namespace mirel {

// All that reaches X on behalf of bookmarks. A sync is the walk of BookmarkSyncService with X's folders, the
// authors' threads and the user's rules behind it, recorded in the sync history, whose only writer this is.
// Lives on the services thread.
class MirelSyncService
{
public:
    // `x` and `store` outlive the service. `now` is called on the thread of the store.
    MirelSyncService(XDirectAPI& x, Serial<LocalLibraryStore>& store, Clock now = Instant::now);

    // Runs one sync and leaves one run in the history, whatever comes. `progress` (which may be empty) is
    // awaited after each page is recorded. Throws the first failure of the sync or of the history's
    // opening and closing writes; failures of the others are ignored. What was stored before it stays.
    //
    // Requesting `cancellation` ends the sync at once, or after what it is just storing, and SyncCanceled is
    // recorded and thrown then, also when what ended it was a request that failed meanwhile. Abandoning it
    // records nothing: the run stays `running`.
    QCoro::Task<BookmarkSyncSummary> sync(SyncRun::Kind kind, BookmarkSyncMode mode,
                                          BookmarkSyncProgressHandler progress,
                                          SyncCancellation cancellation = {});

    // Stores the author's own thread around a bookmark and returns the bookmark. A thread is fetched once;
    // afterwards there is no request. Throws what X or the store throws, and the thread can be asked for
    // again then, as when the bookmark has gone meanwhile. X tells of the last days alone.
    QCoro::Task<Bookmark> enrichThread(qint64 bookmarkID);

    // Stores the present counters of a post and returns the bookmark. Throws what X or the store throws.
    QCoro::Task<Bookmark> refreshMetrics(qint64 bookmarkID);

    // Hides a bookmark in the library, if it is still there, after X has removed it from the user's bookmarks
    // if `removeFromX`. Throws what X or the store throws; when X refuses, the bookmark stays here too.
    QCoro::Task<> deleteBookmark(Bookmark bookmark, bool removeFromX);

private:
    QCoro::Task<BookmarkSyncSummary> runAndComplete(qint64 runID, BookmarkSyncMode mode,
                                                    BookmarkSyncProgressHandler progress,
                                                    SyncCancellation cancellation);
    QCoro::Task<> followBookmarks(BookmarkSyncSummary summary, SyncCancellation cancellation);

    QCoro::Task<> recordPage(qint64 runID, BookmarkSyncProgress page);
    QCoro::Task<> recordFailure(qint64 runID, std::exception_ptr failure);
    QCoro::Task<> appendEntry(qint64 runID, SyncLogEntry::Event event, QString message,
                              LocalLibraryStore::PageNumbers numbers = {});

    QCoro::Task<> syncFolders(SyncCancellation cancellation);
    QCoro::Task<> syncFolderPosts(Folder folder, QString remoteID, SyncCancellation cancellation);

    QCoro::Task<Bookmark> enrichThread(qint64 bookmarkID, SyncCancellation cancellation);
    QCoro::Task<> enrichThreads(QList<qint64> bookmarkIDs, SyncCancellation cancellation);
    QCoro::Task<> enrichAllThreads(SyncCancellation cancellation);
    QCoro::Task<Bookmark> loadBookmark(qint64 id);
    static bool isThere(LocalLibraryStore& library, qint64 id, const QString& tweetID);
    static void requireThere(LocalLibraryStore& library, qint64 id, const QString& tweetID);

    XDirectAPI& m_x;
    Serial<LocalLibraryStore>& m_store;
    BookmarkSyncService m_bookmarkSync;
    Clock m_now;
};

} // namespace mirel
