#include "testing/Printing.h"

#include "support/RawJSONDecoding.h"
#include "x/TweetPageResponse.h"
#include "x/XUser.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

// The keys that each type requires.
struct RequiredKey
{
    const char* name;
    void (*decode)(const QByteArray&);
    QByteArray whole;
    QByteArray member;
    friend void PrintTo(const RequiredKey& row, std::ostream* stream) { *stream << row.name; }
};

template <typename Type>
void decodeOnly(const QByteArray& json)
{
    static_cast<void>(decodeRawJSON<Type>(json));
}

class WireType : public testing::TestWithParam<RequiredKey>
{
};

TEST_P(WireType, RequiresTheKey)
{
    const RequiredKey& row = GetParam();
    ASSERT_NO_THROW(row.decode(row.whole));
    QByteArray without = row.whole;
    without.replace(row.member, R"("other":0)");
    ASSERT_NE(without, row.whole);
    EXPECT_THROW(row.decode(without), RawJSONError);
    QByteArray null = row.whole;
    null.replace(row.member, row.member.first(row.member.indexOf(':') + 1) + "null");
    EXPECT_THROW(row.decode(null), RawJSONError);
}

const QByteArray wholeTweet = R"({"id":"1","text":"t","author_id":"2"})";
const QByteArray wholeUser = R"({"id":"1","name":"n","username":"u"})";
const QByteArray wholeMedia = R"({"media_key":"3_1","type":"photo"})";
const QByteArray wholeReference = R"({"type":"quoted","id":"1"})";

