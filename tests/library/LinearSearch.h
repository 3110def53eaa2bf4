#pragma once

#include "library/LocalLibraryStore.h"

namespace mirel {

// What of a mailbox passes the refinements, in order: the definition of a search. It loads every bookmark of
// the mailbox, a page after the other. Throws what LocalLibraryStore::listBookmarks does.
[[nodiscard]] QList<Bookmark> matchingBookmarks(LocalLibraryStore& store, LibraryFilter filter,
                                                const LibraryRefinements& refinements, LibrarySort sort);

} // namespace mirel
