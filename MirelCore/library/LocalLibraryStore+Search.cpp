#include "library/LocalLibraryStore.h"

#include "library/LibrarySearch.h"

namespace mirel {

namespace {

constexpr qint64 largestPage = 500;

} // namespace

QList<qint64> LocalLibraryStore::matchingBookmarkIDs(LibraryFilter filter,
                                                     const LibraryRefinements& refinements, LibrarySort sort)
{
    const LibrarySearch search(refinements);
    return search.matchesEverything() ? allBookmarkIDs(filter, sort)
                                      : m_searchIndex.matchingIDs(filter, search, sort);
}

BookmarkSearchPage LocalLibraryStore::searchBookmarksPage(LibraryFilter filter,
                                                          const LibraryRefinements& refinements, qint64 limit,
                                                          qint64 offset, LibrarySort sort)
{
    const LibrarySearch search(refinements);
    if (search.matchesEverything())
        return {.items = listBookmarks(filter, limit, offset, sort), .totalCount = bookmarkCount(filter)};
    const QList<qint64> ids = m_searchIndex.matchingIDs(filter, search, sort);
    return {.items =
                bookmarks(ids.mid(std::max<qint64>(offset, 0), std::clamp<qint64>(limit, 1, largestPage))),
            .totalCount = ids.size()};
}

QList<Bookmark> LocalLibraryStore::searchBookmarks(LibraryFilter filter,
                                                   const LibraryRefinements& refinements, qint64 limit,
                                                   qint64 offset, LibrarySort sort)
{
    return searchBookmarksPage(filter, refinements, limit, offset, sort).items;
}

QList<Bookmark> LocalLibraryStore::searchAllBookmarks(LibraryFilter filter,
                                                      const LibraryRefinements& refinements, LibrarySort sort)
{
    return bookmarks(matchingBookmarkIDs(filter, refinements, sort));
}

qint64 LocalLibraryStore::countBookmarks(LibraryFilter filter, const LibraryRefinements& refinements)
{
    const LibrarySearch search(refinements);
    return search.matchesEverything() ? bookmarkCount(filter)
                                      : m_searchIndex.matchingIDs(filter, search, LibrarySort::newest).size();
}

SearchIndex::Size LocalLibraryStore::searchIndexSize() const
{
    return m_searchIndex.size();
}

} // namespace mirel
