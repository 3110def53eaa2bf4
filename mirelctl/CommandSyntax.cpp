#include "mirelctl/CommandSyntax.h"

#include <QRegularExpression>

namespace mirel {

namespace {

qint64 wholeNumber(const QString& option, const QString& value, qint64 least)
{
    bool isNumber = false;
    const qint64 result = value.toLongLong(&isNumber);
    if (!isNumber || result < least)
        throw CommandError(QStringLiteral("The option --%1 takes a whole number of at least %2, not \"%3\".")
                               .arg(option)
                               .arg(least)
                               .arg(value));
    return result;
}

} // namespace

QString choices(QStringList names)
{
    const QString last = names.takeLast();
    return names.isEmpty() ? last : names.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
}

void CommandSyntax::addSwitch(const QString& name, bool& field)
{
    m_options.push_back(
        {.name = name, .takesValue = false, .take = [&field](const QString&) { field = true; }});
}

void CommandSyntax::addOption(const QString& name, const Take& take)
{
    m_options.push_back({.name = name, .takesValue = true, .take = take});
}

void CommandSyntax::addText(const QString& name, std::optional<QString>& field)
{
    addOption(name, [&field](const QString& value) { field = value; });
}

void CommandSyntax::addNumber(const QString& name, qint64& field, qint64 least)
{
    addOption(name, [=, &field](const QString& value) { field = wholeNumber(name, value, least); });
}

void CommandSyntax::addNumber(const QString& name, std::optional<qint64>& field, qint64 least)
{
    addOption(name, [=, &field](const QString& value) { field = wholeNumber(name, value, least); });
}

void CommandSyntax::addColor(const QString& name, std::optional<QString>& field)
{
    addOption(name, [name, &field](const QString& value) {
        static const QRegularExpression color(QStringLiteral("\\A#[0-9A-Fa-f]{6}\\z"));
        if (!color.match(value).hasMatch())
            throw CommandError(QStringLiteral("The option --%1 takes a color such as #3E6BF5, not \"%2\".")
                                   .arg(name, value));
        field = value;
    });
}

void CommandSyntax::addOperand(const QString& what, QString& field)
{
    m_operands.push_back({.what = what, .take = [&field](const QString& value) { field = value; }});
}

void CommandSyntax::addOptionalOperand(std::optional<QString>& field)
{
    m_operands.push_back({.take = [&field](const QString& value) { field = value; }});
}

void CommandSyntax::addOperands(const QString& what, QStringList& field)
{
    m_operands.push_back(
        {.what = what, .takesAll = true, .take = [&field](const QString& value) { field.append(value); }});
}

void CommandSyntax::addRequiredText(const QString& name, const QString& valueName, QString& field)
{
    addOption(name, [&field](const QString& value) { field = value; });
    m_options.back().what = QStringLiteral("--%1 %2").arg(name, valueName);
}

std::vector<CommandSyntax::Option>::const_iterator CommandSyntax::find(const QString& name) const
{
    return std::find_if(m_options.begin(), m_options.end(),
                        [&](const Option& each) { return each.name == name; });
}

std::optional<bool> CommandSyntax::optionTakesValue(const QString& name) const
{
    const auto option = find(name);
    return option == m_options.end() ? std::nullopt : std::optional(option->takesValue);
}

void CommandSyntax::takeOption(const QString& name, const QString& value)
{
    Option& option = m_options[static_cast<size_t>(find(name) - m_options.begin())];
    option.take(value);
    option.isTaken = true;
}

bool CommandSyntax::takeOperand(const QString& argument)
{
    const auto next = std::find_if(m_operands.begin(), m_operands.end(),
                                   [](const Operand& each) { return each.takesAll || !each.isTaken; });
    if (next == m_operands.end())
        return false;
    next->take(argument);
    next->isTaken = true;
    return true;
}

void CommandSyntax::requireWhole(const QString& commandName) const
{
    const auto require = [&](bool isThere, const QString& what) {
        if (!isThere)
            throw CommandError(QStringLiteral("The command \"%1\" takes %2.").arg(commandName, what));
    };
    for (const Operand& operand : m_operands)
        require(operand.isTaken || operand.what.isEmpty(), operand.what);
    for (const Option& option : m_options)
        require(option.isTaken || option.what.isEmpty(), option.what);
    for (const auto& check : m_checks)
        check();
}

} // namespace mirel
