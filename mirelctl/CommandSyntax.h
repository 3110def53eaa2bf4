#pragma once

#include "mirelctl/CommandError.h"
#include "support/JSONCoding.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace mirel {

// "newest, oldest or author".
[[nodiscard]] QString choices(QStringList names);

// The texts of an enumeration's cases.
template <RawRepresentable Enumeration>
[[nodiscard]] QStringList rawTexts()
{
    QStringList texts;
    for (const auto& row : rawValues(Enumeration{}))
        texts.append(row.text);
    return texts;
}

// The options and operands of one command, bound to the fields that they fill. The fields must outlive it.
// What it reads throws CommandError when it is not what the command takes.
class CommandSyntax
{
public:
    // Called with the value of an option; empty for a switch.
    using Take = std::function<void(const QString& value)>;

    // "--name"
    void addSwitch(const QString& name, bool& field);
    // "--name VALUE"
    void addOption(const QString& name, const Take& take);
    void addText(const QString& name, std::optional<QString>& field);
    // A whole number of at least `least`.
    void addNumber(const QString& name, qint64& field, qint64 least);
    void addNumber(const QString& name, std::optional<qint64>& field, qint64 least);
    // A hash sign and six hexadecimal digits.
    void addColor(const QString& name, std::optional<QString>& field);
    template <RawRepresentable Enumeration>
    void addChoice(const QString& name, Enumeration& field)
    {
        addOption(name, [name, &field](const QString& value) {
            const auto found = fromRawValue<Enumeration>(value);
            if (!found)
                throw CommandError(QStringLiteral("The option --%1 takes %2, not \"%3\".")
                                       .arg(name, choices(rawTexts<Enumeration>()), value));
            field = *found;
        });
    }

    // An argument that must be there; `what` says what it is: "an X post id or a post's address".
    void addOperand(const QString& what, QString& field);
    void addOptionalOperand(std::optional<QString>& field);
    // All arguments that are left, at least one.
    void addOperands(const QString& what, QStringList& field);
    // An option that must be there, with its value: "--into TARGET".
    void addRequiredText(const QString& name, const QString& valueName, QString& field);

    // Is called when everything was read, and throws CommandError for what does not go together.
    void addCheck(std::function<void()> check) { m_checks.push_back(std::move(check)); }

    // The following are for whoever reads a command line.

    // Absent when the command has no such option. `name` is without its dashes.
    [[nodiscard]] std::optional<bool> optionTakesValue(const QString& name) const;
    // The command must have the option. A switch ignores the value.
    void takeOption(const QString& name, const QString& value = {});
    // Returns false when it is one too many.
    [[nodiscard]] bool takeOperand(const QString& argument);
    // Throws CommandError when something is missing.
    void requireWhole(const QString& commandName) const;

private:
    struct Option
    {
        QString name;
        bool takesValue = false;
        Take take;
        // How a sentence asks for it; empty when it may be missing.
        QString what = {};
        bool isTaken = false;
    };
    struct Operand
    {
        // Empty when it may be missing.
        QString what;
        bool takesAll = false;
        Take take;
        bool isTaken = false;
    };

    [[nodiscard]] std::vector<Option>::const_iterator find(const QString& name) const;

    std::vector<Option> m_options;
    std::vector<Operand> m_operands;
    std::vector<std::function<void()>> m_checks;
};

} // namespace mirel
