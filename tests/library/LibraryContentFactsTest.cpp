#include "testing/Printing.h"

#include "library/LibraryContentFacts.h"
#include "library/LibrarySearchExpression.h"

#include "SearchTesting.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

using Quoted = QuotedContentPresentation::Kind;

TEST(LibraryContentType, ListsItsCasesWithTheirTextsAndLabels)
{
    QStringList cases;
    for (const auto& row : rawValues(LibraryContentType()))
        cases.append(row.text + QStringLiteral(": ") + label(row.value));
    EXPECT_EQ(cases, (QStringList{QStringLiteral("tweet: Tweet"), QStringLiteral("article: Article"),
                                  QStringLiteral("quote: Quote"), QStringLiteral("thread: Thread"),
                                  QStringLiteral("external_link: External link"),
                                  QStringLiteral("video: Video"), QStringLiteral("image: Image")}));
}

struct FactsRow
{
    const char* name;
    LibraryContentFacts facts;
    LibraryContentType contentType;
};

class ContentTypeTest : public ::testing::TestWithParam<FactsRow>
{
};

TEST_P(ContentTypeTest, IsThatOfTheFirstRuleThatApplies)
{
    EXPECT_EQ(GetParam().facts.contentType(), GetParam().contentType);
}

INSTANTIATE_TEST_SUITE_P(
    Facts, ContentTypeTest,
    ::testing::Values(
        FactsRow{"Nothing", {}, LibraryContentType::tweet},
        FactsRow{"Title",
                 {.hasTitleOrText = true,
                  .quotedKind = Quoted::video,
                  .kind = PostPresentationKind::externalLink,
                  .threadCount = 3,
                  .hasVideo = true},
                 LibraryContentType::article},
        FactsRow{"QuotedArticle",
                 {.quotedKind = Quoted::article, .threadCount = 2, .hasVideo = true},
                 LibraryContentType::article},
        FactsRow{"QuotedLink", {.quotedKind = Quoted::externalLink}, LibraryContentType::externalLink},
        FactsRow{"QuotedVideo", {.quotedKind = Quoted::video}, LibraryContentType::video},
        FactsRow{"QuotedImage", {.quotedKind = Quoted::image}, LibraryContentType::image},
        FactsRow{"QuotedPost",
                 {.quotedKind = Quoted::post, .kind = PostPresentationKind::article, .threadCount = 2},
                 LibraryContentType::quote},
        FactsRow{"PresentedArticle",
                 {.kind = PostPresentationKind::article, .threadCount = 2, .hasVideo = true},
                 LibraryContentType::article},
        FactsRow{"ThreadOfTwo",
                 {.kind = PostPresentationKind::externalLink, .threadCount = 2, .hasVideo = true},
                 LibraryContentType::thread},
        FactsRow{"ThreadOfOne", {.threadCount = 1}, LibraryContentType::tweet},
        FactsRow{"LinkWithVideo",
                 {.kind = PostPresentationKind::externalLink, .hasVideo = true, .hasPhoto = true},
                 LibraryContentType::externalLink},
        FactsRow{"VideoAndPhoto", {.hasVideo = true, .hasPhoto = true}, LibraryContentType::video},
        FactsRow{"Photo", {.hasPhoto = true}, LibraryContentType::image},
        FactsRow{"Repost", {.kind = PostPresentationKind::repost}, LibraryContentType::tweet},
        FactsRow{"QuoteThatIsNotShown", {.kind = PostPresentationKind::quote}, LibraryContentType::tweet},
        FactsRow{"ThreadThatIsNotThere", {.kind = PostPresentationKind::thread}, LibraryContentType::tweet}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LibraryContentFacts, AreReadFromTheBookmarkAndItsPresentation)
{
    Bookmark bookmark;
    EXPECT_EQ(LibraryContentFacts::of(bookmark, {}), LibraryContentFacts());

    bookmark.contentTitle = QString();
    EXPECT_TRUE(LibraryContentFacts::of(bookmark, {}).hasTitleOrText) << "an empty title is one";
    bookmark.contentTitle.reset();
    bookmark.contentText = QStringLiteral("text");
    EXPECT_TRUE(LibraryContentFacts::of(bookmark, {}).hasTitleOrText);
    bookmark.contentText.reset();

    bookmark.thread.resize(2);
    const PresentationFacts presentation{.kind = PostPresentationKind::thread,
                                         .quoted = PresentationFacts::Quoted{.kind = Quoted::image}};
    EXPECT_EQ(LibraryContentFacts::of(bookmark, presentation),
              (LibraryContentFacts{
                  .quotedKind = Quoted::image, .kind = PostPresentationKind::thread, .threadCount = 2}));
}

TEST(LibraryContentFacts, TakeMovingPicturesForVideos)
{
    for (const MediaKind kind : {MediaKind::video, MediaKind::animatedGIF, MediaKind::youtube}) {
        Bookmark bookmark;
        bookmark.media = {testing::makeMedia(kind)};
        EXPECT_EQ(LibraryContentFacts::of(bookmark, {}), LibraryContentFacts{.hasVideo = true});
        bookmark.media.append(testing::makeMedia(MediaKind::photo));
        EXPECT_EQ(LibraryContentFacts::of(bookmark, {}),
                  (LibraryContentFacts{.hasVideo = true, .hasPhoto = true}));
    }
}

TEST(LibrarySearchExpression, TellsTheContentTypeOfABookmark)
{
    Bookmark bookmark = testing::makeBookmark();
    EXPECT_EQ(LibrarySearchExpression::contentType(bookmark), LibraryContentType::tweet);
    bookmark.media = {testing::makeMedia(MediaKind::photo)};
    EXPECT_EQ(LibrarySearchExpression::contentType(bookmark), LibraryContentType::image);
    bookmark.contentTitle = QStringLiteral("Title");
    EXPECT_EQ(LibrarySearchExpression::contentType(bookmark), LibraryContentType::article);
}

} // namespace
} // namespace mirel
