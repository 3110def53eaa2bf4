#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Prints one bookmark.
struct ShowCommand
{
    static constexpr QLatin1StringView name{"show"};

    // An X post id or a post's web address.
    QString reference;
    // As JSON in any case: what its reader shows of it, PostPresentation::toJSON(), and as `contentType` the
    // case of LibraryContentType.
    bool presentation = false;

    void describe(CommandSyntax& syntax);
    // Returns what goes to standard output. Asks neither the keyring nor X. Throws CommandError, or what
    // the library throws. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const ShowCommand&, const ShowCommand&) = default;
};

} // namespace mirel
