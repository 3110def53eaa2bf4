#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Authors. Each run() returns what goes to
// standard output, asks neither the keyring nor X, throws CommandError or what the library throws, and runs
// the event loop of this thread.

// Prints the authors who hold a text in their names, all without one, those with the most bookmarks first;
// as JSON an array of AuthorSummary.
struct AuthorsCommand
{
    static constexpr QLatin1StringView name{"authors"};

    std::optional<QString> search;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const AuthorsCommand&, const AuthorsCommand&) = default;
};

} // namespace mirel
