#include "EndToEndTest.h"

#include "library/LibrarySearchFinding.h"
#include "records/AppPreferences.h"
#include "records/Bookmark.h"
#include "records/BookmarkRule.h"

namespace mirel::testing {
namespace {

using Demo = EndToEndTest;

QByteArrayList linesOf(const QByteArray& output)
{
    return output.isEmpty() ? QByteArrayList() : output.chopped(1).split('\n');
}

TEST_F(Demo, SearchesCountsAndLabelsWhatItFinds)
{
    ASSERT_EQ(mirelctl("sync").exitStatus, 0);
    simulator.forgetRequests();

    const ProgramResult found = mirelctl("search --ids type:article");
    expectSuccess(found, found.output);
    const QByteArrayList ids = linesOf(found.output);
    ASSERT_FALSE(ids.isEmpty());
    const QByteArray number = QByteArray::number(ids.size());
    expectSuccess(mirelctl("count type:article"), number + '\n');
    expectSuccess(mirelctl("count --filter favorites type:article"), "0\n");

    const ProgramResult rows = mirelctl("search type:article --limit 1");
    EXPECT_EQ(rows.exitStatus, 0);
    EXPECT_TRUE(rows.output.startsWith(ids[0] + "  ")) << rows.output.constData();
    EXPECT_EQ(rows.errors, number + " matches.\n");
    expectSuccess(mirelctl("--json search -- -nothing"), "{\"items\":[],\"totalCount\":0}\n");

    const QJsonObject page = parseJSON(mirelctl("search --json --why type:article").output).toObject();
    EXPECT_EQ(page[u"totalCount"].toInteger(), ids.size());
    EXPECT_EQ(fromJSON<QList<Bookmark>>(page[u"items"]).size(), ids.size());
    EXPECT_EQ(fromJSON<QList<QList<LibrarySearchFinding>>>(page[u"why"])[0][0].fields,
              QStringList{QStringLiteral("contentType")});

    expectSuccess(mirelctl("label create Reading"), "Label \"Reading\" is #1 with the color #3E6BF5.\n");
    expectSuccess(mirelctl("label add reading " + ids.join(' ')),
                  "Added \"Reading\" to " + number + " bookmarks.\n");
    expectSuccess(mirelctl("count label:reading"), number + '\n');
    expectSuccess(mirelctl("label remove reading " + ids.join(' ')),
                  "Removed \"Reading\" from " + number + " bookmarks.\n");
    expectSuccess(mirelctl("count label:reading"), "0\n");
    EXPECT_EQ(simulator.requests(), QJsonArray());
}

TEST_F(Demo, FilesByRules)
{
    ASSERT_EQ(mirelctl("sync").exitStatus, 0);
    const QByteArray number = linesOf(mirelctl("count type:article").output).value(0);
    EXPECT_EQ(mirelctl("folder create Box").exitStatus, 0);
    EXPECT_EQ(mirelctl("rule create Articles --query type:article --folder box").exitStatus, 0);
    EXPECT_EQ(linesOf(mirelctl("rule preview articles").output).size(), number.toLongLong());
    expectSuccess(mirelctl("rule run"), "Enabled rules applied to " + number + " bookmarks.\n");
    expectSuccess(mirelctl("count folder:box"), number + '\n');
    const auto rules = decodeJSON<QList<BookmarkRule>>(mirelctl("rule list --json").output);
    ASSERT_EQ(rules.size(), 1);
    EXPECT_EQ(rules[0].lastMatchCount, number.toLongLong());
    expectSuccess(mirelctl("rule disable articles"), "Disabled \"Articles\".\n");
    expectSuccess(mirelctl("rule run"), "Enabled rules applied to 0 bookmarks.\n");
    EXPECT_EQ(mirelctl("folder delete box").exitStatus, 0);
    expectFailure(mirelctl("rule run articles"), "The rule target no longer exists.");
    EXPECT_EQ(library().damage(), QStringList());
}

TEST_F(Demo, OpensHighlightsAndKeepsPreferences)
{
    ASSERT_EQ(mirelctl("sync").exitStatus, 0);
    const QByteArray id = linesOf(mirelctl("search --ids type:article").output).value(0);
    expectSuccess(mirelctl("highlight add " + id + " words"), "Highlight #1 is stored.\n");
    const ProgramResult opened = mirelctl("open https://x.com/anyone/status/" + id);
    EXPECT_EQ(opened.exitStatus, 0);
    EXPECT_TRUE(opened.output.contains("\nHighlight   words\n")) << opened.output.constData();
    const QJsonObject shown = parseJSON(mirelctl("show --presentation " + id).output).toObject();
    EXPECT_EQ(shown[u"contentType"].toString(), QStringLiteral("article"));

    const ProgramResult set = mirelctl("preferences set pageSize 500 appearance sepia");
    EXPECT_EQ(set.exitStatus, 0);
    EXPECT_EQ(set.output, "appearance  sepia\npageSize    200\n");
    EXPECT_EQ(set.errors, "The preference \"pageSize\" cannot be 500 and is now 200.\n");
    expectSuccess(mirelctl("preferences get pageSize"), "200\n");
    EXPECT_EQ(decodeJSON<AppPreferences>(mirelctl("preferences get --json").output).appearance,
              AppPreferences::Appearance::sepia);
}

TEST_F(Demo, RefusesInOneSentenceAndChangesNothing)
{
    expectFailure(mirelctl("search"), "The command \"search\" takes a search expression.");
    expectFailure(mirelctl("label"),
                  "The command \"label\" takes list, create, rename, merge, delete, add or remove.");
    expectFailure(mirelctl("label create --"),
                  "The command \"label create\" takes the name of the new label.");
    expectFailure(runProgram(programs::mirelctl,
                             arguments("label create") + QStringList{QStringLiteral("  ")}, environment()),
                  "A non-empty name is required.");
    expectFailure(mirelctl("label add reading 1"), "There is no label \"reading\".");
    expectFailure(mirelctl("open nonsense"), "Enter a valid X post URL or tweet ID.");
    expectFailure(mirelctl("open 1"), "That X post is not in the local library.");
    expectFailure(mirelctl("rule run nothing"), "There is no rule \"nothing\".");
    expectFailure(mirelctl("preferences set libraryLayout table"),
                  "The preference \"libraryLayout\" takes list or grid, not \"table\".");
    expectSuccess(mirelctl("label list"), "No labels.\n");
    expectSuccess(mirelctl("rule run"), "Enabled rules applied to 0 bookmarks.\n");
    expectSuccess(mirelctl("preferences get libraryLayout"), "list\n");
}

} // namespace
} // namespace mirel::testing
