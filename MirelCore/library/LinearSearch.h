#pragma once

#include "library/LocalLibraryStore.h"

namespace mirel {

// What of a mailbox passes the refinements, in order: the definition of a search, without any index. It loads
// every bookmark of the mailbox. Throws what LocalLibraryStore::allBookmarkIDs and bookmark() do.
[[nodiscard]] QList<Bookmark> matchingBookmarks(LocalLibraryStore& store, LibraryFilter filter,
                                                const LibraryRefinements& refinements, LibrarySort sort);

} // namespace mirel
