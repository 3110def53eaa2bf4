#include "mirelctl/CommandLine.h"

#include "mirelctl/CommandError.h"
#include "mirelctl/CommandSyntax.h"

namespace mirel {

namespace {

template <typename T>
concept NamedCommand = requires
{
    T::name;
};

// Calls `take` with a fresh value of each command that has a name.
template <typename Take, typename... Commands>
void forEachNamed(const Take& take, const std::variant<Commands...>&)
{
    const auto takeOne = [&]<typename Each>(Each command) {
        if constexpr (NamedCommand<Each>)
            take(std::move(command));
    };
    (takeOne(Commands{}), ...);
}

std::optional<Command> commandNamed(const QString& name)
{
    std::optional<Command> found;
    forEachNamed(
        [&](auto command) {
            if (command.name == name)
                found = std::move(command);
        },
        Command());
    return found;
}

// The first words of all commands, or the second words of those that begin with `group`.
QStringList wordsAfter(const QString& group)
{
    QStringList words;
    for (const QString& name : commandNames()) {
        if (group.isEmpty())
            words.append(name.section(u' ', 0, 0));
        else if (name.startsWith(group + u' '))
            words.append(name.section(u' ', 1));
    }
    words.removeDuplicates();
    return words;
}

class Parser
{
public:
    explicit Parser(QStringList arguments)
        : m_arguments(std::move(arguments))
    {
    }

    CommandLine parse()
    {
        while (!m_arguments.isEmpty() && !m_isAnswered) {
            const QString argument = m_arguments.takeFirst();
            if (m_optionsEnded || argument == u"-" || !argument.startsWith(u'-'))
                readOperand(argument);
            else if (argument == u"--")
                m_optionsEnded = true;
            else
                readOption(argument);
        }
        if (!m_isAnswered)
            requireWholeCommand();
        return m_result;
    }

private:
    void readOption(const QString& argument)
    {
        m_option = argument.section(u'=', 0, 0);
        m_attachedValue.reset();
        if (argument.contains(u'='))
            m_attachedValue = argument.section(u'=', 1);
        if (!readCommonOption() && !readOptionOfCommand())
            throw CommandError(unknownOption());
        if (m_attachedValue)
            throw CommandError(QStringLiteral("The option %1 takes no value.").arg(m_option));
    }

    bool readCommonOption()
    {
        if (m_option == u"--data-dir") {
            m_result.dataDirectory = value();
            if (m_result.dataDirectory->isEmpty())
                throw CommandError(QStringLiteral("The option --data-dir takes a directory."));
        } else if (m_option == u"--json") {
            m_result.json = true;
        } else if (m_option == u"--demo") {
            m_result.demo = true;
        } else if (m_option == u"--help" || m_option == u"-h") {
            answer(HelpCommand{});
        } else if (m_option == u"--version") {
            answer(VersionCommand{});
        } else {
            return false;
        }
        return true;
    }

    bool readOptionOfCommand()
    {
        if (!m_option.startsWith(u"--"))
            return false;
        const QString name = m_option.sliced(2);
        const auto takesValue = m_syntax.optionTakesValue(name);
        if (takesValue)
            m_syntax.takeOption(name, *takesValue ? value() : QString());
        return takesValue.has_value();
    }

    void readOperand(const QString& argument)
    {
        if (!m_isCommandRead)
            return readWordOfCommand(argument);
        if (!m_syntax.takeOperand(argument))
            throw CommandError(QStringLiteral("The argument \"%1\" is one too many for the command \"%2\".")
                                   .arg(argument, m_commandName));
    }

    void readWordOfCommand(const QString& word)
    {
        const QString name = m_commandName.isEmpty() ? word : m_commandName + u' ' + word;
        if (auto command = commandNamed(name)) {
            m_result.command = *std::move(command);
            bindCommand();
        } else if (!m_commandName.isEmpty()) {
            throw CommandError(QStringLiteral("The command \"%1\" takes %2, not \"%3\".")
                                   .arg(m_commandName, choices(wordsAfter(m_commandName)), word));
        } else if (wordsAfter(word).isEmpty()) {
            throw CommandError(
                QStringLiteral("There is no command \"%1\": use %2.").arg(word, choices(wordsAfter({}))));
        }
        m_commandName = name;
    }

    void bindCommand()
    {
        const auto describe = [&]<typename Each>(Each& command) {
            if constexpr (NamedCommand<Each>)
                command.describe(m_syntax);
        };
        std::visit(describe, m_result.command);
        m_isCommandRead = true;
    }

    void requireWholeCommand() const
    {
        if (m_commandName.isEmpty())
            throw CommandError(
                QStringLiteral("Say what to do: %1; --help tells more.").arg(choices(wordsAfter({}))));
        if (!m_isCommandRead)
            throw CommandError(QStringLiteral("The command \"%1\" takes %2.")
                                   .arg(m_commandName, choices(wordsAfter(m_commandName))));
        m_syntax.requireWhole(m_commandName);
    }

    QString value()
    {
        if (m_attachedValue)
            return *std::exchange(m_attachedValue, std::nullopt);
        if (m_arguments.isEmpty())
            throw CommandError(QStringLiteral("The option %1 takes a value.").arg(m_option));
        return m_arguments.takeFirst();
    }

    void answer(Command command)
    {
        m_result.command = std::move(command);
        m_isAnswered = true;
    }

    [[nodiscard]] QString unknownOption() const
    {
        if (!m_isCommandRead)
            return QStringLiteral("There is no option %1 before a command; --help tells more.").arg(m_option);
        return QStringLiteral("The command \"%1\" has no option %2; --help tells more.")
            .arg(m_commandName, m_option);
    }

    QStringList m_arguments;
    CommandLine m_result;
    // Bound to the fields of the command in `m_result`.
    CommandSyntax m_syntax;
    QString m_commandName;
    QString m_option;
    // Of "--option=value", until the option takes it.
    std::optional<QString> m_attachedValue;
    bool m_isCommandRead = false;
    bool m_optionsEnded = false;
    bool m_isAnswered = false;
};

} // namespace

CommandLine parseCommandLine(const QStringList& arguments)
{
    return Parser(arguments).parse();
}

QStringList commandNames()
{
    QStringList names;
    forEachNamed([&](const auto& command) { names.append(command.name); }, Command());
    return names;
}

} // namespace mirel
