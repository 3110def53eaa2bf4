#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"

namespace mirel {

namespace {

constexpr qint64 pageSize = 50;

qint64 resultCount(const LibraryCounts& counts, LibraryFilter filter)
{
    switch (filter) {
    case LibraryFilter::all:
        return counts.all;
    case LibraryFilter::inbox:
        return counts.inbox;
    case LibraryFilter::read:
        return counts.read;
    case LibraryFilter::favorites:
        return counts.favorites;
    case LibraryFilter::archive:
        return counts.archive;
    }
    Q_UNREACHABLE();
}

struct Listing
{
    QList<Bookmark> bookmarks;
    LibraryCounts counts;
};

} // namespace

qint64 MirelAppModel::pageCount() const
{
    return std::max<qint64>(1, (m_libraryResultCount + pageSize - 1) / pageSize);
}

QCoro::Task<> MirelAppModel::refreshLibrary()
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    setLoading(true);
    try {
        const qint64 page = m_page;
        const LibraryFilter filter = m_libraryFilter;
        const LibrarySort sort = m_librarySort;
        Listing listing = co_await m_services.store->call([page, filter, sort](LocalLibraryStore& library) {
            return Listing{library.listBookmarks(filter, pageSize, page * pageSize, sort),
                           library.libraryCounts()};
        });
        // The user may have gone on while the read ran; the read of the newer place is under way then.
        if (page != m_page || filter != m_libraryFilter || sort != m_librarySort)
            co_return;
        m_counts = listing.counts;
        m_libraryResultCount = resultCount(listing.counts, filter);
        if (m_page > pageCount() - 1) {
            m_page = pageCount() - 1;
            Q_EMIT placeChanged();
            co_await refreshLibrary();
            co_return;
        }
        m_hasListingFailed = false;
        m_bookmarks.setBookmarks(listing.bookmarks);
        Q_EMIT libraryChanged();
    } catch (...) {
        m_hasListingFailed = true;
        fail(std::current_exception());
    }
    m_hasLoaded = true;
    setLoading(false);
    if (std::exchange(m_reloadsAgain, false))
        refreshLibrary();
}

QCoro::Task<> MirelAppModel::openMailbox(LibraryFilter filter)
{
    m_libraryFilter = filter;
    co_await openPage(0);
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
