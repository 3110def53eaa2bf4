#pragma once

#include "library/LibraryFilter.h"
#include "library/LibraryRefinements.h"
#include "model/SidebarDestination.h"

namespace mirel {

// A place that the user can return to.
struct NavigationSnapshot
{
    SidebarDestination selection = SidebarDestination::today;
    LibraryFilter libraryFilter = LibraryFilter::inbox;
    LibraryRefinements refinements;
    // Counted from 0.
    qint64 page = 0;
    std::optional<qint64> selectedBookmarkID;
    // The bookmark that was open in the reader.
    std::optional<qint64> readerBookmarkID;

    friend bool operator==(const NavigationSnapshot&, const NavigationSnapshot&) = default;
};

} // namespace mirel
