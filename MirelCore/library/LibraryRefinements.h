#pragma once

#include "library/LibraryContentType.h"
#include "support/Instant.h"

#include <array>
#include <optional>

namespace mirel {

struct Bookmark;

enum class LibraryMediaRefinement { any, withMedia, withoutMedia };

[[nodiscard]] constexpr auto rawValues(LibraryMediaRefinement)
{
    using enum LibraryMediaRefinement;
    return std::array{
        RawValue{any, QLatin1StringView("any")},
        RawValue{withMedia, QLatin1StringView("withMedia")},
        RawValue{withoutMedia, QLatin1StringView("withoutMedia")},
    };
}

enum class LibrarySourceRefinement { any, xBookmarks };

[[nodiscard]] constexpr auto rawValues(LibrarySourceRefinement)
{
    using enum LibrarySourceRefinement;
    return std::array{
        RawValue{any, QLatin1StringView("any")},
        RawValue{xBookmarks, QLatin1StringView("x_bookmarks")},
    };
}

// What narrows a mailbox: the expression of the search field and the filters of the panel.
struct LibraryRefinements
{
    QString query;
    std::optional<qint64> authorID;
    std::optional<LibraryContentType> contentType;
    std::optional<qint64> folderID;
    std::optional<qint64> tagID;
    LibraryMediaRefinement media = LibraryMediaRefinement::any;
    std::optional<bool> hasNotes;
    // Carried and compared; all bookmarks come from one source, so it narrows nothing.
    LibrarySourceRefinement source = LibrarySourceRefinement::any;
    // Inclusive, of the post's date.
    std::optional<Instant> dateFrom;
    std::optional<Instant> dateTo;

    // The bookmark passes every refinement.
    [[nodiscard]] bool matches(const Bookmark& bookmark) const;

    // A copy with that `dateFrom`.
    [[nodiscard]] LibraryRefinements with(std::optional<Instant> newDateFrom) const;

    friend bool operator==(const LibraryRefinements&, const LibraryRefinements&) = default;
};

} // namespace mirel
