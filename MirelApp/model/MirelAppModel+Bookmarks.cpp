#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"

namespace mirel {

QCoro::Task<> MirelAppModel::refreshMetrics(qint64 bookmarkID)
{
    if (!m_services.syncService)
        co_return;
    const RunningCommand running(*this);
    const QUuid generation = m_libraryGeneration;
    setWorking(true);
    try {
        co_await m_services.syncService->call(
            [bookmarkID](MirelSyncService& service) { return service.refreshMetrics(bookmarkID); });
        co_await refreshLibrary();
        setWorking(false);
    } catch (...) {
        failUnlessDeleted(generation, std::current_exception());
    }
}

QCoro::Task<> MirelAppModel::enrichThread(qint64 bookmarkID)
{
    if (!m_services.syncService)
        co_return;
    const RunningCommand running(*this);
    const QUuid generation = m_libraryGeneration;
    setWorking(true);
    m_enrichingThreadBookmarkIDs.insert(bookmarkID);
    Q_EMIT enrichingThreadsChanged();
    try {
        co_await m_services.syncService->call(
            [bookmarkID](MirelSyncService& service) { return service.enrichThread(bookmarkID); });
        co_await refreshBookmarkPresentation(bookmarkID);
        co_await loadReaderContext(bookmarkID);
        setWorking(false);
    } catch (...) {
        failUnlessDeleted(generation, std::current_exception());
    }
    m_enrichingThreadBookmarkIDs.remove(bookmarkID);
    Q_EMIT enrichingThreadsChanged();
}

QCoro::Task<> MirelAppModel::deleteBookmark(Bookmark bookmark, std::optional<bool> removeFromX)
{
    if (!m_services.syncService)
        co_return;
    const RunningCommand running(*this);
    const QUuid generation = m_libraryGeneration;
    const bool fromX = removeFromX.value_or(m_preferences.deleteFromX);
    try {
        const auto remove = [bookmark, fromX](MirelSyncService& service) {
            return service.deleteBookmark(bookmark, fromX);
        };
        co_await m_services.syncService->call(remove);
        co_await refreshLibrary();
    } catch (...) {
        failUnlessDeleted(generation, std::current_exception());
    }
}

// Nothing is told of a post that was deleted with all others while X was asked about it.
void MirelAppModel::failUnlessDeleted(const QUuid& generation, const std::exception_ptr& failure)
{
    if (generation == m_libraryGeneration)
        fail(failure);
    else
        setWorking(false);
}

QCoro::Task<> MirelAppModel::refreshBookmarkPresentation(qint64 bookmarkID)
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    try {
        const Bookmark bookmark = co_await m_services.store->call(
            [bookmarkID](LocalLibraryStore& library) { return library.bookmark(bookmarkID); });
        m_bookmarks.replaceBookmark(bookmark);
        m_mediaBookmarks.replaceBookmark(bookmark);
        if (m_readerBookmark && m_readerBookmark->id == bookmarkID)
            m_readerBookmark = bookmark;
        showPost();
    } catch (...) {
        fail(std::current_exception());
    }
}

} // namespace mirel
