#include "testing/Printing.h"

#include "presentation/PresentationCase.h"
#include "presentation/RandomEnvelopes.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(PresentationFacts, AgreeWithThePresentationOfAnyEnvelope)
{
    RandomEnvelopes envelopes(20261121);
    QMap<QString, int> seen;
    for (int i = 0; i < 8000; ++i) {
        const Bookmark bookmark = envelopes.bookmark();
        const PostPresentation presentation(bookmark);
        ASSERT_EQ(PresentationFacts::of(bookmark), factsOf(presentation)) << bookmark.rawJSON.toStdString();
        ++seen[rawValue(presentation.kind)];
        ++seen[presentation.displayLabel()];
    }
    // The envelopes are worth something only when they lead everywhere.
    for (const auto& row : rawValues(PostPresentationKind()))
        EXPECT_GT(seen.value(row.text), 50) << row.text.data();
    for (const auto& row : rawValues(QuotedContentPresentation::Kind()))
        EXPECT_GT(seen.value(QStringLiteral("Quoted ") + label(row.value).toLower()), 50) << row.text.data();
}

TEST(PresentationFacts, AgreeWithThePresentationOfADamagedEnvelope)
{
    RandomEnvelopes envelopes(20261122);
    testing::RandomChoices random(20261123);
    const QList<QByteArray> damages{"\"",        "\\",        "{",     "}",
                                    ",",         "\x01",      "\xff",  R"(\ud800)",
                                    R"(\udc00)", R"(\u0065)", "1e999", "123456789012345678901234567890"};
    for (int i = 0; i < 8000; ++i) {
        Bookmark bookmark = envelopes.bookmark();
        const int place = random.below(static_cast<int>(bookmark.rawJSON.size()));
        bookmark.rawJSON.insert(place, damages.at(random.below(static_cast<int>(damages.size()))));
        ASSERT_EQ(PresentationFacts::of(bookmark), factsOf(PostPresentation(bookmark)))
            << bookmark.rawJSON.toStdString();
    }
}

TEST(PresentationFacts, FindTheMediaOfAnArticleInItsBlocksAlone)
{
    const QByteArray envelope = R"({"tweet":{},"includes":{"media":[{"media_key":"3_1","type":"photo",
        "url":"https://p.example/1.jpg"}],"tweets":[{"id":"9","article":{"content_state":{"blocks":[
        {"type":"atomic","text":" ","entityRanges":[{"key":0}]}],"entityMap":[{"type":"media","data":{
        "mediaItems":["KEY"]}}]}}}]}})";
    const auto facts = [&](const char* key) {
        return PresentationFacts::of(
            bookmarkOf(R"({"quotedPost":{}})", QByteArray(envelope).replace("KEY", key)));
    };
    ASSERT_TRUE(facts("1").quoted);
    EXPECT_EQ(facts("1").quoted->kind, QuotedContentPresentation::Kind::article);
    EXPECT_TRUE(facts("1").quoted->hasMedia);
    EXPECT_FALSE(facts("2").quoted->hasMedia);
}

TEST(PresentationFacts, OfABookmarkThatQuotesNothingHaveNoQuotedPart)
{
    const auto facts = PresentationFacts::of(
        bookmarkOf("{}", R"({"tweet":{"entities":{"urls":[{"url":"https://a.example"}]}}})"));
    EXPECT_EQ(facts.kind, PostPresentationKind::externalLink);
    EXPECT_TRUE(facts.hasExternalLinks);
    EXPECT_FALSE(facts.quoted);
}

} // namespace
} // namespace mirel
