#include "testing/Printing.h"

#include "mirelctl/TextOutput.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

struct Width
{
    const char* name;
    const char* text;
    int columns;
};

class DisplayWidth : public ::testing::TestWithParam<Width>
{
};

TEST_P(DisplayWidth, CountsColumns)
{
    EXPECT_EQ(displayWidth(QString::fromUtf8(GetParam().text)), GetParam().columns);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DisplayWidth,
    ::testing::Values(Width{"Nothing", "", 0}, Width{"Latin", "bookmark", 8},
                      Width{"Cyrillic", "закладка", 8}, Width{"Chinese", "书签", 4},
                      Width{"Kana", "しおり", 6}, Width{"Hangul", "책갈피", 6},
                      Width{"FullWidthLetters", "ＡＢ", 4}, Width{"HalfWidthKana", "ｱｲ", 2},
                      Width{"PrecomposedAccent", "é", 1}, Width{"CombiningAccent", "e\xCC\x81", 1},
                      Width{"Emoji", "🙂", 2}, Width{"EmojiWithSkinTone", "👍🏽", 2},
                      Width{"JoinedFamily", "👨‍👩‍👧", 2}, Width{"Flag", "🇩🇪", 2},
                      Width{"HeartShownAsEmoji", "❤️", 2}, Width{"HeartShownAsText", "❤", 1},
                      Width{"ZeroWidthSpace",
                            "a\xE2\x80\x8B"
                            "b",
                            2},
                      Width{"Thai", "ที่", 1}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(TextOutput, LeavesTextThatFitsAlone)
{
    EXPECT_EQ(truncatedToWidth(QStringLiteral("short"), 5), QStringLiteral("short"));
}

TEST(TextOutput, CutsBetweenCharactersAndLeavesRoomForTheEllipsis)
{
    EXPECT_EQ(truncatedToWidth(QStringLiteral("bookmark"), 5), QStringLiteral("book…"));
    EXPECT_EQ(truncatedToWidth(QStringLiteral("书签书签"), 4), QStringLiteral("书…"));
    EXPECT_EQ(truncatedToWidth(QStringLiteral("👨‍👩‍👧👨‍👩‍👧"), 3),
              QStringLiteral("👨‍👩‍👧…"));
    EXPECT_EQ(truncatedToWidth(QStringLiteral("e\u0301e\u0301e\u0301"), 2), QStringLiteral("e\u0301…"));
    EXPECT_EQ(truncatedToWidth(QStringLiteral("bookmark"), 1), QStringLiteral("…"));
    EXPECT_EQ(truncatedToWidth(QStringLiteral("bookmark"), 0), QString());
}

TEST(TextOutput, PadsByColumnsRatherThanByCodeUnits)
{
    EXPECT_EQ(paddedToWidth(QStringLiteral("书签"), 6), QStringLiteral("书签  "));
    EXPECT_EQ(paddedToWidth(QStringLiteral("🙂"), 3), QStringLiteral("🙂 "));
    EXPECT_EQ(paddedToWidth(QStringLiteral("too long"), 3), QStringLiteral("too long"));
}

TEST(TextOutput, WrapsAtBlanksAndKeepsParagraphs)
{
    EXPECT_EQ(
        wrappedToWidth(QStringLiteral("one two three\n\nfour"), 8),
        QStringList({QStringLiteral("one two"), QStringLiteral("three"), QString(), QStringLiteral("four")}));
}

TEST(TextOutput, CutsAWordThatIsWiderThanALine)
{
    EXPECT_EQ(wrappedToWidth(QStringLiteral("a bookmarks z"), 4),
              QStringList({QStringLiteral("a"), QStringLiteral("book"), QStringLiteral("mark"),
                           QStringLiteral("s z")}));
    EXPECT_EQ(wrappedToWidth(QStringLiteral("书签书"), 4),
              QStringList({QStringLiteral("书签"), QStringLiteral("书")}));
    EXPECT_EQ(wrappedToWidth(QStringLiteral("书"), 1), QStringList({QStringLiteral("书"), QString()}));
}

TEST(TextOutput, AlignsTheColumnsOfLinesAndCutsTheLast)
{
    const QList<QStringList> rows{{QStringLiteral("1"), QStringLiteral("书签"), QStringLiteral("last")},
                                  {QStringLiteral("100"), QStringLiteral("a"), QString(30, u'x')}};
    EXPECT_EQ(alignedLines(rows, {}),
              QStringLiteral("1    书签  last\n100  a     ") + QString(30, u'x') + u'\n');
    EXPECT_EQ(alignedLines(rows, 34),
              QStringLiteral("1    书签  last\n100  a     ") + QString(22, u'x') + QStringLiteral("…\n"));
    EXPECT_EQ(alignedLines(rows, 5),
              QStringLiteral("1    书签  last\n100  a     ") + QString(19, u'x') + QStringLiteral("…\n"));
    EXPECT_EQ(alignedLines({}, 5), QString());
}

TEST(TextOutput, KeepsEveryRowOnItsLine)
{
    EXPECT_EQ(alignedLines({{QStringLiteral("a\nb"), QStringLiteral("\x1b[2Jc\u2028d\ne")}}, {}),
              QStringLiteral("a b  [2Jc d e\n"));
}

TEST(TextOutput, DropsWhatSteersATerminal)
{
    EXPECT_EQ(printable(QStringLiteral("a\x1b[31mred\x07\u009b2J\r\nb\tc")),
              QStringLiteral("a[31mred2J\nb c"));
    EXPECT_EQ(printable(QStringLiteral("\u202Eright\u2066to\u2069left")), QStringLiteral("righttoleft"));
}

TEST(TextOutput, KeepsTheJoinersOfScriptsAndEmoji)
{
    EXPECT_EQ(printable(QStringLiteral("👨‍👩‍👧 می‌خواهم")),
              QStringLiteral("👨‍👩‍👧 می‌خواهم"));
}

TEST(TextOutput, PutsTextOnOneLine)
{
    EXPECT_EQ(oneLine(QStringLiteral("  one\n\n two\t\u2028three ")), QStringLiteral("one two three"));
}

} // namespace
} // namespace mirel
