#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// What is done on X for one bookmark, which is named by an X post id or a post's web address. Each run()
// returns what goes to standard output, asks the keyring and X, throws CommandError or what the library
// throws, and runs the event loop of this thread.

// Fetches the author's own thread around the post, unless that was done before. As JSON, the Bookmark.
struct ThreadCommand
{
    static constexpr QLatin1StringView name{"thread"};

    QString reference;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const ThreadCommand&, const ThreadCommand&) = default;
};

// Asks for the present counters of the post. As JSON, the PostMetrics.
struct MetricsCommand
{
    static constexpr QLatin1StringView name{"metrics"};

    QString reference;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const MetricsCommand&, const MetricsCommand&) = default;
};

// Deletes the bookmark here and, when the preferences say so, on X. As JSON, the Bookmark as it was.
struct DeleteCommand
{
    static constexpr QLatin1StringView name{"delete"};

    QString reference;
    // Not on X, whatever the preferences say.
    bool keepsOnX = false;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const DeleteCommand&, const DeleteCommand&) = default;
};

} // namespace mirel
