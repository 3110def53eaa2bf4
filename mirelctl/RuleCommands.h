#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"
#include "model/MirelAppModel.h"

namespace mirel {

// Rules; References.h tells how they are named. Each run() returns what goes to
// standard output, asks neither the keyring nor X, throws CommandError or what the library throws, and runs
// the event loop of this thread.

// Prints the rules that hold a text, all without one; as JSON an array of BookmarkRule.
struct RuleListCommand
{
    static constexpr QLatin1StringView name{"rule list"};

    std::optional<QString> search;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const RuleListCommand&, const RuleListCommand&) = default;
};

// Creates a rule that files under a label or into a folder, one of the two. As JSON, the BookmarkRule.
struct RuleCreateCommand
{
    static constexpr QLatin1StringView name{"rule create"};

    QString rule;
    QString query;
    std::optional<QString> label;
    std::optional<QString> folder;
    bool disabled = false;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const RuleCreateCommand&, const RuleCreateCommand&) = default;
};

// Prints what a rule would file, as `list` prints bookmarks.
struct RulePreviewCommand
{
    static constexpr QLatin1StringView name{"rule preview"};

    QString rule;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const RulePreviewCommand&, const RulePreviewCommand&) = default;
};

// Runs one rule, or all enabled ones by name. As JSON, the number of bookmarks that matched.
struct RuleRunCommand
{
    static constexpr QLatin1StringView name{"rule run"};

    std::optional<QString> rule;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const RuleRunCommand&, const RuleRunCommand&) = default;
};

// As JSON, an array of the BookmarkRules.
struct RuleEnableCommand
{
    static constexpr QLatin1StringView name{"rule enable"};

    QStringList rules;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const RuleEnableCommand&, const RuleEnableCommand&) = default;
};

// As JSON, an array of the BookmarkRules.
struct RuleDisableCommand
{
    static constexpr QLatin1StringView name{"rule disable"};

    QStringList rules;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const RuleDisableCommand&, const RuleDisableCommand&) = default;
};

// What they filed stays. As JSON, an array of the BookmarkRules that were.
struct RuleDeleteCommand
{
    static constexpr QLatin1StringView name{"rule delete"};

    QStringList rules;

    void describe(CommandSyntax& syntax);
    [[nodiscard]] QByteArray run(MirelAppModel& model, const CommandSurroundings& surroundings) const;

    friend bool operator==(const RuleDeleteCommand&, const RuleDeleteCommand&) = default;
};

} // namespace mirel
