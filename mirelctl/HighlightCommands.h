#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Highlights. Each run() returns what goes to
// standard output, asks neither the keyring nor X, throws CommandError or what the library throws, and runs
// the event loop of this thread.

// Marks a text of a bookmark. Without offsets it stands where it first stands in the context. As JSON, the
// BookmarkHighlight.
struct HighlightAddCommand
{
    static constexpr QLatin1StringView name{"highlight add"};

    QString bookmark;
    QString text;
    std::optional<QString> context;
    // In characters.
    std::optional<qint64> start;
    std::optional<qint64> end;
    std::optional<QString> color;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const HighlightAddCommand&, const HighlightAddCommand&) = default;
};

// Prints the highlights of one bookmark or all; as JSON an array of BookmarkHighlight.
struct HighlightListCommand
{
    static constexpr QLatin1StringView name{"highlight list"};

    std::optional<QString> bookmark;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const HighlightListCommand&, const HighlightListCommand&) = default;
};

// As JSON, an array of the BookmarkHighlights that were.
struct HighlightDeleteCommand
{
    static constexpr QLatin1StringView name{"highlight delete"};

    QStringList highlights;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const HighlightDeleteCommand&, const HighlightDeleteCommand&) = default;
};

} // namespace mirel
