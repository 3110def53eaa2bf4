#pragma once

#include "library/LibraryRefinements.h"
#include "library/LibrarySearchExpression.h"

namespace mirel {

// Refinements whose query was parsed, for asking any number of bookmarks.
class LibrarySearch
{
public:
    explicit LibrarySearch(LibraryRefinements refinements);

    // The bookmark passes the expression and every refinement, asked in the order of the fields up to the
    // first that it does not pass.
    [[nodiscard]] bool matches(const LibrarySearchSubject& subject) const;

    [[nodiscard]] const LibraryRefinements& refinements() const { return m_refinements; }
    [[nodiscard]] const LibrarySearchExpression& expression() const { return m_expression; }

private:
    LibraryRefinements m_refinements;
    LibrarySearchExpression m_expression;
};

} // namespace mirel
