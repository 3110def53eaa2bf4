#include "x/MirelSyncService.h"

#include "library/SQLiteStoreError.h"

namespace mirel {

QCoro::Task<Bookmark> MirelSyncService::refreshMetrics(qint64 bookmarkID)
{
    const Bookmark bookmark = co_await loadBookmark(bookmarkID);
    const PostMetrics metrics = co_await m_x.metrics(bookmark.tweetID);
    const auto keep = [bookmarkID, tweetID = bookmark.tweetID, metrics](LocalLibraryStore& library) {
        requireThere(library, bookmarkID, tweetID);
        library.updateMetrics(bookmarkID, metrics);
        return library.bookmark(bookmarkID);
    };
    co_return co_await m_store.call(keep);
}

QCoro::Task<> MirelSyncService::deleteBookmark(Bookmark bookmark, bool removeFromX)
{
    if (removeFromX)
        co_await m_x.deleteBookmark(bookmark.tweetID);
    const auto hide = [id = bookmark.id, tweetID = bookmark.tweetID](LocalLibraryStore& library) {
        if (isThere(library, id, tweetID))
            library.deleteBookmarkLocally(id);
    };
    co_await m_store.call(hide);
}

// Ids are given anew once all data was deleted, and X may answer after that.
bool MirelSyncService::isThere(LocalLibraryStore& library, qint64 id, const QString& tweetID)
{
    const auto stored = library.bookmark(tweetID);
    return stored && stored->id == id;
}

void MirelSyncService::requireThere(LocalLibraryStore& library, qint64 id, const QString& tweetID)
{
    if (!isThere(library, id, tweetID))
        throw SQLiteStoreError::bookmarkNotFound();
}

} // namespace mirel
