#include "mirelctl/CommandLine.h"

#include "mirelctl/CommandError.h"

namespace mirel {

namespace {

// The cases of an enumeration as a sentence lists them: "newest, oldest or author".
template <RawRepresentable Enumeration>
QString choices()
{
    QStringList names;
    for (const auto& row : rawValues(Enumeration{}))
        names.append(row.text);
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
}

template <RawRepresentable Enumeration>
Enumeration choice(const QString& option, const QString& value)
{
    if (const auto found = fromRawValue<Enumeration>(value))
        return *found;
    throw CommandError(
        QStringLiteral("The option --%1 takes %2, not \"%3\".").arg(option, choices<Enumeration>(), value));
}

qint64 number(const QString& option, const QString& value, qint64 least)
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

std::optional<Command> commandNamed(const QString& name)
{
    if (name == u"status")
        return StatusCommand{};
    if (name == u"sync")
        return SyncCommand{};
    if (name == u"list")
        return ListCommand{};
    if (name == u"show")
        return ShowCommand{};
    return std::nullopt;
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
        if (m_commandName.isEmpty())
            return false;
        if (auto* sync = std::get_if<SyncCommand>(&m_result.command); sync && m_option == u"--full") {
            sync->full = true;
            return true;
        }
        auto* list = std::get_if<ListCommand>(&m_result.command);
        return list && readOptionOfList(*list);
    }

    bool readOptionOfList(ListCommand& list)
    {
        if (m_option == u"--filter")
            list.filter = choice<LibraryFilter>(QStringLiteral("filter"), value());
        else if (m_option == u"--sort")
            list.sort = choice<LibrarySort>(QStringLiteral("sort"), value());
        else if (m_option == u"--limit")
            list.limit = number(QStringLiteral("limit"), value(), 1);
        else if (m_option == u"--offset")
            list.offset = number(QStringLiteral("offset"), value(), 0);
        else
            return false;
        return true;
    }

    void readOperand(const QString& argument)
    {
        if (m_commandName.isEmpty()) {
            const auto command = commandNamed(argument);
            if (!command)
                throw CommandError(
                    QStringLiteral("There is no command \"%1\": use status, sync, list or show.")
                        .arg(argument));
            m_result.command = *command;
            m_commandName = argument;
            return;
        }
        auto* show = std::get_if<ShowCommand>(&m_result.command);
        if (!show || m_hasReference)
            throw CommandError(QStringLiteral("The argument \"%1\" is one too many for the command \"%2\".")
                                   .arg(argument, m_commandName));
        show->reference = argument;
        m_hasReference = true;
    }

    void requireWholeCommand() const
    {
        if (m_commandName.isEmpty())
            throw CommandError(
                QStringLiteral("Say what to do: status, sync, list or show; --help tells more."));
        if (std::holds_alternative<ShowCommand>(m_result.command) && !m_hasReference)
            throw CommandError(
                QStringLiteral("The command \"show\" takes an X post id or a post's address."));
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
        if (m_commandName.isEmpty())
            return QStringLiteral("There is no option %1 before a command; --help tells more.").arg(m_option);
        return QStringLiteral("The command \"%1\" has no option %2; --help tells more.")
            .arg(m_commandName, m_option);
    }

    QStringList m_arguments;
    CommandLine m_result;
    QString m_commandName;
    QString m_option;
    // Of "--option=value", until the option takes it.
    std::optional<QString> m_attachedValue;
    bool m_hasReference = false;
    bool m_optionsEnded = false;
    bool m_isAnswered = false;
};

} // namespace

CommandLine parseCommandLine(const QStringList& arguments)
{
    return Parser(arguments).parse();
}

QString helpText()
{
    return QStringLiteral(R"(Usage: mirelctl [OPTION]... COMMAND

Works with Mirel's library of X bookmarks from a terminal or a script.

Commands:
  status             how the library stands and whether X works
  sync [--full]      bring the library up to date with X; --full goes on to the
                     oldest bookmark instead of stopping where nothing is new
  list [OPTION]...   print bookmarks, one a line
      --filter all|inbox|read|favorites|archive   of one mailbox (all)
      --sort newest|oldest|author                 in this order (newest)
      --limit N                                   at most N bookmarks (50)
      --offset N                                  leave out the first N (0)
  show ID-or-URL     print one bookmark, named by its X post id or address

Options:
  --data-dir DIR     use the library in DIR
  --json             print one JSON document
  --demo             use the simulated account of mirel-simulator, whose address
                     MIREL_X_API_URL names, and no keyring; needs --data-dir
  --help             print this text
  --version          print the version

The exit status is 0, or 1 when the command could not be done.
)");
}

} // namespace mirel
