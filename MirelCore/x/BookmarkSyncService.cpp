#include "x/BookmarkSyncService.h"

#include "x/PageWalk.h"

namespace mirel {

BookmarkSyncService::BookmarkSyncService(XBookmarksFetching& x, Serial<LocalLibraryStore>& store, Clock now)
    : m_x(x)
    , m_store(store)
    , m_now(std::move(now))
{
}

QCoro::Task<BookmarkSyncSummary> BookmarkSyncService::sync(BookmarkSyncMode mode,
                                                           BookmarkSyncProgressHandler progress,
                                                           SyncCancellation cancellation)
{
    BookmarkSyncSummary summary{.mode = mode};
    PageWalk walk(mostPages);
    for (;;) {
        cancellation.throwIfRequested();
        const XBookmarkPage page =
            co_await untilCanceled(cancellation, m_x.bookmarks(walk.token(), pageSize));
        const StoredPage stored = co_await store(page.items);
        ++summary.pages;
        summary.fetched += page.items.size();
        summary.created += stored.createdBookmarkIDs.size();
        summary.updated += stored.updated;
        summary.createdBookmarkIDs += stored.createdBookmarkIDs;
        const bool stops = mode == BookmarkSyncMode::incremental && stored.createdBookmarkIDs.isEmpty();
        if (progress) {
            co_await progress({
                .pages = summary.pages,
                .fetched = summary.fetched,
                .created = summary.created,
                .updated = summary.updated,
                .requested = pageSize,
                .received = page.items.size(),
                .reported = page.resultCount,
                .hasNextPage = page.nextToken && !stops,
            });
        }
        if (stops || !walk.advance(page.nextToken)) {
            summary.reachedRemoteEnd = !page.nextToken;
            summary.completedAt = m_now();
            co_return summary;
        }
    }
}

// A page is handed over in one call, each post in a transaction of its own: a failure loses nothing of what
// came before it.
QCoro::Task<BookmarkSyncService::StoredPage> BookmarkSyncService::store(QList<SyncedBookmark> items)
{
    const auto storeEach = [items = std::move(items), now = m_now](LocalLibraryStore& library) {
        StoredPage stored;
        for (const SyncedBookmark& item : items) {
            const bool isNew = !library.bookmark(item.tweetID);
            const Bookmark bookmark = library.upsertFromX(item, now());
            if (isNew)
                stored.createdBookmarkIDs.append(bookmark.id);
            else
                ++stored.updated;
        }
        return stored;
    };
    return m_store.call(storeEach);
}

} // namespace mirel
