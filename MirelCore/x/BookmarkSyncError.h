#pragma once

#include "support/Error.h"

namespace mirel {

// What a walk over X's pages can run into besides the failures of X and of the library.
class BookmarkSyncError : public Error
{
public:
    enum class Case { paginationCycle, pageLimitExceeded };

    explicit BookmarkSyncError(Case errorCase);

    [[nodiscard]] Case errorCase() const { return m_case; }
    [[nodiscard]] QString description() const override;

    friend bool operator==(const BookmarkSyncError& a, const BookmarkSyncError& b)
    {
        return a.m_case == b.m_case;
    }

private:
    Case m_case;
};

} // namespace mirel