INSTANTIATE_TEST_SUITE_P(
    Keys, WireType,
    testing::Values(
        RequiredKey{"pageData", decodeOnly<TweetPageResponse>, R"({"data":[],"meta":{}})", R"("data":[])"},
        RequiredKey{"tweetID", decodeOnly<TweetDTO>, wholeTweet, R"("id":"1")"},
        RequiredKey{"tweetText", decodeOnly<TweetDTO>, wholeTweet, R"("text":"t")"},
        RequiredKey{"tweetAuthor", decodeOnly<TweetDTO>, wholeTweet, R"("author_id":"2")"},
        RequiredKey{"userID", decodeOnly<UserDTO>, wholeUser, R"("id":"1")"},
        RequiredKey{"userName", decodeOnly<UserDTO>, wholeUser, R"("name":"n")"},
        RequiredKey{"username", decodeOnly<UserDTO>, wholeUser, R"("username":"u")"},
        RequiredKey{"mediaKey", decodeOnly<MediaDTO>, wholeMedia, R"("media_key":"3_1")"},
        RequiredKey{"mediaType", decodeOnly<MediaDTO>, wholeMedia, R"("type":"photo")"},
        RequiredKey{"variantURL", decodeOnly<MediaVariantDTO>, R"({"url":"u"})", R"("url":"u")"},
        RequiredKey{"noteText", decodeOnly<NoteTweetDTO>, R"({"text":"t"})", R"("text":"t")"},
        RequiredKey{"referenceType", decodeOnly<ReferencedTweetDTO>, wholeReference, R"("type":"quoted")"},
        RequiredKey{"referenceID", decodeOnly<ReferencedTweetDTO>, wholeReference, R"("id":"1")"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(WireTypes, ReadEveryKeyOfAPost)
{
    const auto tweet = decodeRawJSON<TweetDTO>(R"({
        "id":"1","text":"t","author_id":"2","conversation_id":"3","created_at":"c","lang":"en",
        "note_tweet":{"text":"note"},
        "article":{"title":"title","plain_text":"plain","cover_media":"3_1","media_entities":["3_2"]},
        "attachments":{"media_keys":["3_3","3_4"]},
        "public_metrics":{"impression_count":1,"retweet_count":2,"bookmark_count":3,"reply_count":4,
                          "quote_count":5,"like_count":6},
        "referenced_tweets":[{"type":"quoted","id":"9"}],
        "entities":{"urls":[{"url":"u","expanded_url":"e","unwound_url":"w"}]},
        "edit_history_tweet_ids":["1"],"unknown":[{"deep":null}]})");
    EXPECT_EQ(tweet.id, QStringLiteral("1"));
    EXPECT_EQ(tweet.text, QStringLiteral("t"));
    EXPECT_EQ(tweet.authorID, QStringLiteral("2"));
    EXPECT_EQ(tweet.conversationID, QStringLiteral("3"));
    EXPECT_EQ(tweet.createdAt, QStringLiteral("c"));
    EXPECT_EQ(tweet.language, QStringLiteral("en"));
    EXPECT_EQ(tweet.noteTweet->text, QStringLiteral("note"));
    EXPECT_EQ(tweet.article->title, QStringLiteral("title"));
    EXPECT_EQ(tweet.article->plainText, QStringLiteral("plain"));
    EXPECT_EQ(tweet.article->coverMedia, QStringLiteral("3_1"));
    EXPECT_EQ(tweet.article->mediaEntities->first().id, QStringLiteral("3_2"));
    EXPECT_EQ(tweet.attachments->mediaKeys, (QStringList{QStringLiteral("3_3"), QStringLiteral("3_4")}));
    EXPECT_EQ(tweet.publicMetrics->model(), (PostMetrics{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(tweet.referencedTweets->first().type, QStringLiteral("quoted"));
    EXPECT_EQ(tweet.referencedTweets->first().id, QStringLiteral("9"));
    EXPECT_EQ(tweet.entities->urls->first().url, QStringLiteral("u"));
    EXPECT_EQ(tweet.entities->urls->first().expandedURL, QStringLiteral("e"));
    EXPECT_EQ(tweet.entities->urls->first().unwoundURL, QStringLiteral("w"));
}

TEST(WireTypes, ReadEveryKeyOfAMedium)
{
    const auto media = decodeRawJSON<MediaDTO>(R"({
        "media_key":"7_1","type":"video","url":"u","preview_image_url":"p","alt_text":"a","width":640,
        "height":480,"duration_ms":1000,"variants":[{"bit_rate":832000,"content_type":"video/mp4","url":"v"}]})");
    EXPECT_EQ(media.mediaKey, QStringLiteral("7_1"));
    EXPECT_EQ(media.type, QStringLiteral("video"));
    EXPECT_EQ(media.url, QStringLiteral("u"));
    EXPECT_EQ(media.previewImageURL, QStringLiteral("p"));
    EXPECT_EQ(media.altText, QStringLiteral("a"));
    EXPECT_EQ(media.width, 640);
    EXPECT_EQ(media.height, 480);
    EXPECT_EQ(media.variants->first().bitRate, 832000);
    EXPECT_EQ(media.variants->first().contentType, QStringLiteral("video/mp4"));
    EXPECT_EQ(media.variants->first().url, QStringLiteral("v"));
}

TEST(WireTypes, ReadAUserAsAnAuthorWithoutAPictureAddressThatIsNoURL)
{
    const auto user = [](const QByteArray& picture) {
        return decodeRawJSON<UserDTO>(R"({"id":"1","name":"n","username":"u","profile_image_url":)" +
                                      picture + '}')
            .synced();
    };
    EXPECT_EQ(user(R"("https://example.com/p.jpg")").profileImageURL,
              QUrl(QStringLiteral("https://example.com/p.jpg")));
    EXPECT_EQ(user(R"("https://exa mple:port/")").profileImageURL, std::nullopt);
    EXPECT_EQ(user("null").profileImageURL, std::nullopt);
    EXPECT_EQ(user("null").xID, QStringLiteral("1"));
    EXPECT_EQ(user("null").name, QStringLiteral("n"));
    EXPECT_EQ(user("null").username, QStringLiteral("u"));
}

TEST(WireTypes, CountAbsentMetricsAsZero)
{
    EXPECT_EQ(decodeRawJSON<MetricsDTO>(R"({"like_count":3})").model(), (PostMetrics{.likes = 3}));
    EXPECT_EQ(decodeRawJSON<MetricsDTO>("{}").model(), PostMetrics{});
}

TEST(WireTypes, ReadArticleMediaEntitiesInEveryShape)
{
    const auto id = [](const char* json) { return decodeRawJSON<ArticleMediaEntityDTO>(json).id; };
    EXPECT_EQ(id(R"("3_1")"), QStringLiteral("3_1"));
    EXPECT_EQ(id(R"({"id":"c","mediaId":"b","media_key":"a"})"), QStringLiteral("a"));
    EXPECT_EQ(id(R"({"id":"c","mediaId":"b"})"), QStringLiteral("b"));
    EXPECT_EQ(id(R"({"id":"c","media_key":null})"), QStringLiteral("c"));
}

TEST(WireTypes, RefuseAnArticleMediaEntityWithoutAnIdentifier)
{
    for (const char* const json : {"{}", R"({"key":"3_1"})", "7", "null", "[]"}) {
        try {
            static_cast<void>(decodeRawJSON<ArticleMediaEntityDTO>(json));
            ADD_FAILURE() << json;
        } catch (const RawJSONError& error) {
            EXPECT_EQ(error.description(), QStringLiteral("Article media entity has no media identifier."));
        }
    }
    EXPECT_THROW(decodeOnly<ArticleMediaEntityDTO>(R"({"media_key":7,"id":"c"})"), RawJSONError);
}

TEST(WireTypes, ListAllMediaKeysOfAnArticleOnceCoverFirst)
{
    const auto keys = [](const char* json) { return decodeRawJSON<ArticleDTO>(json).allMediaKeys(); };
    EXPECT_EQ(keys(R"({"cover_media":"c","media_entities":["a",{"media_key":"c"},{"id":"b"},"a"]})"),
              (QStringList{QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(keys(R"({"title":"t"})"), QStringList{});
}

TEST(WireTypes, KeepThePathOfAnEntityThatCannotBeRead)
{
    try {
        decodeOnly<TweetPageResponse>(
            R"({"data":[{"id":"1","text":"","author_id":"2","article":{"media_entities":["a",{}]}}]})");
        ADD_FAILURE();
    } catch (const RawJSONError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("data.0.article.media_entities.1: "
                                                      "Article media entity has no media identifier."));
    }
}

} // namespace
} // namespace mirel
