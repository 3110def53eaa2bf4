#include "mirelctl/RuleCommands.h"

#include "mirelctl/Answer.h"
#include "mirelctl/BookmarkListing.h"
#include "mirelctl/References.h"

#include <QHash>

namespace mirel {

namespace {

QString rulesOperand()
{
    return QStringLiteral("the names of rules");
}

// What each rule files under, such as `label "Design"`.
using TargetTexts = QHash<qint64, QString>;

template <typename Record>
QString targetText(const QList<Record>& records, const QString& thing, qint64 id)
{
    for (const Record& record : records) {
        if (record.id == id)
            return thing + u' ' + quotedNames(QList{record});
    }
    return QStringLiteral("%1 %2, which no longer exists").arg(thing, idText(id));
}

TargetTexts targetTexts(LocalLibraryStore& library, const QList<BookmarkRule>& rules)
{
    const QList<Tag> tags = library.tags();
    const QList<Folder> folders = library.folders();
    TargetTexts texts;
    for (const BookmarkRule& rule : rules) {
        const bool isLabel = rule.action == BookmarkRule::Action::tag;
        texts.insert(rule.id, isLabel ? targetText(tags, QStringLiteral("label"), rule.targetID)
                                      : targetText(folders, QStringLiteral("folder"), rule.targetID));
    }
    return texts;
}

QString lastRunText(const BookmarkRule& rule)
{
    if (!rule.lastRunAt)
        return QStringLiteral("never run");
    return QStringLiteral("%1 on %2")
        .arg(counted(rule.lastMatchCount, QStringLiteral("bookmark")), dateText(*rule.lastRunAt));
}

QStringList rowOfRule(const BookmarkRule& rule, const TargetTexts& targets)
{
    return {
        idText(rule.id),   rule.isEnabled ? QStringLiteral("enabled") : QStringLiteral("disabled"),
        rule.name,         targets.value(rule.id),
        lastRunText(rule), rule.query,
    };
}

Outcome<QList<BookmarkRule>> setEnabled(LocalLibraryStore& library, const QStringList& references,
                                        bool isEnabled)
{
    QList<BookmarkRule> rules = requireRules(library, references);
    for (BookmarkRule& rule : rules) {
        library.setRuleEnabled(rule.id, isEnabled);
        rule.isEnabled = isEnabled;
    }
    const QString start = isEnabled ? QStringLiteral("Enabled ") : QStringLiteral("Disabled ");
    return {rules, start + quotedNames(rules) + u'.'};
}

} // namespace

void RuleListCommand::describe(CommandSyntax& syntax)
{
    syntax.addOptionalOperand(search);
}

QByteArray RuleListCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    using Listing = std::pair<QList<BookmarkRule>, TargetTexts>;
    const auto [rules, targets] =
        withLibrary(model, [text = search.value_or(QString())](LocalLibraryStore& library) {
            const QList<BookmarkRule> found = library.rules(text);
            return Listing{found, targetTexts(library, found)};
        });
    return answerList(surroundings, rules, QStringLiteral("No rules."),
                      [&texts = targets](const BookmarkRule& rule) { return rowOfRule(rule, texts); });
}

void RuleCreateCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("the name of the new rule"), rule);
    syntax.addRequiredText(QStringLiteral("query"), QStringLiteral("EXPRESSION"), query);
    syntax.addText(QStringLiteral("label"), label);
    syntax.addText(QStringLiteral("folder"), folder);
    syntax.addSwitch(QStringLiteral("disabled"), disabled);
    syntax.addCheck([this] {
        if (label.has_value() == folder.has_value())
            throw CommandError(
                QStringLiteral("The command \"rule create\" takes one of --label and --folder."));
    });
}

QByteArray RuleCreateCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [command = *this](LocalLibraryStore& library) {
        const qint64 targetID = command.label ? requireLabel(library, *command.label).id
                                              : requireFolder(library, *command.folder).id;
        const BookmarkRule created =
            library.createRule(command.rule, command.query,
                               command.label ? BookmarkRule::Action::tag : BookmarkRule::Action::folder,
                               targetID, !command.disabled);
        return Outcome<BookmarkRule>{
            created, QStringLiteral("Rule \"%1\" is %2.").arg(created.name, idText(created.id))};
    });
}

void RulePreviewCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("the name of a rule"), rule);
}

QByteArray RulePreviewCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerBookmarks(surroundings, withLibrary(model, [reference = rule](LocalLibraryStore& library) {
                               return library.previewRule(requireRule(library, reference).id);
                           }));
}

void RuleRunCommand::describe(CommandSyntax& syntax)
{
    syntax.addOptionalOperand(rule);
}

QByteArray RuleRunCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [reference = rule](LocalLibraryStore& library) {
        const qint64 count =
            reference ? library.runRule(requireRule(library, *reference).id) : library.runEnabledRules();
        const QString start = reference ? QStringLiteral("Rule") : QStringLiteral("Enabled rules");
        return Outcome<qint64>{count, start + QStringLiteral(" applied to %1 bookmarks.").arg(count)};
    });
}

void RuleEnableCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(rulesOperand(), rules);
}

QByteArray RuleEnableCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [references = rules](LocalLibraryStore& library) {
        return setEnabled(library, references, true);
    });
}

void RuleDisableCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(rulesOperand(), rules);
}

QByteArray RuleDisableCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [references = rules](LocalLibraryStore& library) {
        return setEnabled(library, references, false);
    });
}

void RuleDeleteCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(rulesOperand(), rules);
}

QByteArray RuleDeleteCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    return answerOutcome(model, surroundings, [references = rules](LocalLibraryStore& library) {
        const QList<BookmarkRule> found = requireRules(library, references);
        for (const BookmarkRule& each : found)
            library.deleteRule(each.id);
        return Outcome<QList<BookmarkRule>>{found, QStringLiteral("Deleted %1.").arg(quotedNames(found))};
    });
}

} // namespace mirel
