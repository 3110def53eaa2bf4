#include "library/LinearSearch.h"

#include "library/LibrarySearch.h"
#include "library/LibrarySearchContext.h"

namespace mirel {

QList<Bookmark> matchingBookmarks(LocalLibraryStore& store, LibraryFilter filter,
                                  const LibraryRefinements& refinements, LibrarySort sort)
{
    const LibrarySearch search(refinements);
    QList<Bookmark> matching;
    for (const qint64 id : store.allBookmarkIDs(filter, sort)) {
        const Bookmark bookmark = store.bookmark(id);
        if (search.matches(LibrarySearchContext(bookmark)))
            matching.append(bookmark);
    }
    return matching;
}

} // namespace mirel
