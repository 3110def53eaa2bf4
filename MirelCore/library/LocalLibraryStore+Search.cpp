#include "library/LocalLibraryStore.h"

#include "library/LibrarySearch.h"
#include "library/PageLimit.h"

namespace mirel {

namespace {

constexpr qsizetype preparedAtOnce = 250;

} // namespace

QList<qint64> LocalLibraryStore::matchingBookmarkIDs(LibraryFilter filter,
                                                     const LibraryRefinements& refinements, LibrarySort sort)
{
    return m_index.matchingIDs(filter, LibrarySearch(refinements), sort);
}

BookmarkSearchPage LocalLibraryStore::searchBookmarksPage(LibraryFilter filter,
                                                          const LibraryRefinements& refinements, qint64 limit,
                                                          qint64 offset, LibrarySort sort)
{
    const QList<qint64> ids = matchingBookmarkIDs(filter, refinements, sort);
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
    const QList<qint64> ids = matchingBookmarkIDs(filter, refinements, sort);
    QList<Bookmark> matching;
    matching.reserve(ids.size());
    for (qsizetype place = 0; place < ids.size(); place += largestPage)
        matching += bookmarks(ids.mid(place, largestPage));
    return matching;
}

qint64 LocalLibraryStore::countBookmarks(LibraryFilter filter, const LibraryRefinements& refinements)
{
    return matchingBookmarkIDs(filter, refinements, LibrarySort::newest).size();
}

bool LocalLibraryStore::prepareSearch()
{
    return m_index.prepare(IndexDepth::texts, preparedAtOnce);
}

LibraryIndex::Size LocalLibraryStore::indexSize() const
{
    return m_index.size();
}

} // namespace mirel
