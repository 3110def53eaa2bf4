#include "library/LibraryRefinements.h"

#include "library/LibrarySearch.h"
#include "library/LibrarySearchContext.h"

namespace mirel {

bool LibraryRefinements::matches(const Bookmark& bookmark) const
{
    return LibrarySearch(*this).matches(LibrarySearchContext(bookmark));
}

LibraryRefinements LibraryRefinements::with(std::optional<Instant> newDateFrom) const
{
    LibraryRefinements copy = *this;
    copy.dateFrom = newDateFrom;
    return copy;
}

} // namespace mirel
