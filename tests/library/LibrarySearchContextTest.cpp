#include "testing/Printing.h"

#include "library/LibrarySearchContext.h"
#include "library/LibrarySearchExpression.h"
#include "library/SearchableText.h"

#include "SearchTesting.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

using testing::makeBookmark;
using testing::makeLabel;
using testing::makeMedia;

class LibrarySearchContextTest : public ::testing::Test
{
protected:
    bool matches(const char* query) { return matches(QString::fromUtf8(query)); }
    bool matches(const QString& query)
    {
        return LibrarySearchExpression::parse(query).matches(LibrarySearchContext(bookmark, reader()));
    }

    // Gives `presentation` and counts how often it is asked for.
    LibrarySearchContext::ReadPresentation reader()
    {
        return [this](const Bookmark&) {
            ++readings;
            return presentation;
        };
    }

    Bookmark bookmark = makeBookmark();
    PresentationFacts presentation;
    int readings = 0;
};

TEST_F(LibrarySearchContextTest, JoinsWhatIsSearchedInOrder)
{
    bookmark.contentTitle = QStringLiteral("Content TITLE");
    bookmark.contentText = QStringLiteral("Content text");
    bookmark.note = QStringLiteral("My Note");
    bookmark.quotedPost = QuotedPost{.tweetID = QStringLiteral("9"), .text = QStringLiteral("Quoted TEXT")};
    bookmark.tags = {makeLabel(1, QStringLiteral("One Label"), QStringLiteral("one-label")),
                     makeLabel(2, QStringLiteral("Two"), QStringLiteral("two"))};
    bookmark.folder = Folder{.id = 1, .name = QStringLiteral("Later"), .slug = QStringLiteral("slug")};
    const PresentationFacts::Quoted quoted{.title = QStringLiteral("Quoted Title"),
                                           .externalLinks = {QUrl(QStringLiteral("https://A.example/B")),
                                                             QUrl(QStringLiteral("https://b.example/ä"))}};
    EXPECT_EQ(QString::fromUtf8(searchableText(bookmark, quoted)),
              QStringLiteral("notes on the engine quoted title content title content text my note "
                             "https://posts.example/ada/status/10007 ada lovelace ada quoted text "
                             "https://a.example/b https://b.example/%c3%a4 one label two later"));
}

TEST_F(LibrarySearchContextTest, LeavesOutWhatIsAbsentButNotWhatIsEmpty)
{
    bookmark.text.clear();
    bookmark.note = QString();
    EXPECT_EQ(searchableText(bookmark, std::nullopt),
              QByteArray("  https://posts.example/ada/status/10007 ada lovelace ada "));

    // The title of the quoted content, or else the bookmark's own, comes before that one.
    bookmark.contentTitle = QStringLiteral("Title");
    EXPECT_EQ(searchableText(bookmark, PresentationFacts::Quoted()),
              QByteArray(" title title  https://posts.example/ada/status/10007 ada lovelace ada  "));
}

TEST_F(LibrarySearchContextTest, ReadsThePresentationAtMostOnce)
{
    bookmark.quotedPost = QuotedPost{.text = QStringLiteral("quoted")};
    EXPECT_FALSE(matches("nothing OR has:media OR type:video OR \"no such\" OR type:image"));
    EXPECT_EQ(readings, 1);
}

TEST_F(LibrarySearchContextTest, ReadsNoPresentationWhereTheColumnsSayEnough)
{
    EXPECT_FALSE(
        matches("nothing OR has:media OR label:a OR folder:b OR author:nobody OR has:notes OR is:read"));
    bookmark.contentText = QStringLiteral("text");
    EXPECT_TRUE(matches("type:article"));
    bookmark.quotedPost = QuotedPost{.media = {makeMedia(MediaKind::photo)}};
    EXPECT_TRUE(matches("has:media"));
    EXPECT_EQ(readings, 0);
}

