#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"

namespace mirel {

namespace {

constexpr qsizetype longestHistory = 50;

bool listsTheLibrary(SidebarDestination destination)
{
    using enum SidebarDestination;
    return destination == today || destination == library || destination == search;
}

} // namespace

NavigationSnapshot MirelAppModel::currentPlace() const
{
    return {.selection = m_selection,
            .libraryFilter = m_libraryFilter,
            .refinements = m_refinements,
            .page = m_page,
            .selectedBookmarkID = m_selectedBookmarkID,
            .readerBookmarkID = m_readerBookmark ? std::optional(m_readerBookmark->id) : std::nullopt};
}

void MirelAppModel::rememberNavigation()
{
    const NavigationSnapshot place = currentPlace();
    if (!m_navigationHistory.isEmpty() && m_navigationHistory.constLast() == place)
        return;
    m_navigationHistory.append(place);
    if (m_navigationHistory.size() > longestHistory)
        m_navigationHistory.removeFirst();
    Q_EMIT historyChanged();
}

QString MirelAppModel::placeBehindName() const
{
    return m_navigationHistory.isEmpty() ? QString() : rawValue(m_navigationHistory.constLast().selection);
}

void MirelAppModel::closeReader()
{
    ++m_readerGeneration;
    m_readerBookmark.reset();
}

void MirelAppModel::tellPlace()
{
    Q_EMIT placeChanged();
    showPost();
}

QCoro::Task<> MirelAppModel::show(SidebarDestination destination)
{
    const RunningCommand running(*this);
    if (m_selection != destination || m_readerBookmark)
        rememberNavigation();
    closeReader();
    m_selection = destination;
    m_page = 0;
    m_selectedBookmarkID.reset();
    m_selectedBookmarkIDs.clear();
    if (listsTheLibrary(destination))
        m_refinements = {};
    if (destination == SidebarDestination::today)
        m_libraryFilter = LibraryFilter::inbox;
    // The inbox is a place of its own; from it, the library means all bookmarks.
    if (destination == SidebarDestination::library && m_libraryFilter == LibraryFilter::inbox)
        m_libraryFilter = LibraryFilter::all;
    tellPlace();
    co_await refreshDestination();
}

QCoro::Task<> MirelAppModel::refreshDestination()
{
    if (listsTheLibrary(m_selection))
        co_await refreshLibrary();
    else if (m_selection == SidebarDestination::media)
        co_await refreshMedia();
    else if (m_selection != SidebarDestination::ask)
        co_await refreshOrganization();
}

QCoro::Task<> MirelAppModel::openMailbox(LibraryFilter filter)
{
    rememberNavigation();
    closeReader();
    m_selection = SidebarDestination::library;
    m_refinements = {};
    m_libraryFilter = filter;
    m_page = 0;
    tellPlace();
    co_await refreshLibrary();
}

QCoro::Task<> MirelAppModel::openLibrary(std::optional<qint64> authorID, std::optional<qint64> tagID,
                                         std::optional<qint64> folderID)
{
    rememberNavigation();
    closeReader();
    m_refinements = {.authorID = authorID, .folderID = folderID, .tagID = tagID};
    m_selection = SidebarDestination::library;
    m_libraryFilter = LibraryFilter::all;
    m_page = 0;
    tellPlace();
    co_await refreshLibrary();
}

QCoro::Task<> MirelAppModel::runSearch(QString query)
{
    rememberNavigation();
    closeReader();
    m_refinements.query = query;
    m_selection = SidebarDestination::search;
    m_page = 0;
    tellPlace();
    co_await refreshLibrary();
}

QCoro::Task<> MirelAppModel::setSearchQuery(QString query)
{
    const bool isSearching = m_selection == SidebarDestination::search && !m_readerBookmark;
    if (!isSearching) {
        co_await runSearch(query);
    } else if (m_refinements.query != query) {
        m_refinements.query = query;
        co_await openPage(0);
    }
}

QCoro::Task<> MirelAppModel::searchMailbox(LibraryFilter filter)
{
    m_libraryFilter = filter;
    co_await openPage(0);
}

QCoro::Task<> MirelAppModel::resetRefinements()
{
    m_refinements = {};
    co_await openPage(0);
}

QCoro::Task<> MirelAppModel::goBack()
{
    const RunningCommand running(*this);
    closeReader();
    if (!m_services.store || m_navigationHistory.isEmpty()) {
        tellPlace();
        co_return;
    }
    const NavigationSnapshot place = m_navigationHistory.takeLast();
    Q_EMIT historyChanged();
    m_selection = place.selection;
    m_libraryFilter = place.libraryFilter;
    m_refinements = place.refinements;
    m_page = place.page;
    m_selectedBookmarkID = place.selectedBookmarkID;
    m_selectedBookmarkIDs.clear();
    tellPlace();
    const quint64 generation = m_readerGeneration;
    co_await refreshDestination();
    if (place.readerBookmarkID && generation == m_readerGeneration)
        co_await reopenReader(*place.readerBookmarkID);
}

} // namespace mirel
