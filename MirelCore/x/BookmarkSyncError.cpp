#include "x/BookmarkSyncError.h"

namespace mirel {

BookmarkSyncError::BookmarkSyncError(Case errorCase)
    : m_case(errorCase)
{
}

QString BookmarkSyncError::description() const
{
    switch (m_case) {
    case Case::paginationCycle:
        return QStringLiteral("X returned a repeated bookmark page token.");
    case Case::pageLimitExceeded:
        return QStringLiteral("The X bookmark sync exceeded its safety page limit.");
    }
    Q_UNREACHABLE();
}

} // namespace mirel
