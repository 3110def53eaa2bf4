#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Labels and what carries them; References.h tells how they are named. Each run() returns what goes to
// standard output, asks neither the keyring nor X, throws CommandError or what the library throws, and runs
// the event loop of this thread.

// Prints the labels that hold a text, all without one; as JSON an array of TagSummary.
struct LabelListCommand
{
    static constexpr QLatin1StringView name{"label list"};

    std::optional<QString> search;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const LabelListCommand&, const LabelListCommand&) = default;
};

// Creates a label, or gives the one of that name another color. As JSON, the Tag.
struct LabelCreateCommand
{
    static constexpr QLatin1StringView name{"label create"};

    QString label;
    std::optional<QString> color;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const LabelCreateCommand&, const LabelCreateCommand&) = default;
};

// As JSON, the Tag. Without a color it keeps its own.
struct LabelRenameCommand
{
    static constexpr QLatin1StringView name{"label rename"};

    QString label;
    QString newName;
    std::optional<QString> color;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const LabelRenameCommand&, const LabelRenameCommand&) = default;
};

// Gives one label the bookmarks of others and deletes those. As JSON, the Tag that is left.
struct LabelMergeCommand
{
    static constexpr QLatin1StringView name{"label merge"};

    QStringList sources;
    QString target;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const LabelMergeCommand&, const LabelMergeCommand&) = default;
};

// As JSON, an array of the Tags that were.
struct LabelDeleteCommand
{
    static constexpr QLatin1StringView name{"label delete"};

    QStringList labels;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const LabelDeleteCommand&, const LabelDeleteCommand&) = default;
};

// Labels bookmarks, none when one of them is not there. As JSON, an array of those.
struct LabelAddCommand
{
    static constexpr QLatin1StringView name{"label add"};

    QString label;
    QStringList bookmarks;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const LabelAddCommand&, const LabelAddCommand&) = default;
};

// Takes a label off bookmarks, none when one of them is not there. As JSON, an array of those.
struct LabelRemoveCommand
{
    static constexpr QLatin1StringView name{"label remove"};

    QString label;
    QStringList bookmarks;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const LabelRemoveCommand&, const LabelRemoveCommand&) = default;
};

} // namespace mirel
