#include "library/LinearSearch.h"

#include "library/LibrarySearch.h"
#include "library/LibrarySearchContext.h"

namespace mirel {

namespace {

constexpr qint64 batchSize = 500;

} // namespace

QList<Bookmark> matchingBookmarks(LocalLibraryStore& store, LibraryFilter filter,
                                  const LibraryRefinements& refinements, LibrarySort sort)
{
    const LibrarySearch search(refinements);
    QList<Bookmark> matching;
    qint64 offset = 0;
    while (true) {
        const QList<Bookmark> batch = store.listBookmarks(filter, batchSize, offset, sort);
        std::copy_if(
            batch.cbegin(), batch.cend(), std::back_inserter(matching),
            [&search](const Bookmark& bookmark) { return search.matches(LibrarySearchContext(bookmark)); });
        if (batch.size() < batchSize)
            return matching;
        offset += batch.size();
    }
}

} // namespace mirel
