#include "testing/Printing.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

// Every kind of white space and line end of Unicode.
const QString blanks =
    QStringLiteral(" \t\n\v\f\r\u0085\u00a0\u1680\u2000\u2003\u200a\u2028\u2029\u202f\u205f\u3000");

TEST(Trimmed, TakesWhiteSpaceAndLineEndsFromBothEnds)
{
    EXPECT_EQ(trimmed(blanks + QStringLiteral("a b") + blanks), u"a b");
    EXPECT_EQ(trimmed(blanks), u"");
    EXPECT_EQ(trimmed(QString()), u"");
    EXPECT_EQ(trimmed(QStringLiteral("😀")), u"😀");
    // Joiners and marks are no white space.
    EXPECT_EQ(trimmed(QStringLiteral("\u200da\u0301")), u"\u200da\u0301");
}

TEST(NilIfBlank, IsAbsentForAbsentEmptyAndBlankText)
{
    EXPECT_EQ(nilIfBlank(QStringView()), std::nullopt);
    EXPECT_EQ(nilIfBlank(QStringView(blanks)), std::nullopt);
    EXPECT_EQ(nilIfBlank(std::optional<QString>()), std::nullopt);
    EXPECT_EQ(nilIfBlank(std::optional<QString>(blanks)), std::nullopt);
}

TEST(NilIfBlank, IsTheTrimmedTextOtherwise)
{
    EXPECT_EQ(nilIfBlank(QStringView(u" a ")), QStringLiteral("a"));
    EXPECT_EQ(nilIfBlank(std::optional(QStringLiteral("\na b\n"))), QStringLiteral("a b"));
}

struct CharacterRow
{
    const char* name;
    const char16_t* text;
    qsizetype count;
    // The first two characters.
    const char16_t* firstTwo;
};

class CharactersTest : public ::testing::TestWithParam<CharacterRow>
{
};

TEST_P(CharactersTest, AreCountedAndCutAsAReaderSeesThem)
{
    const QString text = QString::fromUtf16(GetParam().text);
    EXPECT_EQ(characterCount(text), GetParam().count);
    EXPECT_EQ(firstCharacters(text, 2), QString::fromUtf16(GetParam().firstTwo));
    EXPECT_EQ(firstCharacters(text, GetParam().count), text);
    EXPECT_EQ(firstCharacters(text, 1000), text);
    EXPECT_EQ(firstCharacters(text, 0), u"");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CharactersTest,
    ::testing::Values(CharacterRow{"Empty", u"", 0, u""}, CharacterRow{"One", u"a", 1, u"a"},
                      CharacterRow{"ASCII", u"abc", 3, u"ab"},
                      CharacterRow{"Combining", u"e\u0301e\u0301x", 3, u"e\u0301e\u0301"},
                      CharacterRow{"BeyondTheBasicPlane", u"😀😀😀", 3, u"😀😀"},
                      CharacterRow{"SkinTone", u"👍🏽ab", 3, u"👍🏽a"},
                      CharacterRow{"Family", u"👨‍👩‍👧‍👦ab", 3,
                                   u"👨‍👩‍👧‍👦a"},
                      CharacterRow{"Flags", u"🇩🇪🇫🇷🇮🇹", 3, u"🇩🇪🇫🇷"},
                      CharacterRow{"Keycap", u"1️⃣2️⃣3", 3, u"1️⃣2️⃣"},
                      CharacterRow{"LineEnd", u"a\r\nb", 3, u"a\r\n"},
                      CharacterRow{"Hangul", u"\u1112\u1161\u11ab\u1100\u1173\u11afa", 3,
                                   u"\u1112\u1161\u11ab\u1100\u1173\u11af"},
                      CharacterRow{"Chinese", u"漢字仮", 3, u"漢字"}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace mirel
