#include "testing/Printing.h"

#include "support/Text.h"

#include <QRegularExpression>

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

TEST(LowerCased, IsTheLowerCaseOfEachCharacter)
{
    EXPECT_EQ(lowerCased(QStringLiteral("ÀB 3 ßẞ ΑΣ \u0130I\u0131 字 \U00010400")),
              QStringLiteral("àb 3 ßß ασ i\u0307i\u0131 字 \U00010428"));
    EXPECT_EQ(lowerCased(QString()), u"");
}

// Minutes for a cost that grows with the square of the length.
TEST(LowerCased, StandsAMegabyteOfLettersThatGrow)
{
    constexpr qsizetype megabyte = 1024 * 1024;
    EXPECT_EQ(lowerCased(QString(megabyte, u'\u0130')), QStringLiteral("i\u0307").repeated(megabyte));
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

struct SlugRow
{
    const char* name;
    const char16_t* text;
    const char16_t* slug;
};

class SlugTest : public ::testing::TestWithParam<SlugRow>
{
};

TEST_P(SlugTest, IsTheFoldedWordsJoined)
{
    const QString expected = QString::fromUtf16(GetParam().slug);
    EXPECT_EQ(slug(QString::fromUtf16(GetParam().text), QLocale::c()), expected);
    EXPECT_EQ(slug(expected, QLocale::c()), expected) << "a slug is its own slug";
}

INSTANTIATE_TEST_SUITE_P(
    Names, SlugTest,
    ::testing::Values(
        SlugRow{"Words", u"Deep & Work", u"deep-work"}, SlugRow{"SeveralBlanks", u"a  b", u"a-b"},
        SlugRow{"SymbolsAtBothEnds", u"--C++ (17)!", u"c-17"}, SlugRow{"Digits", u"2026 Q3", u"2026-q3"},
        SlugRow{"Underscore", u"snake_case", u"snake-case"}, SlugRow{"Accent", u"Café", u"cafe"},
        SlugRow{"CombiningAccent", u"Cafe\u0301", u"cafe"},
        SlugRow{"SeveralMarksOnALetter", u"Tiếng Việt", u"tieng-viet"},
        SlugRow{"StrokesAreNoMarks", u"Łódź Ørsted", u"łodz-ørsted"},
        SlugRow{"SharpS", u"Straße", u"strasse"}, SlugRow{"CapitalSharpS", u"STRAẞE", u"strasse"},
        SlugRow{"Ligature", u"\ufb01n", u"fin"}, SlugRow{"DottedCapitalI", u"İstanbul", u"istanbul"},
        SlugRow{"DotlessI", u"Kırmızı", u"kırmızı"}, SlugRow{"Greek", u"ΆΝΟΔΟΣ", u"ανοδοσ"},
        SlugRow{"FinalSigma", u"άνοδος", u"ανοδοσ"}, SlugRow{"Cyrillic", u"Ёжик Йод", u"ежик-иод"},
        SlugRow{"Japanese", u"日本語", u"日本語"}, SlugRow{"VoicedKana", u"ガイド ぱぴぷ", u"ガイド-ぱぴぷ"},
        SlugRow{"JapanesePunctuation", u"東京・大阪", u"東京-大阪"}, SlugRow{"Korean", u"한국어", u"한국어"},
        SlugRow{"Arabic", u"أخبار اليوم", u"أخبار-اليوم"}, SlugRow{"ArabicVowelMarks", u"مُهِمّ", u"مُهِمّ"},
        SlugRow{"ArabicDigits", u"١٢٣", u"١٢٣"}, SlugRow{"Hebrew", u"שלום, עולם", u"שלום-עולם"},
        SlugRow{"HebrewPoints", u"\u05e9\u05b8\u05dc\u05d5\u05b9\u05dd",
                u"\u05e9\u05b8\u05dc\u05d5\u05b9\u05dd"},
        SlugRow{"Hindi", u"हिन्दी", u"हिन्दी"}, SlugRow{"Thai", u"ภาษาไทย", u"ภาษาไทย"},
        SlugRow{"BeyondTheBasicPlane", u"𠮷野家", u"𠮷野家"}, SlugRow{"DeseretHasCase", u"𐐀𐐁", u"𐐨𐐩"},
        SlugRow{"EmojiBeforeAWord", u"🚀 Launch", u"launch"},
        SlugRow{"EmojiBetweenWords", u"Fish🐟Chips", u"fish-chips"},
        SlugRow{"EmojiWithJoiners", u"👩‍💻 Work ❤️", u"work"},
        SlugRow{"Keycap", u"1️⃣ First", u"1-first"}, SlugRow{"Flag", u"🇩🇪 Trip", u"trip"},
        SlugRow{"LoneSurrogate", u"a\xd800z", u"a-z"}, SlugRow{"LineEnd", u"a\nb", u"a-b"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Slug, FollowsTheLocaleInWhatIsLowerCase)
{
    const QLocale turkish(QLocale::Turkish);
    EXPECT_EQ(slug(QStringLiteral("ISPARTA İzmir"), turkish), u"ısparta-izmir");
    EXPECT_EQ(slug(QStringLiteral("I\u0307zmir"), turkish), u"izmir");
    EXPECT_EQ(slug(QStringLiteral("ISPARTA İzmir"), QLocale(QLocale::English)), u"isparta-izmir");
}

TEST(Slug, OfANameWithoutWordsIsARandomUUID)
{
    static const QRegularExpression uuid(
        QStringLiteral("^[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}$"));
    for (const char16_t* text :
         {u"", u"!!!", u"###", u" \n", u"🚀", u"❤️", u"👩‍👩‍👧‍👦", u"🇩🇪", u"\u0301"}) {
        const QString name = QString::fromUtf16(text);
        EXPECT_TRUE(uuid.match(slug(name)).hasMatch()) << qPrintable(name);
        EXPECT_NE(slug(name), slug(name)) << qPrintable(name);
    }
}

} // namespace
} // namespace mirel
