#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Prints one bookmark.
struct ShowCommand
{
    // An X post id or a post's web address.
    QString reference;

    // Returns what goes to standard output. Asks neither the keyring nor X. Throws CommandError, or what
    // the library throws. Runs the event loop of this thread.
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const ShowCommand&, const ShowCommand&) = default;
};

} // namespace mirel
