#include "library/LocalLibraryStore.h"

namespace mirel {

namespace {

constexpr qint64 batchSize = 500;

} // namespace

QList<Bookmark> LocalLibraryStore::matchingBookmarks(LibraryFilter filter,
                                                     const LibraryRefinements& refinements, LibrarySort sort)
{
    QList<Bookmark> matching;
    qint64 offset = 0;
    while (true) {
        const QList<Bookmark> batch = listBookmarks(filter, batchSize, offset, sort);
        std::copy_if(batch.cbegin(), batch.cend(), std::back_inserter(matching),
                     [&refinements](const Bookmark& bookmark) { return refinements.matches(bookmark); });
        if (batch.size() < batchSize)
            return matching;
        offset += batch.size();
    }
}

BookmarkSearchPage LocalLibraryStore::searchBookmarksPage(LibraryFilter filter,
                                                          const LibraryRefinements& refinements, qint64 limit,
                                                          qint64 offset, LibrarySort sort)
{
    const QList<Bookmark> matching = matchingBookmarks(filter, refinements, sort);
    return {.items = matching.mid(std::max<qint64>(offset, 0), std::clamp<qint64>(limit, 1, batchSize)),
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
    return matchingBookmarks(filter, refinements, sort);
}

QList<qint64> LocalLibraryStore::matchingBookmarkIDs(LibraryFilter filter,
                                                     const LibraryRefinements& refinements, LibrarySort sort)
{
    QList<qint64> ids;
    for (const Bookmark& bookmark : matchingBookmarks(filter, refinements, sort))
        ids.append(bookmark.id);
    return ids;
}

qint64 LocalLibraryStore::countBookmarks(LibraryFilter filter, const LibraryRefinements& refinements)
{
    return matchingBookmarks(filter, refinements, LibrarySort::newest).size();
}

} // namespace mirel