TEST_F(LibrarySearchContextTest, PresentsMediaOfThePostAndOfTheQuotedOne)
{
    EXPECT_FALSE(matches("has:media"));
    EXPECT_TRUE(matches("has:no-media"));
    // Without a quoted post, nobody asks.
    presentation.quoted = PresentationFacts::Quoted{.hasMedia = true};
    EXPECT_FALSE(matches("has:media"));
    bookmark.quotedPost = QuotedPost{};
    EXPECT_TRUE(matches("has:media"));
    EXPECT_FALSE(matches("has:no-media"));
    presentation.quoted->hasMedia = false;
    EXPECT_FALSE(matches("has:media"));
    presentation.quoted.reset();
    EXPECT_FALSE(matches("has:media"));
    bookmark.quotedPost->media = {makeMedia(MediaKind::photo)};
    EXPECT_TRUE(matches("has:media"));
    bookmark.quotedPost.reset();
    bookmark.media = {makeMedia(MediaKind::video)};
    EXPECT_TRUE(matches("has:media"));
}

TEST_F(LibrarySearchContextTest, PresentsLinksOfThePostAndOfTheQuotedOne)
{
    bookmark.sourceURL = QUrl();
    EXPECT_FALSE(matches("has:links"));
    presentation.hasExternalLinks = true;
    EXPECT_TRUE(matches("has:links"));
    presentation = {.quoted = PresentationFacts::Quoted{}};
    bookmark.quotedPost = QuotedPost{};
    EXPECT_FALSE(matches("has:links"));
    presentation.quoted->externalLinks = {QUrl(QStringLiteral("ftp://files.example"))};
    EXPECT_TRUE(matches("has:links"));
    presentation.quoted->externalLinks.clear();
    bookmark.text = QStringLiteral("see HTTP");
    EXPECT_TRUE(matches("has:links"));
}

TEST_F(LibrarySearchContextTest, FindsTheQuotedLinksAndTitle)
{
    bookmark.quotedPost = QuotedPost{.text = QStringLiteral("quoted words")};
    presentation.quoted =
        PresentationFacts::Quoted{.title = QStringLiteral("Of Looms"),
                                  .externalLinks = {QUrl(QStringLiteral("https://looms.example/one"))}};
    EXPECT_TRUE(matches("\"of looms\" \"quoted words\" url:looms.example looms.example/one"));
}

TEST_F(LibrarySearchContextTest, FindsTheAuthor)
{
    bookmark.author.username = QStringLiteral(" Alice ");
    bookmark.author.name = QStringLiteral(" Alice B. Carter ");
    for (const char* query : {"author:alice", "author:@alice", "author:ALICE", "author:\"b. cart\"",
                              "author:carter", "author:lic"})
        EXPECT_TRUE(matches(query)) << query;
    for (const char* query : {"author:alicia", "author:\"alice c\""})
        EXPECT_FALSE(matches(query)) << query;
    bookmark.author.name = QStringLiteral("Somebody");
    EXPECT_TRUE(matches("author:alice"));
    EXPECT_FALSE(matches("author:lic")) << "a username is compared whole";
}

TEST_F(LibrarySearchContextTest, FindsLabelsBySlugAndName)
{
    bookmark.tags = {makeLabel(1, QStringLiteral(" My Label "), QStringLiteral("the-slug")),
                     makeLabel(2, QStringLiteral("Größe"), QStringLiteral("groesse"))};
    for (const char* query : {"\"label:my label\"", "label:\"MY LABEL\"", "tag:the-slug", "label:größe",
                              "label:GRÖßE", "label:groesse"})
        EXPECT_TRUE(matches(query)) << query;
    for (const char* query : {"label:my", "label:label", "label:slug", "label:grösse", "label:grosse"})
        EXPECT_FALSE(matches(query)) << query;
    EXPECT_FALSE(matches("is:untagged"));
    bookmark.tags.clear();
    EXPECT_TRUE(matches("is:untagged"));
    EXPECT_FALSE(matches("label:größe"));
}

TEST_F(LibrarySearchContextTest, FindsTheFolderBySlugAndName)
{
    EXPECT_FALSE(matches("folder:later"));
    EXPECT_TRUE(matches("is:inbox"));
    bookmark.folder = Folder{.id = 5, .name = QStringLiteral(" Read Later"), .slug = QStringLiteral("later")};
    for (const char* query : {"folder:later", "collection:\"read later\"", "folder:LATER"})
        EXPECT_TRUE(matches(query)) << query;
    EXPECT_FALSE(matches("folder:read"));
    EXPECT_FALSE(matches("is:inbox"));
}

