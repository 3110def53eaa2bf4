#include "library/LibraryRefinements.h"

#include "records/Bookmark.h"

namespace mirel {

bool LibraryRefinements::matches(const Bookmark& bookmark) const
{
    return !authorID || *authorID == bookmark.author.id;
}

LibraryRefinements LibraryRefinements::with(std::optional<Instant> newDateFrom) const
{
    LibraryRefinements copy = *this;
    copy.dateFrom = newDateFrom;
    return copy;
}

} // namespace mirel
