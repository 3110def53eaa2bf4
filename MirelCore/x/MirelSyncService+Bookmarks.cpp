#include "x/MirelSyncService.h"

namespace mirel {

QCoro::Task<Bookmark> MirelSyncService::refreshMetrics(qint64 bookmarkID)
{
    const Bookmark bookmark = co_await loadBookmark(bookmarkID);
    const PostMetrics metrics = co_await m_x.metrics(bookmark.tweetID);
    const auto keep = [bookmarkID, metrics](LocalLibraryStore& library) {
        library.updateMetrics(bookmarkID, metrics);
        return library.bookmark(bookmarkID);
    };
    co_return co_await m_store.call(keep);
}

QCoro::Task<> MirelSyncService::deleteBookmark(Bookmark bookmark, bool removeFromX)
{
    if (removeFromX)
        co_await m_x.deleteBookmark(bookmark.tweetID);
    co_await m_store.call(
        [id = bookmark.id](LocalLibraryStore& library) { library.deleteBookmarkLocally(id); });
}

} // namespace mirel
