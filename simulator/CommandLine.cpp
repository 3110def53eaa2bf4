#include "simulator/CommandLine.h"

#include "simulator/SimulatorError.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

namespace mirel::simulator {

namespace {

[[noreturn]] void fail(const QString& problem)
{
    throw SimulatorError(SimulatorError::Case::InvalidArgument, problem);
}

qulonglong number(const QCommandLineParser& parser, const QString& name, qulonglong largest)
{
    bool readable = false;
    const QString text = parser.value(name);
    const qulonglong value = text.toULongLong(&readable);
    if (!readable || value > largest)
        fail(QStringLiteral("--%1 needs a number from 0 to %2, not “%3”.").arg(name).arg(largest).arg(text));
    return value;
}

Scenario readScenario(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("The scenario file “%1” cannot be read: %2.").arg(name, file.errorString()));
    return Scenario::fromJSON(file.readAll());
}

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(
        QStringLiteral("Plays X on the loopback address, for tests and for the demo."));
    parser.addOptions({
        {QStringLiteral("posts"), QStringLiteral("How many posts are bookmarked (1000)."),
         QStringLiteral("N"), QStringLiteral("1000")},
        {QStringLiteral("seed"), QStringLiteral("What the posts are made from (1)."), QStringLiteral("S"),
         QStringLiteral("1")},
        {QStringLiteral("folders"), QStringLiteral("How many folders there are, the last one empty (6)."),
         QStringLiteral("N"), QStringLiteral("6")},
        {QStringLiteral("port"), QStringLiteral("Where to listen; 0 picks a free port (0)."),
         QStringLiteral("P"), QStringLiteral("0")},
        {QStringLiteral("scenario"), QStringLiteral("What goes wrong, as simulator/README.md describes it."),
         QStringLiteral("FILE")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Prints this text.")},
        {{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Prints the version.")},
    });
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    describe(parser);
    CommandLine result;
    if (!parser.parse(arguments))
        fail(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        result.notice = parser.helpText();
        return result;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        result.notice = QStringLiteral("mirel-simulator %1\n").arg(QCoreApplication::applicationVersion());
        return result;
    }
    if (!parser.positionalArguments().isEmpty())
        fail(QStringLiteral("Unexpected argument “%1”.").arg(parser.positionalArguments().first()));
    result.options.posts =
        static_cast<int>(number(parser, QStringLiteral("posts"), SimulatorOptions::largestAccount));
    result.options.seed = number(parser, QStringLiteral("seed"), std::numeric_limits<qulonglong>::max());
    result.options.folders =
        static_cast<int>(number(parser, QStringLiteral("folders"), SimulatorOptions::mostFolders));
    result.options.port = static_cast<quint16>(number(parser, QStringLiteral("port"), 65535));
    if (parser.isSet(QStringLiteral("scenario")))
        result.scenario = readScenario(parser.value(QStringLiteral("scenario")));
    return result;
}

} // namespace mirel::simulator
