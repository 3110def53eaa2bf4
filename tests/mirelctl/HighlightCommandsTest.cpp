#include "CommandBench.h"

namespace mirel {
namespace {

using HighlightCommands = testing::CommandBench;

TEST_F(HighlightCommands, AddAHighlightWithTheColorOfTheReader)
{
    storePosts(1);
    EXPECT_EQ(text("highlight add 10001 \" Post number \""), "Highlight #1 is stored.");
    const auto stored = json<QList<BookmarkHighlight>>("highlight list 10001");
    ASSERT_EQ(stored.size(), 1);
    EXPECT_EQ(stored[0].selectedText, QStringLiteral("Post number"));
    EXPECT_EQ(stored[0].colorHex, QStringLiteral("#fde68a"));
    EXPECT_EQ(stored[0].startOffset, 0);
    EXPECT_EQ(stored[0].endOffset, 0);
    EXPECT_FALSE(stored[0].contextText);
    EXPECT_EQ(stored[0].createdAt, test.library.clock.now());
}

TEST_F(HighlightCommands, FindTheSelectionInItsContext)
{
    storePosts(1);
    const auto offsets = [&](const QByteArray& options) {
        const auto highlight = json<BookmarkHighlight>("highlight add 10001 b " + options);
        return std::pair(highlight.startOffset, highlight.endOffset);
    };
    EXPECT_EQ(offsets("--context a👍🏽bb"), std::pair(qint64(2), qint64(3)));
    EXPECT_EQ(offsets("--context x"), std::pair(qint64(0), qint64(0)));
    EXPECT_EQ(offsets("--context abb --start 7"), std::pair(qint64(7), qint64(8)));
    EXPECT_EQ(offsets("--start 7 --end 9"), std::pair(qint64(7), qint64(9)));
    EXPECT_EQ(offsets("--start 7 --end 3"), std::pair(qint64(7), qint64(7)));
    const auto highlight =
        json<BookmarkHighlight>("highlight add 10001 b --context \" a b\" --color #000001");
    EXPECT_EQ(highlight.contextText, QStringLiteral(" a b"));
    EXPECT_EQ(highlight.colorHex, QStringLiteral("#000001"));
}

TEST_F(HighlightCommands, RefuseAnEmptySelectionAndAnUnknownBookmark)
{
    storePosts(1);
    EXPECT_EQ(failure("highlight add 10001 \" \""), "A non-empty name is required.");
    EXPECT_EQ(failure("highlight add 999 a"), "That X post is not in the local library.");
    EXPECT_EQ(failure("highlight add x a"), "Enter a valid X post URL or tweet ID.");
    EXPECT_EQ(failure("highlight list 999"), "That X post is not in the local library.");
    EXPECT_EQ(text("highlight list"), "No highlights.");
    EXPECT_EQ(output("highlight list", forMachines), "[]\n");
}

TEST_F(HighlightCommands, ListHighlightsOfOneBookmarkOrAllNewestFirst)
{
    storePosts(2);
    text("highlight add 10001 \"one\ntwo\x1b[2J\"");
    test.library.clock.advance(86'400);
    text("highlight add 10002 three");
    EXPECT_EQ(text("highlight list"), "#2  10002  2023-11-15  three\n"
                                      "#1  10001  2023-11-14  one two[2J");
    EXPECT_EQ(text("highlight list 10001"), "#1  10001  2023-11-14  one two[2J");
    inLibrary([](LocalLibraryStore& library) { library.deleteBookmarkLocally(1); });
    EXPECT_EQ(text("highlight list"), "#2  10002    2023-11-15  three\n"
                                      "#1  deleted  2023-11-14  one two[2J");
}

TEST_F(HighlightCommands, DeleteHighlightsAllOrNone)
{
    storePosts(1);
    for (int i = 0; i < 3; ++i)
        text("highlight add 10001 a");
    for (const QByteArray reference : {"9", "#9", "a", "#"}) {
        EXPECT_EQ(failure("highlight delete 1 " + reference), "There is no highlight \"" + reference + "\".");
    }
    EXPECT_EQ(text("highlight delete 1 #2 2"), "Deleted 2 highlights.");
    const auto deleted = json<QList<BookmarkHighlight>>("highlight delete #3");
    ASSERT_EQ(deleted.size(), 1);
    EXPECT_EQ(deleted[0].id, 3);
}

} // namespace
} // namespace mirel
