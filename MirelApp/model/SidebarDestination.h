#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

// Where the sidebar leads.
enum class SidebarDestination { today, library, search, ask, labels, folders, rules, authors, media };

[[nodiscard]] constexpr auto rawValues(SidebarDestination)
{
    using enum SidebarDestination;
    return std::array{
        RawValue{today, QLatin1StringView("today")},   RawValue{library, QLatin1StringView("library")},
        RawValue{search, QLatin1StringView("search")}, RawValue{ask, QLatin1StringView("ask")},
        RawValue{labels, QLatin1StringView("labels")}, RawValue{folders, QLatin1StringView("folders")},
        RawValue{rules, QLatin1StringView("rules")},   RawValue{authors, QLatin1StringView("authors")},
        RawValue{media, QLatin1StringView("media")},
    };
}

} // namespace mirel
