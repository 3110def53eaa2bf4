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
        Accepted{"Connect", "connect", {.command = ConnectCommand{}}},
        Accepted{"ConnectWithAllOptions",
                 "connect --client-id a --client-secret-stdin --redirect-uri b",
                 {.command = ConnectCommand{QStringLiteral("a"), true, QStringLiteral("b")}}},
        Accepted{"Disconnect", "disconnect", {.command = DisconnectCommand{}}},
        Accepted{"Purge", "purge", {.command = PurgeCommand{}}},
        Accepted{"PurgeThatIsMeant", "purge --yes", {.command = PurgeCommand{.yes = true}}},
        Accepted{"FullSync", "sync --full", {.command = SyncCommand{.full = true}}},
        Accepted{"History", "history", {.command = HistoryCommand{}}},
        Accepted{
            "HistoryOfARun", "history #7", {.command = HistoryCommand{.reference = QStringLiteral("#7")}}},
        Accepted{"HistoryWithALimit", "history --limit 3", {.command = HistoryCommand{.limit = 3}}},
        Accepted{"Thread", "thread 123", {.command = ThreadCommand{QStringLiteral("123")}}},
        Accepted{"Metrics", "metrics 123", {.command = MetricsCommand{QStringLiteral("123")}}},
        Accepted{"Delete", "delete 123", {.command = DeleteCommand{QStringLiteral("123")}}},
        Accepted{"DeleteHereAlone",
                 "delete 123 --keep-on-x",
                 {.command = DeleteCommand{QStringLiteral("123"), true}}},
        Accepted{"ListWithoutOptions", "list", {.command = ListCommand{}}},
        Accepted{"ListWithAllOptions",
                 "list --filter archive --sort author --limit 7 --offset 30",
                 {.command = ListCommand{{LibraryFilter::archive, LibrarySort::author, 7, 30}}}},
        Accepted{"ValuesBehindAnEqualsSign",
                 "list --filter=favorites --sort=oldest --limit=1 --offset=0",
                 {.command = ListCommand{{LibraryFilter::favorites, LibrarySort::oldest, 1, 0}}}},
        Accepted{"TheLastOfTwoEqualOptionsCounts",
                 "list --limit 7 --limit 8",
                 {.command = ListCommand{{.limit = 8}}}},
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
        Accepted{
            "Presentation", "show --presentation 1", {.command = ShowCommand{QStringLiteral("1"), true}}},
        Accepted{"Open", "open 1", {.command = OpenCommand{QStringLiteral("1")}}},
        Accepted{"Search", "search a", {.command = SearchCommand{.expression = QStringLiteral("a")}}},
        Accepted{"SearchWithAllOptions",
                 "search a --filter read --sort oldest --limit 3 --offset 2 --why",
                 {.command = SearchCommand{.expression = QStringLiteral("a"),
                                           .listing = {LibraryFilter::read, LibrarySort::oldest, 3, 2},
                                           .why = true}}},
        Accepted{"SearchForIDs",
                 "search --ids a",
                 {.command = SearchCommand{.expression = QStringLiteral("a"), .ids = true}}},
        Accepted{"SearchForWhatBeginsWithADash",
                 "search --json -- -a",
                 {.json = true, .command = SearchCommand{.expression = QStringLiteral("-a")}}},
        Accepted{"Count",
                 "count a --filter inbox",
                 {.command = CountCommand{QStringLiteral("a"), LibraryFilter::inbox}}},
        Accepted{"LabelList", "label list", {.command = LabelListCommand{}}},
        Accepted{"LabelListWithSearch", "label list a", {.command = LabelListCommand{QStringLiteral("a")}}},
        Accepted{"CommonOptionInsideOfTheName",
                 "label --json list",
                 {.json = true, .command = LabelListCommand{}}},
        Accepted{"LabelCreate",
                 "label create a --color #0aF012",
                 {.command = LabelCreateCommand{QStringLiteral("a"), QStringLiteral("#0aF012")}}},
        Accepted{"LabelRename",
                 "label rename a b --color #000000",
                 {.command = LabelRenameCommand{QStringLiteral("a"), QStringLiteral("b"),
                                                QStringLiteral("#000000")}}},
        Accepted{
            "LabelMerge",
            "label merge a b --into c",
            {.command = LabelMergeCommand{{QStringLiteral("a"), QStringLiteral("b")}, QStringLiteral("c")}}},
        Accepted{"LabelDelete",
                 "label delete a b",
                 {.command = LabelDeleteCommand{{QStringLiteral("a"), QStringLiteral("b")}}}},
        Accepted{
            "LabelAdd",
            "label add a 1 2",
            {.command = LabelAddCommand{QStringLiteral("a"), {QStringLiteral("1"), QStringLiteral("2")}}}},
        Accepted{"LabelRemove",
                 "label remove a 1",
                 {.command = LabelRemoveCommand{QStringLiteral("a"), {QStringLiteral("1")}}}},
        Accepted{"FolderList", "folder list", {.command = FolderListCommand{}}},
        Accepted{
            "FolderCreate",
            "folder create a --description b --parent c",
            {.command = FolderCreateCommand{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}}},
        Accepted{"FolderUpdate",
                 "folder update a --name b --description= --no-parent",
                 {.command = FolderUpdateCommand{.folder = QStringLiteral("a"),
                                                 .newName = QStringLiteral("b"),
                                                 .description = QString(),
                                                 .withoutParent = true}}},
        Accepted{"FolderUpdateTheOtherWayRound",
                 "folder update a --no-description --parent b",
                 {.command = FolderUpdateCommand{.folder = QStringLiteral("a"),
                                                 .withoutDescription = true,
                                                 .parent = QStringLiteral("b")}}},
        Accepted{"FolderDelete", "folder delete a", {.command = FolderDeleteCommand{{QStringLiteral("a")}}}},
        Accepted{"FolderAssign",
                 "folder assign a 1",
                 {.command = FolderAssignCommand{QStringLiteral("a"), {QStringLiteral("1")}}}},
        Accepted{
            "FolderUnassign", "folder unassign 1", {.command = FolderUnassignCommand{{QStringLiteral("1")}}}},
        Accepted{"RuleList", "rule list a", {.command = RuleListCommand{QStringLiteral("a")}}},
        Accepted{"RuleCreateForALabel",
                 "rule create a --query b --label c --disabled",
                 {.command = RuleCreateCommand{.rule = QStringLiteral("a"),
                                               .query = QStringLiteral("b"),
                                               .label = QStringLiteral("c"),
                                               .disabled = true}}},
        Accepted{"RuleCreateForAFolderWithAnEmptyQuery",
                 "rule create a --query= --folder c",
                 {.command = RuleCreateCommand{.rule = QStringLiteral("a"),
                                               .query = QString(),
                                               .folder = QStringLiteral("c")}}},
        Accepted{"RulePreview", "rule preview a", {.command = RulePreviewCommand{QStringLiteral("a")}}},
        Accepted{"RuleRun", "rule run a", {.command = RuleRunCommand{QStringLiteral("a")}}},
        Accepted{"RuleRunOfAll", "rule run", {.command = RuleRunCommand{}}},
        Accepted{"RuleEnable", "rule enable a", {.command = RuleEnableCommand{{QStringLiteral("a")}}}},
        Accepted{"RuleDisable", "rule disable a", {.command = RuleDisableCommand{{QStringLiteral("a")}}}},
        Accepted{"RuleDelete", "rule delete a", {.command = RuleDeleteCommand{{QStringLiteral("a")}}}},
        Accepted{"HighlightAdd",
                 "highlight add 1 a --context b --start 2 --end 3 --color #fde68a",
                 {.command = HighlightAddCommand{QStringLiteral("1"), QStringLiteral("a"),
                                                 QStringLiteral("b"), 2, 3, QStringLiteral("#fde68a")}}},
        Accepted{"HighlightList", "highlight list 1", {.command = HighlightListCommand{QStringLiteral("1")}}},
        Accepted{"HighlightListOfAll", "highlight list", {.command = HighlightListCommand{}}},
        Accepted{"HighlightDelete",
                 "highlight delete 1 #2",
                 {.command = HighlightDeleteCommand{{QStringLiteral("1"), QStringLiteral("#2")}}}},
        Accepted{"Authors", "authors", {.command = AuthorsCommand{}}},
        Accepted{"AuthorsWithSearch", "authors a", {.command = AuthorsCommand{QStringLiteral("a")}}},
        Accepted{"PreferencesGet", "preferences get", {.command = PreferencesGetCommand{}}},
        Accepted{"PreferencesGetOne",
                 "preferences get a",
                 {.command = PreferencesGetCommand{QStringLiteral("a")}}},
        Accepted{"PreferencesSet",
                 "preferences set a b c d",
                 {.command = PreferencesSetCommand{{QStringLiteral("a"), QStringLiteral("b"),
                                                    QStringLiteral("c"), QStringLiteral("d")}}}},
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
        Refused{"Nothing", "",
                "Say what to do: status, sync, history, list, show, open, thread, metrics, delete, search, "
                "count, "
                "label, folder, rule, highlight, authors, preferences, connect, disconnect or purge; --help "
                "tells more."},
        Refused{"OnlyOptions", "--json",
                "Say what to do: status, sync, history, list, show, open, thread, metrics, delete, search, "
                "count, "
                "label, folder, rule, highlight, authors, preferences, connect, disconnect or purge; --help "
                "tells more."},
        Refused{"UnknownCommand", "frobnicate",
                "There is no command \"frobnicate\": use status, sync, history, list, show, open, thread, "
                "metrics, delete, search, count, label, folder, rule, highlight, authors, preferences, "
                "connect, disconnect or purge."},
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
        Refused{"OpenOfNothing", "open", "The command \"open\" takes an X post id or a post's address."},
        Refused{"SearchForNothing", "search", "The command \"search\" takes a search expression."},
        Refused{"SearchForTwo", "search a b",
                "The argument \"b\" is one too many for the command \"search\"."},
        Refused{"IDsWithReasons", "search a --ids --why", "The options --ids and --why do not go together."},
        Refused{"CountOfNothing", "count", "The command \"count\" takes a search expression."},
        Refused{"CountWithALimit", "count a --limit 1",
                "The command \"count\" has no option --limit; --help tells more."},
        Refused{"GroupAlone", "label",
                "The command \"label\" takes list, create, rename, merge, delete, add or remove."},
        Refused{"GroupWithAnUnknownWord", "rule frobnicate",
                "The command \"rule\" takes list, create, preview, run, enable, disable or delete, not "
                "\"frobnicate\"."},
        Refused{"OptionOfACommandInsideOfItsName", "label --color #000000 create a",
                "There is no option --color before a command; --help tells more."},
        Refused{"LabelWithoutAName", "label create",
                "The command \"label create\" takes the name of the new label."},
        Refused{"ColorInWords", "label create a --color red",
                "The option --color takes a color such as #3E6BF5, not \"red\"."},
        Refused{"ColorThatIsTooLong", "label create a --color #3E6BF5F",
                "The option --color takes a color such as #3E6BF5, not \"#3E6BF5F\"."},
        Refused{"RenameWithoutANewName", "label rename a",
                "The command \"label rename\" takes the new name of the label."},
        Refused{"MergeOfNothing", "label merge --into a",
                "The command \"label merge\" takes the names of labels."},
        Refused{"MergeWithoutATarget", "label merge a", "The command \"label merge\" takes --into TARGET."},
        Refused{"DeleteOfNothing", "folder delete",
                "The command \"folder delete\" takes the names of folders."},
        Refused{"AddToNothing", "label add a",
                "The command \"label add\" takes X post ids or posts' addresses."},
        Refused{"DescriptionAndNone", "folder update a --description b --no-description",
                "The options --description and --no-description do not go together."},
        Refused{"ParentAndNone", "folder update a --parent b --no-parent",
                "The options --parent and --no-parent do not go together."},
        Refused{"RuleWithoutAQuery", "rule create a --label b",
                "The command \"rule create\" takes --query EXPRESSION."},
        Refused{"RuleWithoutATarget", "rule create a --query b",
                "The command \"rule create\" takes one of --label and --folder."},
        Refused{"RuleWithTwoTargets", "rule create a --query b --label c --folder d",
                "The command \"rule create\" takes one of --label and --folder."},
        Refused{"HighlightOfNothing", "highlight add 1",
                "The command \"highlight add\" takes the text to highlight."},
        Refused{"HighlightWithAnEndAlone", "highlight add 1 a --end 2", "The option --end needs --start."},
        Refused{"HighlightBeforeTheText", "highlight add 1 a --start -2",
                "The option --start takes a whole number of at least 0, not \"-2\"."},
        Refused{"PreferenceWithoutAValue", "preferences set pageSize 10 appearance",
                "The preference \"appearance\" is given no value."},
        Refused{"PreferenceWithoutAName", "preferences set",
                "The command \"preferences set\" takes the name of a preference and its value."},
        Refused{"ThreadOfNothing", "thread",
                "The command \"thread\" takes an X post id or a post's address."},
        Refused{"HistoryOfTwoRuns", "history 1 2",
                "The argument \"2\" is one too many for the command \"history\"."},
        Refused{"HistoryOfPartOfARun", "history 1 --limit 2",
                "The option --limit is for the list of syncs, not for one sync."},
        Refused{"HistoryOfNoRuns", "history --limit 0",
                "The option --limit takes a whole number of at least 1, not \"0\"."},
        Refused{"SecretAsAnArgument", "connect --client-secret hidden",
                "The command \"connect\" has no option --client-secret; --help tells more."},
        Refused{"ArgumentOfConnect", "connect me",
                "The argument \"me\" is one too many for the command \"connect\"."},
        Refused{"ArgumentOfSync", "sync now",
                "The argument \"now\" is one too many for the command \"sync\"."}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CommandLine, HelpNamesEveryCommandAndOption)
{
    EXPECT_EQ(commandNames().size(), 40);
    for (const QString& name : commandNames())
        EXPECT_TRUE(helpText().contains(QStringLiteral("\n  ") + name)) << name.toStdString();
    for (const char* name :
         {"--full",           "--filter",      "--sort",      "--limit",     "--offset",
          "--presentation",   "--ids",         "--why",       "--color",     "--into",
          "--name",           "--description", "--parent",    "--query",     "--no-parent",
          "--no-description", "--label",       "--folder",    "--start",     "--end",
          "--disabled",       "--context",     "--json",      "--demo",      "--help",
          "--version",        "--data-dir",    "--keep-on-x", "--client-id", "--client-secret-stdin",
          "--redirect-uri",   "--yes"})
        EXPECT_TRUE(helpText().contains(QLatin1StringView(name))) << name;
}

} // namespace
} // namespace mirel
