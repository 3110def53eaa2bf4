#include "CommandBench.h"

namespace mirel {
namespace {

class RuleCommands : public testing::CommandBench
{
protected:
    void SetUp() override
    {
        CommandBench::SetUp();
        storePosts(3);
        text("label create Work");
        text("folder create Box");
    }
};

TEST_F(RuleCommands, ListRulesWithWhatTheyFileUnder)
{
    EXPECT_EQ(text("rule list"), "No rules.");
    text("rule create b --query \"number 2\" --label work");
    text("rule create a --query is:unread --folder box --disabled");
    text("rule run b");
    EXPECT_EQ(text("rule list"), "#2  disabled  a  folder \"Box\"  never run                 is:unread\n"
                                 "#1  enabled   b  label \"Work\"  1 bookmark on 2023-11-14  number 2");
    EXPECT_EQ(text("rule list UNREAD"), "#2  disabled  a  folder \"Box\"  never run  is:unread");
    EXPECT_TRUE(json<QList<BookmarkRule>>("rule list") ==
                inLibrary([](LocalLibraryStore& library) { return library.rules(); }));
    text("label delete work");
    EXPECT_EQ(text("rule list number"),
              "#1  enabled  b  label #1, which no longer exists  1 bookmark on 2023-11-14  number 2");
}

TEST_F(RuleCommands, CreateARule)
{
    EXPECT_EQ(text("rule create \" a \" --query x --label work"), "Rule \"a\" is #1.");
    const auto rule = json<BookmarkRule>("rule create b --query \" \" --folder #1 --disabled");
    EXPECT_EQ(rule.query, QStringLiteral(" "));
    EXPECT_EQ(rule.action, BookmarkRule::Action::folder);
    EXPECT_EQ(rule.targetID, 1);
    EXPECT_FALSE(rule.isEnabled);
    EXPECT_EQ(failure("rule create c --query x --label y"), "There is no label \"y\".");
    EXPECT_EQ(failure("rule create c --query x --folder y"), "There is no folder \"y\".");
    EXPECT_EQ(failure("rule create \" \" --query x --label work"), "A non-empty name is required.");
    EXPECT_TRUE(failure("rule create A --query x --label work").contains("UNIQUE"));
    EXPECT_EQ(json<QList<BookmarkRule>>("rule list").size(), 2);
}

TEST_F(RuleCommands, PreviewPrintsWhatWouldBeFiledAndFilesNothing)
{
    text("rule create a --query \"number 2 OR number 3\" --label work");
    EXPECT_EQ(text("rule preview a"), "10003  2020-09-13  •   @ada  Post number 3\n"
                                      "10002  2020-09-13  •   @ada  Post number 2");
    const auto bookmarks = json<QList<Bookmark>>("rule preview A");
    ASSERT_EQ(bookmarks.size(), 2);
    EXPECT_TRUE(bookmarks[0].tags.isEmpty());
    text("rule create none --query nowhere --label work");
    EXPECT_EQ(text("rule preview none"), "No bookmarks.");
    EXPECT_EQ(failure("rule preview x"), "There is no rule \"x\".");
}

TEST_F(RuleCommands, RunARuleByItsNameEnabledOrNot)
{
    text("rule create a --query \"number 2\" --label work --disabled");
    EXPECT_EQ(text("rule run A"), "Rule applied to 1 bookmarks.");
    EXPECT_EQ(output("rule run #1", forMachines), "1\n");
    EXPECT_EQ(text("search --ids label:work"), "10002");
    EXPECT_EQ(failure("rule run x"), "There is no rule \"x\".");
}

TEST_F(RuleCommands, RunAllThatAreEnabled)
{
    EXPECT_EQ(text("rule run"), "Enabled rules applied to 0 bookmarks.");
    text("rule create a --query \"number 2\" --label work");
    text("rule create b --query \"\" --folder box");
    text("rule create c --query \"\" --label work --disabled");
    EXPECT_EQ(text("rule run"), "Enabled rules applied to 4 bookmarks.");
    EXPECT_EQ(text("count label:work"), "1");
    EXPECT_EQ(text("count folder:box"), "3");
    EXPECT_EQ(output("rule run", forMachines), "4\n");
}

TEST_F(RuleCommands, FailWhenTheTargetOfTheRuleIsGone)
{
    text("rule create a --query \"\" --label work");
    text("label delete work");
    EXPECT_EQ(failure("rule run a"), "The rule target no longer exists.");
    EXPECT_EQ(failure("rule run"), "The rule target no longer exists.");
}

TEST_F(RuleCommands, EnableDisableAndDeleteRules)
{
    text("rule create a --query x --label work");
    text("rule create b --query x --label work");
    EXPECT_EQ(text("rule disable a B"), "Disabled \"a\", \"b\".");
    EXPECT_EQ(text("rule enable a"), "Enabled \"a\".");
    const auto rules = json<QList<BookmarkRule>>("rule disable a");
    ASSERT_EQ(rules.size(), 1);
    EXPECT_FALSE(rules[0].isEnabled);
    EXPECT_TRUE(json<QList<BookmarkRule>>("rule enable b")[0].isEnabled);
    EXPECT_TRUE(json<QList<BookmarkRule>>("rule list")[1].isEnabled);
    EXPECT_FALSE(json<QList<BookmarkRule>>("rule list")[0].isEnabled);
    EXPECT_EQ(failure("rule delete a x"), "There is no rule \"x\".");
    EXPECT_EQ(failure("rule enable x"), "There is no rule \"x\".");
    EXPECT_EQ(text("rule delete a"), "Deleted \"a\".");
    EXPECT_EQ(json<QList<BookmarkRule>>("rule delete b").size(), 1);
    EXPECT_EQ(text("rule list"), "No rules.");
}

} // namespace
} // namespace mirel
