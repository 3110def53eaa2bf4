#include "x/PageWalk.h"

#include "x/BookmarkSyncError.h"

namespace mirel {

bool PageWalk::advance(const std::optional<QString>& nextToken)
{
    if (!nextToken)
        return false;
    if (m_pages == m_mostPages)
        throw BookmarkSyncError(BookmarkSyncError::Case::pageLimitExceeded);
    if (m_seenTokens.contains(*nextToken))
        throw BookmarkSyncError(BookmarkSyncError::Case::paginationCycle);
    m_seenTokens.insert(*nextToken);
    m_token = nextToken;
    ++m_pages;
    return true;
}

} // namespace mirel
