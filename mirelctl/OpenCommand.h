#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Opens one bookmark in a reader of text, which shows what its presentation says; as JSON the Bookmark.
struct OpenCommand
{
    static constexpr QLatin1StringView name{"open"};

    // An X post id or a post's web address.
    QString reference;

    void describe(CommandSyntax& syntax);
    // Returns what goes to standard output. Asks neither the keyring nor X. Throws CommandError, or what
    // the library throws. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const OpenCommand&, const OpenCommand&) = default;
};

} // namespace mirel
