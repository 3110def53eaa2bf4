#include "CommandBench.h"

#include "library/LibrarySearchContext.h"
#include "library/LibrarySearchFinding.h"

namespace mirel {
namespace {

class SearchCommands : public testing::CommandBench
{
protected:
    void SetUp() override
    {
        CommandBench::SetUp();
        storePosts(3);
    }

    QList<Bookmark> items(const QByteArray& line)
    {
        return fromJSON<QList<Bookmark>>(parseJSON(output(line, forMachines)).toObject()[u"items"]);
    }
};

TEST_F(SearchCommands, PrintTheMatchesAsTheListDoes)
{
    EXPECT_EQ(text("search \"number 2 OR number 3\""), "10003  2020-09-13  •   @ada  Post number 3\n"
                                                       "10002  2020-09-13  •   @ada  Post number 2");
    EXPECT_EQ(text("search \"number 2 OR number 3\""), text("list --limit 2"));
}

TEST_F(SearchCommands, TakeTheOptionsOfTheList)
{
    const auto ids = [&](const QByteArray& options) {
        QStringList found;
        for (const Bookmark& bookmark : items("search post " + options))
            found.append(bookmark.tweetID);
        return found.join(u' ').toUtf8();
    };
    EXPECT_EQ(ids(""), "10003 10002 10001");
    EXPECT_EQ(ids("--sort oldest"), "10001 10002 10003");
    EXPECT_EQ(ids("--limit 1 --offset 1"), "10002");
    EXPECT_EQ(ids("--filter favorites"), "");
    EXPECT_EQ(ids("--offset 3"), "");
}

TEST_F(SearchCommands, GiveMachinesThePageAndTheNumberOfAllMatches)
{
    const QJsonObject page = parseJSON(output("search number --limit 2", forMachines)).toObject();
    EXPECT_EQ(page.keys(), QStringList({QStringLiteral("items"), QStringLiteral("totalCount")}));
    EXPECT_EQ(page[u"totalCount"].toInteger(), 3);
    EXPECT_TRUE(fromJSON<QList<Bookmark>>(page[u"items"]) == inLibrary([](LocalLibraryStore& library) {
                    return library.listBookmarks(LibraryFilter::all, 2, 0, LibrarySort::newest);
                }));
    EXPECT_EQ(output("search nowhere", forMachines), "{\"items\":[],\"totalCount\":0}\n");
    EXPECT_EQ(output("search post --offset 9", forMachines), "{\"items\":[],\"totalCount\":3}\n");
    EXPECT_EQ(output("search nowhere --why", forMachines), "{\"items\":[],\"totalCount\":0,\"why\":[]}\n");
}

TEST_F(SearchCommands, TellBesideTheTextHowManyThereAreAndHowTheQueryWasUnderstood)
{
    EXPECT_EQ(text("search nowhere"), "No bookmarks.");
    EXPECT_EQ(remarks, QStringList{QStringLiteral("0 matches.")});
    remarks.clear();
    text("search \"number 2\" --limit 1");
    EXPECT_EQ(remarks,
              QStringList({QStringLiteral("Understood as: number AND 2"), QStringLiteral("1 match.")}));
    remarks.clear();
    text("search ()");
    EXPECT_EQ(remarks,
              QStringList({QStringLiteral("Understood as everything."), QStringLiteral("3 matches.")}));
    remarks.clear();
    text("search \"\"");
    EXPECT_EQ(remarks, QStringList{QStringLiteral("3 matches.")});
    remarks.clear();
    output("search \"number 2\"", forMachines);
    text("search --ids \"number 2\"");
    text("count \"number 2\"");
    EXPECT_TRUE(remarks.isEmpty());
}

TEST_F(SearchCommands, NeverFailWhateverIsAsked)
{
    for (const QByteArray expression :
         {"\" \"", "NOT", "(((", "\") a\"", "is:nonsense", "label:@", "-- --ids", "*"})
        EXPECT_EQ(failure("search " + expression), "no failure") << expression.constData();
    EXPECT_EQ(text("count \" \""), "3");
    EXPECT_EQ(text("count is:nonsense"), "3");
    EXPECT_EQ(text("count -- -number"), "0");
}

TEST_F(SearchCommands, PrintTheIDsOfAllMatchesInOrder)
{
    EXPECT_EQ(text("search --ids post --limit 1 --offset 1"), "10003\n10002\n10001");
    EXPECT_EQ(text("search --ids post --sort oldest"), "10001\n10002\n10003");
    EXPECT_EQ(output("search --ids nowhere", forPipes), "");
    EXPECT_EQ(output("search --ids \"number 2\"", forMachines), "[\"10002\"]\n");
    EXPECT_EQ(output("search --ids nowhere", forMachines), "[]\n");
    inLibrary([](LocalLibraryStore& library) { library.deleteBookmarkLocally(2); });
    EXPECT_EQ(text("search --ids post"), "10003\n10001");
    EXPECT_EQ(output("search --ids post --filter favorites", forPipes), "");
}

TEST_F(SearchCommands, ReadLongResultsInBatchesWithoutGapOrRepeat)
{
    inLibrary([now = test.library.clock.now()](LocalLibraryStore& library) {
        for (int number = 4; number <= 1'203; ++number)
            library.upsertFromX(testing::makePost(number), now);
    });
    const auto found = items("search post --sort oldest --limit 5000 --offset 3");
    ASSERT_EQ(found.size(), 1'200);
    for (qsizetype i = 0; i < found.size(); ++i)
        ASSERT_EQ(found[i].text, QStringLiteral("Post number %1").arg(i + 4));
    EXPECT_EQ(text("search post --ids").count('\n'), 1'202);
}

TEST_F(SearchCommands, TellBelowEachMatchWhereEachConditionMatched)
{
    text("label create Work");
    text("label add work 10003");
    EXPECT_EQ(text("search --why \"ada (label:work OR is:nonsense OR \x1b[2Jx)\" --limit 2"),
              "10003  2020-09-13  •   @ada  Post number 3\n"
              "     ada          sourceURL, author.name, author.username\n"
              "     label:work   tags\n"
              "     is:nonsense  matches everything\n"
              "     [2Jx         no match\n"
              "10002  2020-09-13  •   @ada  Post number 2\n"
              "     ada          sourceURL, author.name, author.username\n"
              "     label:work   no match\n"
              "     is:nonsense  matches everything\n"
              "     [2Jx         no match");
    EXPECT_EQ(text("search --why nowhere"), "No bookmarks.");
}

TEST_F(SearchCommands, GiveMachinesTheFindingsOfEachItem)
{
    const QJsonObject page =
        parseJSON(output("search --why \"number 3 OR label:x\"", forMachines)).toObject();
    const auto found = fromJSON<QList<Bookmark>>(page[u"items"]);
    const auto why = fromJSON<QList<QList<LibrarySearchFinding>>>(page[u"why"]);
    ASSERT_EQ(found.size(), 1);
    ASSERT_EQ(why.size(), 1);
    const auto expression = LibrarySearchExpression::parse(QStringLiteral("number 3 OR label:x"));
    EXPECT_TRUE(why[0] == explain(expression, LibrarySearchContext(found[0])));
    EXPECT_EQ(why[0].size(), 3);
}

TEST_F(SearchCommands, CountTheMatches)
{
    EXPECT_EQ(text("count post"), "3");
    EXPECT_EQ(output("count \"number 2\"", forMachines), "1\n");
    EXPECT_EQ(text("count post --filter favorites"), "0");
}

} // namespace
} // namespace mirel