TEST_F(LibrarySearchContextTest, ANoteOfWhiteSpaceIsNone)
{
    EXPECT_FALSE(matches("has:notes"));
    bookmark.note = QStringLiteral(" \n ");
    EXPECT_FALSE(matches("has:notes"));
    bookmark.note = QStringLiteral(" a ");
    EXPECT_TRUE(matches("has:notes"));
}

TEST_F(LibrarySearchContextTest, FindsTheState)
{
    EXPECT_TRUE(matches("is:unread is:active is:inbox NOT is:favorite NOT is:read NOT is:archived"));
    bookmark.isRead = true;
    EXPECT_TRUE(matches("is:read is:inbox NOT is:unread"));
    bookmark.isFavorite = true;
    EXPECT_TRUE(matches("is:favorite is:favorited NOT is:inbox"));
    bookmark.isFavorite = false;
    bookmark.isArchived = true;
    EXPECT_TRUE(matches("is:archived NOT is:active NOT is:inbox"));
}

TEST_F(LibrarySearchContextTest, SearchesUnknownKeysAndAddressesAsTheyStand)
{
    EXPECT_FALSE(matches("x:y"));
    bookmark.text = QStringLiteral("ratio X:Y, see https://Example.com:80/a and label: foo");
    EXPECT_TRUE(matches("x:y https://example.com:80/A label:"));
    EXPECT_TRUE(matches("url:example.com:80"));
    EXPECT_TRUE(matches("url:10007")) << "the address of the post";
    EXPECT_FALSE(matches("label:foo"));
}

TEST_F(LibrarySearchContextTest, MatchesAcrossPartsSinceTheyAreOneText)
{
    EXPECT_TRUE(matches("\"engine https\""));
    EXPECT_TRUE(matches("\"lovelace ada\""));
    EXPECT_FALSE(matches("\"engine  https\""));
}

struct TextRow
{
    const char* name;
    const char* text;
    const char* query;
    bool matches;
};

class TextSearchTest : public ::testing::TestWithParam<TextRow>
{
};

