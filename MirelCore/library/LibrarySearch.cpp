#include "library/LibrarySearch.h"

#include "library/LibrarySearchSubject.h"

namespace mirel {

namespace {

bool passes(LibraryMediaRefinement refinement, const LibrarySearchSubject& subject)
{
    switch (refinement) {
    case LibraryMediaRefinement::any:
        return true;
    case LibraryMediaRefinement::withMedia:
        return subject.hasPresentedMedia();
    case LibraryMediaRefinement::withoutMedia:
        return !subject.hasPresentedMedia();
    }
    Q_UNREACHABLE();
}

} // namespace

LibrarySearch::LibrarySearch(LibraryRefinements refinements)
    : m_refinements(std::move(refinements))
    , m_expression(LibrarySearchExpression::parse(m_refinements.query))
{
}

bool LibrarySearch::matches(const LibrarySearchSubject& subject) const
{
    const LibraryRefinements& wanted = m_refinements;
    return m_expression.matches(subject) && (!wanted.authorID || *wanted.authorID == subject.authorID()) &&
           (!wanted.contentType || *wanted.contentType == subject.contentType()) &&
           (!wanted.folderID || wanted.folderID == subject.folderID()) &&
           (!wanted.tagID || subject.hasLabelWithID(*wanted.tagID)) && passes(wanted.media, subject) &&
           (!wanted.hasNotes || *wanted.hasNotes == subject.hasNotes()) &&
           (!wanted.dateFrom || subject.createdAt() >= *wanted.dateFrom) &&
           (!wanted.dateTo || subject.createdAt() <= *wanted.dateTo);
}

} // namespace mirel
