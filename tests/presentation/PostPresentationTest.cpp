#include "testing/Printing.h"

#include "presentation/PresentationCase.h"
#include "support/RawJSON.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

struct KindLabel
{
    PostPresentationKind kind;
    const char* rawValue;
    const char* label;
};

TEST(PostPresentationKind, HasItsNameAndLabelInOrder)
{
    constexpr std::array expected{
        KindLabel{PostPresentationKind::article, "article", "Article"},
        KindLabel{PostPresentationKind::thread, "thread", "Thread"},
        KindLabel{PostPresentationKind::repost, "repost", "Repost"},
        KindLabel{PostPresentationKind::quote, "quote", "Quote"},
        KindLabel{PostPresentationKind::externalLink, "externalLink", "External link"},
        KindLabel{PostPresentationKind::post, "post", "Post"},
    };
    ASSERT_EQ(rawValues(PostPresentationKind()).size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(rawValues(PostPresentationKind())[i].value, expected[i].kind);
        EXPECT_EQ(rawValue(expected[i].kind), QLatin1StringView(expected[i].rawValue));
        EXPECT_EQ(label(expected[i].kind), QLatin1StringView(expected[i].label));
    }
}

struct QuotedKindLabel
{
    QuotedContentPresentation::Kind kind;
    const char* rawValue;
    const char* label;
    const char* displayLabel;
};

constexpr std::array quotedKinds{
    QuotedKindLabel{QuotedContentPresentation::Kind::article, "article", "Article", "Quoted article"},
    QuotedKindLabel{QuotedContentPresentation::Kind::externalLink, "externalLink", "External link",
                    "Quoted external link"},
    QuotedKindLabel{QuotedContentPresentation::Kind::video, "video", "Video", "Quoted video"},
    QuotedKindLabel{QuotedContentPresentation::Kind::image, "image", "Image", "Quoted image"},
    QuotedKindLabel{QuotedContentPresentation::Kind::post, "post", "Post", "Quoted post"},
};

TEST(QuotedContentPresentationKind, HasItsNameAndLabelInOrder)
{
    using Kind = QuotedContentPresentation::Kind;
    ASSERT_EQ(rawValues(Kind()).size(), quotedKinds.size());
    for (std::size_t i = 0; i < quotedKinds.size(); ++i) {
        EXPECT_EQ(rawValues(Kind())[i].value, quotedKinds[i].kind);
        EXPECT_EQ(rawValue(quotedKinds[i].kind), QLatin1StringView(quotedKinds[i].rawValue));
        EXPECT_EQ(label(quotedKinds[i].kind), QLatin1StringView(quotedKinds[i].label));
    }
}

TEST(PostPresentation, NamesItsQuotedContentWhateverItsOwnKind)
{
    PostPresentation presentation(bookmarkOf(R"({"contentTitle":"T"})", "{}"));
    EXPECT_EQ(presentation.displayLabel(), QStringLiteral("Article"));
    presentation.quotedContent.emplace();
    for (const QuotedKindLabel& row : quotedKinds) {
        presentation.quotedContent->kind = row.kind;
        EXPECT_EQ(presentation.displayLabel(), QLatin1StringView(row.displayLabel));
    }
    EXPECT_EQ(presentation.kind, PostPresentationKind::article);
}

TEST(PostPresentation, ComparesByValue)
{
    const Bookmark bookmark = bookmarkOf(
        "{}", R"({"entities":{"urls":[{"url":"https://a.example"}]},"includes":{"tweets":[{"id":"2"}]}})");
    const PostPresentation presentation(bookmark);
    PostPresentation other(bookmark);
    EXPECT_EQ(presentation, other);
    other.externalLinks.first().title = QStringLiteral("T");
    EXPECT_NE(presentation, other);
    other = presentation;
    other.embeddedPosts.first().text = QStringLiteral("t");
    EXPECT_NE(presentation, other);
}

QByteArray nested(const QByteArray& key, int depth, const QByteArray& innermost)
{
    return ("{\"" + key + "\":").repeated(depth) + innermost + QByteArray(depth, '}');
}

TEST(PostPresentation, FindsADocumentAsDeepAsTheTextMayBeNested)
{
    const QByteArray document = R"({"blocks":[{"text":"deep"}]})";
    // The document takes three levels, the two objects around it one each.
    const auto presentation = [&](int depth) {
        return PostPresentation(bookmarkOf("{}", R"({"tweet":{"article":)" + nested("body", depth, document) +
                                                     R"(},"includes":{}})"));
    };
    const PostPresentation deepest = presentation(RawJSON::maximumDepth - 5);
    ASSERT_EQ(deepest.articleBlocks.size(), 1);
    EXPECT_EQ(deepest.articleBlocks.first().text, QStringLiteral("deep"));
    const PostPresentation deeper = presentation(RawJSON::maximumDepth - 4);
    EXPECT_TRUE(deeper.articleBlocks.isEmpty());
    EXPECT_EQ(deeper.kind, PostPresentationKind::post);
}

TEST(PostPresentation, SurvivesATextThatIsNestedWithoutEnd)
{
    const QByteArray endless = R"({"tweet":{"article":)" + QByteArray("{\"content\":").repeated(100000);
    EXPECT_EQ(PostPresentation(bookmarkOf("{}", endless)).kind, PostPresentationKind::post);
}

TEST(PostPresentation, ReadsATextWithNullBytesAndBrokenUTF8AsNone)
{
    const QByteArray link = R"({"entities":{"urls":[{"url":"https://a.example"}]})";
    EXPECT_EQ(PostPresentation(bookmarkOf("{}", link + '}')).externalLinks.size(), 1);
    EXPECT_TRUE(PostPresentation(bookmarkOf("{}", link + QByteArray("\0}", 2))).externalLinks.isEmpty());
    EXPECT_TRUE(PostPresentation(bookmarkOf("{}", link + ",\"a\":\"\xff\"}")).externalLinks.isEmpty());
    EXPECT_TRUE(PostPresentation(bookmarkOf("{}", QByteArray(1000, '\0'))).externalLinks.isEmpty());
}

} // namespace
} // namespace mirel