TEST_P(TextSearchTest, ComparesTheBytesOfTheLowerCasedText)
{
    Bookmark bookmark = makeBookmark();
    bookmark.text = QString::fromUtf8(GetParam().text);
    EXPECT_EQ(LibrarySearchExpression::parse(QString::fromUtf8(GetParam().query)).matches(bookmark),
              GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(
    Languages, TextSearchTest,
    ::testing::Values(
        TextRow{"InsideAWord", "steam engines", "team", true},
        TextRow{"Case", "Steam ENGINES", "sTEAM", true},
        TextRow{"Chinese", "关于深度工作的笔记", "深度工作", true},
        TextRow{"Japanese", "カタカナとひらがな", "ひらがな", true},
        TextRow{"OtherKana", "カタカナ", "かたかな", false}, TextRow{"Korean", "한국어 텍스트", "국어", true},
        TextRow{"HalfAHangulSyllable", "한", "\xe1\x84\x92", false},
        TextRow{"Arabic", "العمل العميق", "العميق", true},
        TextRow{"ArabicWithVowelSigns", "كِتَاب", "كتاب", false},
        TextRow{"Hebrew", "עבודה עמוקה", "\"עבודה עמוקה\"", true},
        TextRow{"TurkishDottedCapital", "İstanbul", "i\xcc\x87stanbul", true},
        TextRow{"TurkishDottedCapitalPlain", "İstanbul", "istanbul", false},
        TextRow{"TurkishDottedCapitalItself", "İstanbul", "İSTANBUL", true},
        TextRow{"TurkishDotlessI", "ısı", "isi", false}, TextRow{"CapitalIIsNotDotless", "ISI", "ısı", false},
        TextRow{"CapitalI", "ISI", "isi", true}, TextRow{"SharpS", "Straße", "strasse", false},
        TextRow{"SharpSItself", "Straße", "STRAßE", true}, TextRow{"CapitalSharpS", "STRAẞE", "straße", true},
        TextRow{"FinalSigma", "ΟΔΟΣ", "οδοσ", true}, TextRow{"Diacritics", "café", "cafe", false},
        TextRow{"CombiningMark", "cafe\xcc\x81", "cafe", true},
        TextRow{"OneMarkTwoWays", "cafe\xcc\x81", "caf\xc3\xa9", false},
        TextRow{"Emoji", "a 👍🏽 b", "👍", true},
        TextRow{"EmojiWithAnotherTone", "👍🏽", "👍🏿", false},
        TextRow{"JoinedEmoji", "👨‍👩‍👧‍👦", "👨‍👩‍👧‍👦", true},
        TextRow{"PartOfJoinedEmoji", "👨‍👩‍👧‍👦", "👩‍👧", true},
        TextRow{"Flag", "🇩🇪", "🇫🇷", false}, TextRow{"BeyondTheBasicPlane", "𐐀𐐁", "𐐨𐐩", true},
        TextRow{"ZeroWidthSpace",
                "a\xe2\x80\x8b"
                "b",
                "ab", false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(SearchBytes, TakesHalfASurrogatePairForTheReplacementCharacter)
{
    const QString half(QChar(0xD83D));
    EXPECT_EQ(searchBytes(half + u'A'), QByteArray("\xef\xbf\xbd"
                                                   "a"));
    EXPECT_EQ(searchBytes(QString(QChar(0xDE00)) + half), QByteArray("\xef\xbf\xbd\xef\xbf\xbd"));

    Bookmark bookmark = makeBookmark();
    bookmark.text = QStringLiteral("is it?");
    EXPECT_FALSE(LibrarySearchExpression::parse(half).matches(bookmark)) << "no question mark";
    bookmark.text = QStringLiteral("😀");
    EXPECT_FALSE(LibrarySearchExpression::parse(half).matches(bookmark)) << "no half of a whole pair";
    bookmark.text = QStringLiteral("cut ") + half;
    EXPECT_TRUE(LibrarySearchExpression::parse(half).matches(bookmark));
    EXPECT_TRUE(LibrarySearchExpression::parse(QStringLiteral("cut")).matches(bookmark));
}

TEST(SearchBytes, KeepsTheZeroCharacter)
{
    const QString text = QString(u'A') + QChar(0) + u'B';
    EXPECT_EQ(searchBytes(text), QByteArray("a\0b", 3));
    Bookmark bookmark = makeBookmark();
    bookmark.text = text;
    EXPECT_TRUE(LibrarySearchExpression::parse(text).matches(bookmark));
}

TEST(LibrarySearchExpression, SearchesAnArticleOfAMegabyte)
{
    Bookmark bookmark = makeBookmark();
    bookmark.contentText =
        QStringLiteral("Die Straße ist lang. ").repeated(50'000) + QStringLiteral("Am ENDE 終わり");
    ASSERT_GT(bookmark.contentText->toUtf8().size(), 1'000'000);
    EXPECT_TRUE(LibrarySearchExpression::parse(QStringLiteral("\"am ende 終わり\"")).matches(bookmark));
    EXPECT_FALSE(LibrarySearchExpression::parse(QStringLiteral("\"am ende 始め\"")).matches(bookmark));
    EXPECT_TRUE(LibrarySearchExpression::parse(u'"' + *bookmark.contentText + u'"').matches(bookmark))
        << "the whole article as the query";
    bookmark.contentText = QStringLiteral("İIıi ẞß").repeated(150'000);
    EXPECT_TRUE(LibrarySearchExpression::parse(QStringLiteral("\"ßi\u0307iıi ß\"")).matches(bookmark));
    EXPECT_TRUE(LibrarySearchExpression::parse(u'"' + *bookmark.contentText + u'"').matches(bookmark));
}

TEST(SearchBytes, LowerTheCaseOfEveryCharacterAsUnicodeSays)
{
    for (char32_t code = 1; code <= QChar::LastValidCodePoint; ++code) {
        if (QChar::isSurrogate(code))
            continue;
        const QString text = QStringView(QChar::fromUcs4(code)).toString();
        ASSERT_EQ(searchBytes(text), text.toLower().toUtf8()) << static_cast<unsigned>(code);
    }
}

} // namespace
} // namespace mirel
