#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

// What kind of post a bookmark is, for searching.
enum class LibraryContentType { tweet, article, quote, thread, externalLink, video, image };

// In the order of the cases.
[[nodiscard]] constexpr auto rawValues(LibraryContentType)
{
    using enum LibraryContentType;
    return std::array{
        RawValue{tweet, QLatin1StringView("tweet")},
        RawValue{article, QLatin1StringView("article")},
        RawValue{quote, QLatin1StringView("quote")},
        RawValue{thread, QLatin1StringView("thread")},
        RawValue{externalLink, QLatin1StringView("external_link")},
        RawValue{video, QLatin1StringView("video")},
        RawValue{image, QLatin1StringView("image")},
    };
}

// The name that the user sees.
[[nodiscard]] QString label(LibraryContentType type);

} // namespace mirel
