#include "testing/Printing.h"

#include "simulator/CommandLine.h"
#include "simulator/SimulatorError.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace mirel::simulator {
namespace {

CommandLine parse(const QStringList& arguments)
{
    return CommandLine::parse(QStringList{QStringLiteral("mirel-simulator")} + arguments);
}

QString failureOf(const QStringList& arguments)
{
    try {
        static_cast<void>(parse(arguments));
        return {};
    } catch (const SimulatorError& error) {
        return error.description();
    }
}

TEST(CommandLine, ReadsItsNumbers)
{
    const CommandLine line =
        parse({QStringLiteral("--posts"), QStringLiteral("50000"), QStringLiteral("--seed=9"),
               QStringLiteral("--port"), QStringLiteral("8080"), QStringLiteral("--folders=40")});
    EXPECT_EQ(line.options.posts, 50'000);
    EXPECT_EQ(line.options.seed, 9U);
    EXPECT_EQ(line.options.port, 8080);
    EXPECT_EQ(line.options.folders, 40);
    EXPECT_TRUE(line.notice.isEmpty());
    EXPECT_FALSE(line.scenario);
}

TEST(CommandLine, SaysWhatIsWrongWithItsArguments)
{
    const std::pair<QStringList, QString> rows[] = {
        {{QStringLiteral("--posts"), QStringLiteral("50001")},
         QStringLiteral("--posts needs a number from 0 to 50000, not “50001”.")},
        {{QStringLiteral("--posts"), QStringLiteral("-1")},
         QStringLiteral("--posts needs a number from 0 to 50000, not “-1”.")},
        {{QStringLiteral("--folders"), QStringLiteral("1001")},
         QStringLiteral("--folders needs a number from 0 to 1000, not “1001”.")},
        {{QStringLiteral("--port"), QStringLiteral("http")},
         QStringLiteral("--port needs a number from 0 to 65535, not “http”.")},
        {{QStringLiteral("now")}, QStringLiteral("Unexpected argument “now”.")},
        {{QStringLiteral("--fast")}, QStringLiteral("Unknown option 'fast'.")},
        {{QStringLiteral("--scenario"), QStringLiteral("/nowhere/at/all.json")},
         QStringLiteral(
             "The scenario file “/nowhere/at/all.json” cannot be read: No such file or directory.")},
    };
    for (const auto& [arguments, description] : rows)
        EXPECT_EQ(failureOf(arguments), description);
}

TEST(CommandLine, ReadsAScenarioFileAndRefusesABrokenOne)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(R"({"faults":[{"action":"stall"}]})");
    file.flush();
    const CommandLine line = parse({QStringLiteral("--scenario"), file.fileName()});
    ASSERT_TRUE(line.scenario);
    EXPECT_EQ(line.scenario->faults.first().action, Fault::Action::Stall);
    file.write("}");
    file.flush();
    EXPECT_TRUE(failureOf({QStringLiteral("--scenario"), file.fileName()})
                    .startsWith(QStringLiteral("The scenario cannot be used: it is no JSON at byte ")));
}

TEST(CommandLine, OffersHelpAndVersion)
{
    EXPECT_TRUE(parse({QStringLiteral("--help")}).notice.contains(QStringLiteral("--scenario <FILE>")));
    EXPECT_TRUE(parse({QStringLiteral("--version")}).notice.startsWith(QStringLiteral("mirel-simulator ")));
}

} // namespace
} // namespace mirel::simulator
