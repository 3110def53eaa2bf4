#include "library/LibrarySearchExpression.h"

namespace mirel {

LibrarySearchExpression LibrarySearchExpression::parse(const std::optional<QString>&)
{
    return {};
}

bool LibrarySearchExpression::matches(const Bookmark&) const
{
    return true;
}

LibraryContentType LibrarySearchExpression::contentType(const Bookmark&)
{
    return LibraryContentType::tweet;
}

} // namespace mirel
