#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

// A mailbox of the library.
enum class LibraryFilter {
    all,
    // Neither archived, nor a favorite, nor in a folder. Reading takes nothing out of it.
    inbox,
    read,
    favorites,
    archive
};

[[nodiscard]] constexpr auto rawValues(LibraryFilter)
{
    using enum LibraryFilter;
    return std::array{
        RawValue{all, QLatin1StringView("all")},         RawValue{inbox, QLatin1StringView("inbox")},
        RawValue{read, QLatin1StringView("read")},       RawValue{favorites, QLatin1StringView("favorites")},
        RawValue{archive, QLatin1StringView("archive")},
    };
}

// The order of a listing, by the date of the post.
enum class LibrarySort { newest, oldest, author };

[[nodiscard]] constexpr auto rawValues(LibrarySort)
{
    using enum LibrarySort;
    return std::array{
        RawValue{newest, QLatin1StringView("newest")},
        RawValue{oldest, QLatin1StringView("oldest")},
        RawValue{author, QLatin1StringView("author")},
    };
}

} // namespace mirel
