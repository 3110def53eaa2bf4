#include "x/MirelSyncService.h"

namespace mirel {

namespace {

constexpr qint64 bookmarksAtOnce = 500;

bool mayHaveThread(const Bookmark& bookmark)
{
    return bookmark.thread.isEmpty() && bookmark.conversationID;
}

} // namespace

QCoro::Task<Bookmark> MirelSyncService::enrichThread(qint64 bookmarkID)
{
    return enrichThread(bookmarkID, SyncCancellation());
}

QCoro::Task<Bookmark> MirelSyncService::enrichThread(qint64 bookmarkID, SyncCancellation cancellation)
{
    const Bookmark bookmark = co_await loadBookmark(bookmarkID);
    if (bookmark.threadEnrichedAt)
        co_return bookmark;
    const QString conversationID = bookmark.conversationID.value_or(QString());
    QList<ThreadPost> posts;
    if (!conversationID.isEmpty())
        posts = co_await untilCanceled(cancellation, m_x.conversation(conversationID, bookmark.author.xID));
    const auto keep = [bookmarkID, tweetID = bookmark.tweetID, posts,
                       now = m_now](LocalLibraryStore& library) {
        requireThere(library, bookmarkID, tweetID);
        // A single post is the bookmark itself.
        if (posts.size() < 2)
            library.markThreadEnriched(bookmarkID, now());
        else
            library.replaceThread(bookmarkID, posts);
        return library.bookmark(bookmarkID);
    };
    co_return co_await m_store.call(keep);
}

QCoro::Task<> MirelSyncService::enrichThreads(QList<qint64> bookmarkIDs, SyncCancellation cancellation)
{
    for (const qint64 id : std::as_const(bookmarkIDs)) {
        cancellation.throwIfRequested();
        const Bookmark bookmark = co_await loadBookmark(id);
        if (mayHaveThread(bookmark))
            co_await enrichThread(id, cancellation);
    }
}

QCoro::Task<> MirelSyncService::enrichAllThreads(SyncCancellation cancellation)
{
    for (qint64 offset = 0;;) {
        cancellation.throwIfRequested();
        const QList<Bookmark> bookmarks = co_await m_store.call([offset](LocalLibraryStore& library) {
            return library.listBookmarks(LibraryFilter::all, bookmarksAtOnce, offset, LibrarySort::newest);
        });
        for (const Bookmark& bookmark : bookmarks) {
            cancellation.throwIfRequested();
            if (mayHaveThread(bookmark))
                co_await enrichThread(bookmark.id, cancellation);
        }
        if (bookmarks.size() < bookmarksAtOnce)
            co_return;
        offset += bookmarks.size();
    }
}

QCoro::Task<Bookmark> MirelSyncService::loadBookmark(qint64 id)
{
    return m_store.call([id](LocalLibraryStore& library) { return library.bookmark(id); });
}

} // namespace mirel
