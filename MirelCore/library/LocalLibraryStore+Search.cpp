#include "library/LinearSearch.h"
#include "library/LocalLibraryStore.h"

namespace mirel {

namespace {

constexpr qint64 largestPage = 500;

} // namespace

BookmarkSearchPage LocalLibraryStore::searchBookmarksPage(LibraryFilter filter,
                                                          const LibraryRefinements& refinements, qint64 limit,
                                                          qint64 offset, LibrarySort sort)
{
    const QList<Bookmark> matching = matchingBookmarks(*this, filter, refinements, sort);
    return {.items = matching.mid(std::max<qint64>(offset, 0), std::clamp<qint64>(limit, 1, largestPage)),
            .totalCount = matching.size()};
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
    return matchingBookmarks(*this, filter, refinements, sort);
}

QList<qint64> LocalLibraryStore::matchingBookmarkIDs(LibraryFilter filter,
                                                     const LibraryRefinements& refinements, LibrarySort sort)
{
    QList<qint64> ids;
    for (const Bookmark& bookmark : matchingBookmarks(*this, filter, refinements, sort))
        ids.append(bookmark.id);
    return ids;
}

qint64 LocalLibraryStore::countBookmarks(LibraryFilter filter, const LibraryRefinements& refinements)
{
    return matchingBookmarks(*this, filter, refinements, LibrarySort::newest).size();
}

} // namespace mirel
