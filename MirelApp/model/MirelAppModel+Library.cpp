#include "model/MirelAppModel.h"

#include "model/BothOf.h"
#include "model/RunningCommand.h"

#include <QCoro/QCoroFuture>

#include <cmath>

namespace mirel {

qint64 MirelAppModel::pageCount(qint64 results, qint64 pageSize)
{
    const double pages =
        std::ceil(static_cast<double>(results) / static_cast<double>(std::max<qint64>(1, pageSize)));
    return std::max<qint64>(1, static_cast<qint64>(pages));
}

LibraryFilter MirelAppModel::listedFilter() const
{
    return m_selection == SidebarDestination::today ? LibraryFilter::inbox : m_libraryFilter;
}

MirelAppModel::ListedPage MirelAppModel::listedPage() const
{
    return {.filter = listedFilter(),
            .refinements = m_refinements,
            .sort = m_librarySort,
            .page = m_page,
            .pageSize = m_preferences.pageSize};
}

QCoro::Task<> MirelAppModel::refreshLibrary()
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    const bool isFirst = !std::exchange(m_isReadingLibrary, true);
    setLoading(true);
    if (isFirst) {
        co_await readLibrary();
        endLibraryReading();
        co_return;
    }
    if (!m_waitingRefresh) {
        m_waitingRefresh = std::make_shared<QPromise<void>>();
        m_waitingRefresh->start();
    }
    const QFuture<void> next = m_waitingRefresh->future();
    co_await next;
}

void MirelAppModel::endLibraryReading()
{
    if (m_waitingRefresh) {
        readForWaiting(std::exchange(m_waitingRefresh, {}));
        return;
    }
    m_isReadingLibrary = false;
    Q_EMIT isLoadingChanged();
}

// All who asked during one reading share the next.
QCoro::Task<> MirelAppModel::readForWaiting(std::shared_ptr<QPromise<void>> waiting)
{
    const RunningCommand running(*this);
    co_await readLibrary();
    waiting->finish();
    endLibraryReading();
}

QCoro::Task<> MirelAppModel::readLibrary()
{
    try {
        bool isDone = false;
        while (!isDone)
            isDone = co_await readPage();
    } catch (...) {
        m_hasLoaded = true;
        m_listingError = describe(std::current_exception());
        fail(std::current_exception());
    }
    setLoading(false);
}

// Returns false when there was no such page any more, and the one to read instead is now the current one.
QCoro::Task<bool> MirelAppModel::readPage()
{
    const ListedPage listed = listedPage();
    const auto search = [listed](LocalLibraryStore& library) {
        return library.searchBookmarksPage(listed.filter, listed.refinements, listed.pageSize,
                                           listed.page * listed.pageSize, listed.sort);
    };
    auto searching = m_services.store->call(search);
    auto counting =
        m_services.store->call([](LocalLibraryStore& library) { return library.libraryCounts(); });
    const auto [found, counts] = co_await bothOf(std::move(searching), std::move(counting));
    // The user has gone on, and the reading of the newer place comes next.
    if (m_waitingRefresh && listed != listedPage())
        co_return true;
    const qint64 lastPage = pageCount(found.totalCount, listed.pageSize) - 1;
    if (m_page > lastPage) {
        m_page = lastPage;
        Q_EMIT placeChanged();
        co_return false;
    }
    m_counts = counts;
    m_libraryResultCount = found.totalCount;
    m_hasLoaded = true;
    m_listingError.reset();
    m_bookmarks.setBookmarks(found.items);
    dropMissingSelection();
    showPost();
    Q_EMIT libraryChanged();
    if (m_selectedBookmarkID)
        co_await loadReaderContext(*m_selectedBookmarkID);
    co_await reloadReaderBookmark();
    co_return true;
}

// A selected row that is gone is no longer selected.
void MirelAppModel::dropMissingSelection()
{
    if (!m_selectedBookmarkID)
        return;
    const bool isInReader = m_readerBookmark && m_readerBookmark->id == *m_selectedBookmarkID;
    if (!isInReader && m_bookmarks.rowOf(*m_selectedBookmarkID) < 0)
        m_selectedBookmarkID.reset();
}

QCoro::Task<> MirelAppModel::prepareSearch()
{
    if (!m_services.store || m_isPreparingSearch)
        co_return;
    const RunningCommand running(*this);
    m_isPreparingSearch = true;
    bool isDone = false;
    while (!isDone && !m_isShuttingDown) {
        try {
            isDone = co_await m_services.store->call(
                [](LocalLibraryStore& library) { return library.prepareSearch(); });
        } catch (const std::exception&) {
            // Nobody asked for anything yet. A search that fails tells why.
            isDone = true;
        }
    }
    m_isPreparingSearch = false;
}

QCoro::Task<> MirelAppModel::refreshMedia()
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    try {
        const LibraryRefinements withMedia{.media = LibraryMediaRefinement::withMedia};
        const auto search = [withMedia](LocalLibraryStore& library) {
            return library.searchAllBookmarks(LibraryFilter::all, withMedia, LibrarySort::newest);
        };
        const QList<Bookmark> found = co_await m_services.store->call(search);
        m_mediaBookmarks.setBookmarks(found);
        showPost();
    } catch (...) {
        fail(std::current_exception());
    }
}

QCoro::Task<> MirelAppModel::selectAllLibraryResults()
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    try {
        const SidebarDestination selection = m_selection;
        const ListedPage listed = listedPage();
        const auto search = [listed](LocalLibraryStore& library) {
            return library.matchingBookmarkIDs(listed.filter, listed.refinements, listed.sort);
        };
        const QList<qint64> ids = co_await m_services.store->call(search);
        // What was found elsewhere is not to be worked on here. Another page is still the same place.
        ListedPage now = listedPage();
        now.page = listed.page;
        if (selection != m_selection || now != listed)
            co_return;
        m_selectedBookmarkIDs = QSet<qint64>(ids.cbegin(), ids.cend());
        Q_EMIT selectionChanged();
        setStatusMessage(QStringLiteral("Selected all %1 matching bookmarks.").arg(ids.size()));
    } catch (...) {
        fail(std::current_exception());
    }
}

QCoro::Task<> MirelAppModel::setLibrarySort(LibrarySort sort)
{
    m_librarySort = sort;
    co_await openPage(0);
}

QCoro::Task<> MirelAppModel::nextPage()
{
    co_await openPage(std::min(m_page + 1, pageCount() - 1));
}

QCoro::Task<> MirelAppModel::previousPage()
{
    co_await openPage(std::max<qint64>(m_page - 1, 0));
}

QCoro::Task<> MirelAppModel::openPage(qint64 page)
{
    ++m_readerGeneration;
    m_page = page;
    Q_EMIT placeChanged();
    co_await refreshLibrary();
}

void MirelAppModel::setLoading(bool isLoading)
{
    m_isLoading = isLoading;
    Q_EMIT isLoadingChanged();
}

} // namespace mirel
