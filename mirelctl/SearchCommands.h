#pragma once

#include "mirelctl/BookmarkListing.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Asking the library with a search expression, of which every text is one. Each run() returns what goes to
// standard output, asks neither the keyring nor X, throws CommandError or what the library throws, and runs
// the event loop of this thread.

// Prints the matches, one a line, or an object with `items` and `totalCount`. Beside the text it is told how
// many there are, and how the expression was understood when it was written otherwise.
struct SearchCommand
{
    static constexpr QLatin1StringView name{"search"};

    QString expression;
    ListingOptions listing;
    // Only X's ids of all matches, whatever the limit and the offset; as JSON an array of texts.
    bool ids = false;
    // Below each match where each condition matched; as JSON `why`, for each of `items` an array of
    // LibrarySearchFinding.
    bool why = false;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const SearchCommand&, const SearchCommand&) = default;
};

// Prints the number of matches.
struct CountCommand
{
    static constexpr QLatin1StringView name{"count"};

    QString expression;
    LibraryFilter filter = LibraryFilter::all;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const CountCommand&, const CountCommand&) = default;
};

} // namespace mirel
