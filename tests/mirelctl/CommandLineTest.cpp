#include "testing/Printing.h"

#include "mirelctl/CommandError.h"
#include "mirelctl/CommandLine.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

struct Accepted
{
    const char* name;
    const char* arguments;
    CommandLine meaning;
};

class AcceptedCommandLine : public ::testing::TestWithParam<Accepted>
{
};

TEST_P(AcceptedCommandLine, IsUnderstood)
{
    EXPECT_TRUE(parseCommandLine(words(GetParam().arguments)) == GetParam().meaning);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, AcceptedCommandLine,
    ::testing::Values(
        Accepted{"Status", "status", {.command = StatusCommand{}}},
        Accepted{"Sync", "sync", {.command = SyncCommand{.full = false}}},
        Accepted{"FullSync", "sync --full", {.command = SyncCommand{.full = true}}},
        Accepted{"ListWithoutOptions", "list", {.command = ListCommand{}}},
        Accepted{"ListWithAllOptions",
                 "list --filter archive --sort author --limit 7 --offset 30",
                 {.command = ListCommand{LibraryFilter::archive, LibrarySort::author, 7, 30}}},
        Accepted{"ValuesBehindAnEqualsSign",
                 "list --filter=favorites --sort=oldest --limit=1 --offset=0",
                 {.command = ListCommand{LibraryFilter::favorites, LibrarySort::oldest, 1, 0}}},
        Accepted{"TheLastOfTwoEqualOptionsCounts",
                 "list --limit 7 --limit 8",
                 {.command = ListCommand{.limit = 8}}},
        Accepted{"ShowByID", "show 123", {.command = ShowCommand{QStringLiteral("123")}}},
        Accepted{"ShowOfWhatLooksLikeAnOption",
                 "show -- --full",
                 {.command = ShowCommand{QStringLiteral("--full")}}},
        Accepted{"CommonOptionsBeforeTheCommand",
                 "--data-dir /some/where --json --demo status",
                 {.dataDirectory = QStringLiteral("/some/where"),
                  .json = true,
                  .demo = true,
                  .command = StatusCommand{}}},
        Accepted{
            "CommonOptionsBehindTheCommand",
            "status --demo --data-dir=a=b --json",
            {.dataDirectory = QStringLiteral("a=b"), .json = true, .demo = true, .command = StatusCommand{}}},
        Accepted{"Help", "--help", {.command = HelpCommand{}}},
        Accepted{"HelpForACommand", "list --help --nonsense", {.command = HelpCommand{}}},
        Accepted{"Version", "--version", {.command = VersionCommand{}}}),
    [](const auto& row) { return std::string(row.param.name); });

struct Refused
{
    const char* name;
    const char* arguments;
    const char* sentence;
};

class RefusedCommandLine : public ::testing::TestWithParam<Refused>
{
};

TEST_P(RefusedCommandLine, SaysWhatIsWrong)
{
    try {
        [[maybe_unused]] const auto line = parseCommandLine(words(GetParam().arguments));
        FAIL() << "was understood";
    } catch (const CommandError& error) {
        EXPECT_EQ(error.description(), QString::fromUtf8(GetParam().sentence));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lines, RefusedCommandLine,
    ::testing::Values(
        Refused{"Nothing", "", "Say what to do: status, sync, list or show; --help tells more."},
        Refused{"OnlyOptions", "--json", "Say what to do: status, sync, list or show; --help tells more."},
        Refused{"UnknownCommand", "frobnicate",
                "There is no command \"frobnicate\": use status, sync, list or show."},
        Refused{"UnknownOption", "--verbose status",
                "There is no option --verbose before a command; --help tells more."},
        Refused{"UnknownOptionOfACommand", "status --verbose",
                "The command \"status\" has no option --verbose; --help tells more."},
        Refused{"OptionOfAnotherCommand", "list --full",
                "The command \"list\" has no option --full; --help tells more."},
        Refused{"OptionOfACommandBeforeIt", "--full sync",
                "There is no option --full before a command; --help tells more."},
        Refused{"ValueForASwitch", "sync --full=yes", "The option --full takes no value."},
        Refused{"ValueForHelp", "--help=list", "The option --help takes no value."},
        Refused{"MissingValue", "list --limit", "The option --limit takes a value."},
        Refused{"MissingDirectory", "status --data-dir", "The option --data-dir takes a value."},
        Refused{"EmptyDirectory", "status --data-dir=", "The option --data-dir takes a directory."},
        Refused{"UnknownFilter", "list --filter unread",
                "The option --filter takes all, inbox, read, favorites or archive, not \"unread\"."},
        Refused{"UnknownSort", "list --sort random",
                "The option --sort takes newest, oldest or author, not \"random\"."},
        Refused{"LimitOfZero", "list --limit 0",
                "The option --limit takes a whole number of at least 1, not \"0\"."},
        Refused{"LimitInWords", "list --limit many",
                "The option --limit takes a whole number of at least 1, not \"many\"."},
        Refused{"LimitThatNoNumberHolds", "list --limit 99999999999999999999",
                "The option --limit takes a whole number of at least 1, not \"99999999999999999999\"."},
        Refused{"NegativeOffset", "list --offset -1",
                "The option --offset takes a whole number of at least 0, not \"-1\"."},
        Refused{"ShowOfNothing", "show", "The command \"show\" takes an X post id or a post's address."},
        Refused{"ShowOfTwo", "show 1 2", "The argument \"2\" is one too many for the command \"show\"."},
        Refused{"ArgumentOfSync", "sync now",
                "The argument \"now\" is one too many for the command \"sync\"."}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CommandLine, HelpNamesEveryCommandAndOption)
{
    for (const char* name : {"status", "sync", "list", "show", "--full", "--filter", "--sort", "--limit",
                             "--offset", "--data-dir", "--json", "--demo", "--help", "--version"})
        EXPECT_TRUE(helpText().contains(QLatin1StringView(name))) << name;
}

} // namespace
} // namespace mirel
