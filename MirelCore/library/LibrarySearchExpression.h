#pragma once

#include "library/LibraryContentType.h"

#include <QString>

#include <memory>
#include <optional>

namespace mirel {

struct Bookmark;

// A search as a tree. Immutable; copies share the tree.
class LibrarySearchExpression
{
public:
    // Never fails: every text means something. An absent query matches everything.
    [[nodiscard]] static LibrarySearchExpression parse(const std::optional<QString>& query);

    [[nodiscard]] bool matches(const Bookmark& bookmark) const;

    [[nodiscard]] static LibraryContentType contentType(const Bookmark& bookmark);
};

} // namespace mirel
