#pragma once

#include "library/LocalLibraryStore.h"
#include "support/Serial.h"
#include "x/BookmarkSyncRecords.h"
#include "x/SyncCancellation.h"
#include "x/XBookmarksFetching.h"

#include <QCoro/QCoroTask>

#include <functional>

namespace mirel {

// Awaited after each page, before the walk goes on.
using BookmarkSyncProgressHandler = std::function<QCoro::Task<>(BookmarkSyncProgress)>;

// Walks the user's bookmarks on X, newest first, and stores each as soon as it arrives. A walk that fails
// half-way leaves all that it had fetched in the library. Holds no state between walks.
class BookmarkSyncService
{
public:
    static constexpr qint64 pageSize = 50;
    static constexpr qint64 mostPages = 1000;

    // `x` and `store` outlive the service. `now` is called on the thread of the store.
    BookmarkSyncService(XBookmarksFetching& x, Serial<LocalLibraryStore>& store, Clock now);

    // Throws BookmarkSyncError, or what X, the store or `progress` (which may be empty) throw, unchanged.
    // Nothing is retried. Requesting `cancellation` ends it with SyncCanceled before the next page is stored.
    QCoro::Task<BookmarkSyncSummary> sync(BookmarkSyncMode mode, BookmarkSyncProgressHandler progress,
                                          SyncCancellation cancellation = {});

private:
    struct StoredPage
    {
        QList<qint64> createdBookmarkIDs;
        qint64 updated = 0;
    };

    [[nodiscard]] QCoro::Task<StoredPage> store(QList<SyncedBookmark> items);

    XBookmarksFetching& m_x;
    Serial<LocalLibraryStore>& m_store;
    Clock m_now;
};

} // namespace mirel
