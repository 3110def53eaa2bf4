#pragma once

#include "mirelctl/BookmarkListing.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Prints a part of a mailbox, one bookmark a line, or an array of Bookmark.
struct ListCommand
{
    static constexpr QLatin1StringView name{"list"};

    ListingOptions listing;

    void describe(CommandSyntax& syntax) { listing.describe(syntax); }
    // Returns what goes to standard output. Asks neither the keyring nor X. Throws CommandError, or what
    // the library throws. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const ListCommand&, const ListCommand&) = default;
};

} // namespace mirel
