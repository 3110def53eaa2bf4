#include "CommandBench.h"

namespace mirel {
namespace {

using LabelCommands = testing::CommandBench;

TEST_F(LabelCommands, ListsLabelsWithTheirCounts)
{
    EXPECT_EQ(text("label list"), "No labels.");
    EXPECT_EQ(output("label list", forMachines), "[]\n");
    storePosts(1);
    text("label create Work");
    text("label create \"Deep work\" --color #0F9D8A");
    text("label add work 10001");
    EXPECT_EQ(text("label list"), "#2  #0F9D8A  0 bookmarks  0 unread  Deep work\n"
                                  "#1  #3E6BF5  1 bookmark   1 unread  Work");
    EXPECT_EQ(text("label list EEP"), "#2  #0F9D8A  0 bookmarks  0 unread  Deep work");
    const auto summaries = json<QList<TagSummary>>("label list");
    EXPECT_TRUE(summaries == inLibrary([](LocalLibraryStore& library) { return library.tagSummaries(); }));
}

TEST_F(LabelCommands, CreatesALabelOfTheUsersOwn)
{
    EXPECT_EQ(text("label create \"  Deep work \""), "Label \"Deep work\" is #1 with the color #3E6BF5.");
    const auto tag = json<Tag>("label create Other --color #abcdef");
    EXPECT_EQ(tag.name, QStringLiteral("Other"));
    EXPECT_EQ(tag.slug, QStringLiteral("other"));
    EXPECT_EQ(tag.colorHex, QStringLiteral("#abcdef"));
    EXPECT_EQ(tag.source, Tag::Source::manual);
}

TEST_F(LabelCommands, CreatingALabelThatIsThereChangesItsColorAtMost)
{
    text("label create Work --color #000001");
    EXPECT_EQ(text("label create work"), "Label \"Work\" is #1 with the color #000001.");
    EXPECT_EQ(text("label create WORK --color #000002"), "Label \"Work\" is #1 with the color #000002.");
}

TEST_F(LabelCommands, RenamesALabelAndKeepsItsColorUnlessAskedOtherwise)
{
    text("label create Work --color #000001");
    EXPECT_EQ(text("label rename work Play"), "Label \"Play\" is #1 with the color #000001.");
    EXPECT_EQ(json<Tag>("label rename #1 Rest --color #000002").colorHex, QStringLiteral("#000002"));
}

TEST_F(LabelCommands, RefuseEmptyNames)
{
    text("label create Work");
    EXPECT_EQ(failure("label create \"  \""), "A non-empty name is required.");
    EXPECT_EQ(failure("label rename Work \" \""), "A non-empty name is required.");
    EXPECT_EQ(text("label list"), "#1  #3E6BF5  0 bookmarks  0 unread  Work");
}

TEST_F(LabelCommands, FindALabelByItsNameBeforeItsID)
{
    text("label create Work");
    text("label create #1");
    EXPECT_EQ(json<Tag>("label rename #1 Number").id, 2);
    EXPECT_EQ(json<Tag>("label rename #1 Play").id, 1);
}

TEST_F(LabelCommands, SayWhichLabelIsNotThere)
{
    text("label create Work");
    for (const QByteArray reference : {"wor", "#2", "1", "#", "#1x"}) {
        EXPECT_EQ(failure("label rename " + reference + " Play"), "There is no label \"" + reference + "\".");
    }
}

TEST_F(LabelCommands, MergeLabelsIntoOne)
{
    storePosts(2);
    for (const QByteArray name : {"a", "b", "c"})
        text("label create " + name);
    text("label add a 10001");
    text("label add b 10002");
    EXPECT_EQ(text("label merge a B c --into c"), "Merged \"a\", \"b\", \"c\" into \"c\".");
    EXPECT_EQ(text("label list"), "#3  #3E6BF5  2 bookmarks  2 unread  c");
    EXPECT_EQ(json<Tag>("label merge c --into c").name, QStringLiteral("c"));
}

TEST_F(LabelCommands, MergeNothingWhenOneIsNotThere)
{
    text("label create a");
    text("label create b");
    EXPECT_EQ(failure("label merge a x --into b"), "There is no label \"x\".");
    EXPECT_EQ(failure("label merge a b --into x"), "There is no label \"x\".");
    EXPECT_EQ(json<QList<TagSummary>>("label list").size(), 2);
}

TEST_F(LabelCommands, DeleteLabelsAllOrNone)
{
    for (const QByteArray name : {"a", "b", "c"})
        text("label create " + name);
    EXPECT_EQ(failure("label delete a x"), "There is no label \"x\".");
    EXPECT_EQ(text("label delete a A"), "Deleted \"a\".");
    const auto deleted = json<QList<Tag>>("label delete b c");
    EXPECT_EQ(deleted.size(), 2);
    EXPECT_EQ(text("label list"), "No labels.");
}

TEST_F(LabelCommands, AddAndRemoveALabel)
{
    storePosts(2);
    text("label create %1");
    EXPECT_EQ(text("label add %1 10001 https://x.com/ada/status/10002 10001"),
              "Added \"%1\" to 2 bookmarks.");
    const auto labelled = json<QList<Bookmark>>("label add %1 10001");
    ASSERT_EQ(labelled.size(), 1);
    EXPECT_EQ(labelled[0].tweetID, QStringLiteral("10001"));
    ASSERT_EQ(labelled[0].tags.size(), 1);
    EXPECT_EQ(text("label remove %1 10001"), "Removed \"%1\" from 1 bookmark.");
    EXPECT_TRUE(json<QList<Bookmark>>("label remove %1 10001")[0].tags.isEmpty());
}

TEST_F(LabelCommands, LabelNothingWhenOneBookmarkIsNotThere)
{
    storePosts(1);
    text("label create a");
    EXPECT_EQ(failure("label add a 10001 999"), "That X post is not in the local library.");
    EXPECT_EQ(failure("label add a 10001 nonsense"), "Enter a valid X post URL or tweet ID.");
    EXPECT_EQ(failure("label remove a 999"), "That X post is not in the local library.");
    EXPECT_TRUE(json<Bookmark>("show 10001").tags.isEmpty());
}

TEST_F(LabelCommands, PrintNamesWithoutWhatSteersATerminal)
{
    EXPECT_EQ(text("label create \"a\x1b[2J\nb\""), "Label \"a[2J b\" is #1 with the color #3E6BF5.");
    EXPECT_EQ(text("label list"), "#1  #3E6BF5  0 bookmarks  0 unread  a[2J b");
}

} // namespace
} // namespace mirel
