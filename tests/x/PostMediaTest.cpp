#include "testing/Printing.h"

#include "support/RawJSON.h"
#include "x/PageBuilding.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace mirel {
namespace {

using namespace testPages;
using postMapping::MediaByKey;

MediaByKey mediaOf(const QByteArray& list)
{
    return *postMapping::mediaByKey(decodeRawJSON<IncludesDTO>(R"({"media":)" + list + '}'));
}

MediaItem onlyItem(const QByteArray& medium)
{
    const auto items = postMapping::mediaItems({QStringLiteral("k")}, mediaOf('[' + medium + ']'));
    EXPECT_EQ(items.size(), 1);
    return items.value(0);
}

QUrl url(const char* text)
{
    return QUrl(QString::fromLatin1(text));
}

TEST(MediaItems, TakeTheVideoVariantOfTheHighestRateWhateverTheOrder)
{
    QByteArrayList variants{
        R"({"content_type":"video/mp4","bit_rate":832000,"url":"https://v.example/832.mp4"})",
        R"({"content_type":"video/mp4","bit_rate":2176000,"url":"https://v.example/2176.mp4"})",
        R"({"content_type":"application/x-mpegURL","url":"https://v.example/list.m3u8"})"};
    std::sort(variants.begin(), variants.end());
    do {
        EXPECT_EQ(onlyItem(R"({"media_key":"k","type":"video","variants":[)" + variants.join(',') + "]}").url,
                  url("https://v.example/2176.mp4"));
    } while (std::next_permutation(variants.begin(), variants.end()));
}

TEST(MediaItems, TakeTheFirstOfTwoVariantsWithoutARate)
{
    EXPECT_EQ(onlyItem(R"({"media_key":"k","type":"video","variants":[
                  {"content_type":"video/mp4","url":"https://v.example/1.mp4"},
                  {"content_type":"video/mp4","url":"https://v.example/2.mp4"}]})")
                  .url,
              url("https://v.example/1.mp4"));
}

TEST(MediaItems, KeepTheEarlierOfTwoVariantsOfTheSameRate)
{
    EXPECT_EQ(onlyItem(R"({"media_key":"k","type":"video","variants":[
                  {"content_type":"video/mp4","bit_rate":0,"url":"https://v.example/1.mp4"},
                  {"content_type":"video/mp4","url":"https://v.example/2.mp4"}]})")
                  .url,
              url("https://v.example/1.mp4"));
}

TEST(MediaItems, ShowAPhotoByItsURLWithEverythingThatX_Sent)
{
    const MediaItem item = onlyItem(R"({"media_key":"k","type":"photo","url":"https://p.example/1.jpg",
        "preview_image_url":"https://p.example/small.jpg","alt_text":"A chart","width":1200,"height":675})");
    const MediaItem expected{.id = QStringLiteral("k"),
                             .kind = MediaKind::photo,
                             .url = url("https://p.example/1.jpg"),
                             .previewURL = url("https://p.example/small.jpg"),
                             .altText = QStringLiteral("A chart"),
                             .width = 1200,
                             .height = 675};
    EXPECT_EQ(item, expected);
}

TEST(MediaItems, ShowAVideoWithoutAURLByItsBestVariant)
{
    const MediaItem item = onlyItem(R"({"media_key":"k","type":"video",
        "preview_image_url":"https://p.example/still.jpg",
        "variants":[{"content_type":"video/mp4","bit_rate":1,"url":"https://v.example/1.mp4"}]})");
    EXPECT_EQ(item.kind, MediaKind::video);
    EXPECT_EQ(item.url, url("https://v.example/1.mp4"));
    EXPECT_EQ(item.previewURL, url("https://p.example/still.jpg"));
}

TEST(MediaItems, ShowAnAnimatedImageWhoseVariantsHaveNoContentTypeByItsPreview)
{
    const MediaItem item = onlyItem(R"({"media_key":"k","type":"animated_gif",
        "preview_image_url":"https://p.example/still.jpg","variants":[{"url":"https://v.example/1.mp4"}]})");
    EXPECT_EQ(item.kind, MediaKind::animatedGIF);
    EXPECT_EQ(item.url, url("https://p.example/still.jpg"));
}

TEST(MediaItems, ReadAnUnknownTypeAsAPhoto)
{
    EXPECT_EQ(onlyItem(R"({"media_key":"k","type":"hologram","url":"https://p.example/1"})").kind,
              MediaKind::photo);
}

TEST(MediaItems, KeepTheOrderOfTheKeysAndSkipUnknownOnesAndThoseWithoutAUsableURL)
{
    const MediaByKey media = mediaOf(R"([
        {"media_key":"a","type":"photo","url":"https://p.example/a"},
        {"media_key":"none","type":"photo"},
        {"media_key":"broken","type":"photo","url":"https://exa mple:port/",
         "preview_image_url":"https://p.example/unused"},
        {"media_key":"b","type":"photo","url":"https://p.example/b"}])");
    const QStringList keys{QStringLiteral("b"), QStringLiteral("unknown"), QStringLiteral("none"),
                           QStringLiteral("broken"), QStringLiteral("a")};
    EXPECT_EQ(idsOf(postMapping::mediaItems(keys, media)),
              (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
}

QStringList youtubeIDs(const QByteArray& urls)
{
    return idsOf(postMapping::youtubeItems(
        decodeRawJSON<TweetDTO>(post("1", R"(,"entities":{"urls":[)" + urls + "]}"))));
}

struct Link
{
    const char* name;
    const char* url;
    bool qualifies;
    friend void PrintTo(const Link& row, std::ostream* stream) { *stream << row.name; }
};

class YouTubeItems : public testing::TestWithParam<Link>
{
};

TEST_P(YouTubeItems, AreTheLinksToYouTube)
{
    const QByteArray text = GetParam().url;
    const QStringList expected = GetParam().qualifies
                                     ? QStringList{QStringLiteral("youtube-") + QString::fromLatin1(text)}
                                     : QStringList{};
    EXPECT_EQ(youtubeIDs(R"({"expanded_url":")" + text + R"("})"), expected);
}

INSTANTIATE_TEST_SUITE_P(Links, YouTubeItems,
                         testing::Values(Link{"shortLink", "https://youtu.be/abc", true},
                                         Link{"mainDomain", "https://youtube.com/watch?v=abc", true},
                                         Link{"mobileSubdomain", "https://m.youtube.com/watch?v=abc", true},
                                         Link{"wwwSubdomain", "https://www.youtube.com/watch?v=abc", true},
                                         Link{"capitalLetters", "https://WWW.YouTube.COM/watch?v=abc", true},
                                         Link{"hostThatMerelyEndsInTheDomain",
                                              "https://notyoutube.com/watch?v=abc", true},
                                         Link{"subdomainOfTheShortLink", "https://www.youtu.be/abc", false},
                                         Link{"domainAsAPrefix", "https://youtube.com.example/abc", false},
                                         Link{"domainInThePath", "https://example.com/youtube.com", false},
                                         Link{"noHost", "youtube.com/watch?v=abc", false},
                                         Link{"noURL", "https://exa mple:youtube.com", false}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(YouTubeItems, TakeTheUnwoundBeforeTheExpandedBeforeTheShortURL)
{
    EXPECT_EQ(youtubeIDs(R"({"url":"https://youtu.be/1","expanded_url":"https://youtu.be/2",
                             "unwound_url":"https://youtu.be/3"},
                            {"url":"https://youtu.be/1","expanded_url":"https://youtu.be/2"},
                            {"url":"https://youtu.be/1"},{},
                            {"unwound_url":"https://example.com","expanded_url":"https://youtu.be/4"})"),
              (QStringList{QStringLiteral("youtube-https://youtu.be/3"),
                           QStringLiteral("youtube-https://youtu.be/2"),
                           QStringLiteral("youtube-https://youtu.be/1")}));
}

TEST(YouTubeItems, HaveNothingButTheirLink)
{
    const auto items = postMapping::youtubeItems(
        decodeRawJSON<TweetDTO>(post("1", R"(,"entities":{"urls":[{"url":"https://youtu.be/abc"}]})")));
    MediaItem expected;
    expected.id = QStringLiteral("youtube-https://youtu.be/abc");
    expected.kind = MediaKind::youtube;
    expected.url = url("https://youtu.be/abc");
    EXPECT_EQ(items, QList<MediaItem>{expected});
}

TEST(YouTubeItems, OfTheSameURLBecomeOneItemOfTheBookmark)
{
    const auto item = bookmark(post("1", R"(,"entities":{"urls":[{"url":"https://youtu.be/abc"},
                                            {"expanded_url":"https://youtu.be/abc"}]})"));
    EXPECT_EQ(idsOf(item.media), QStringList{QStringLiteral("youtube-https://youtu.be/abc")});
}

const QByteArray envelopeOfArticle = R"({
    "includes":{"tweets":[{"id":"8"},{"id":"9","article":{"cover_media":"q","media_entities":["r"]}},
                          {"id":"9","article":{"cover_media":"unreachable"}}]},
    "tweet":{"id":"1","article":{"cover_media":"c",
        "media_entities":["a",{"media_key":"b"},{"mediaId":"d"},{"id":"e"},"a",{"other":"x"},7,
                          {"media_key":7,"id":"f"},{"media_key":"c"}]}}})";

TEST(ArticleMediaKeys, AreTheCoverAndTheEntitiesInEveryShapeEachOnce)
{
    const QStringList expected{QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b"),
                               QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f")};
    EXPECT_EQ(postMapping::articleMediaKeys(QStringLiteral("1"), envelopeOfArticle), expected);
}

TEST(ArticleMediaKeys, AreFoundInAnIncludedPostToo)
{
    EXPECT_EQ(postMapping::articleMediaKeys(QStringLiteral("9"), envelopeOfArticle),
              (QStringList{QStringLiteral("q"), QStringLiteral("r")}));
}

TEST(ArticleMediaKeys, AreWhatCouldBeGatheredWhenTheTextDoesNotFit)
{
    const auto keys = [](const QByteArray& json) {
        return postMapping::articleMediaKeys(QStringLiteral("1"), json);
    };
    for (const char* const json : {"", "not JSON", "[]", "{}", R"({"tweet":"1"})",
                                   R"({"tweet":{"id":1,"article":{"cover_media":"c"}}})",
                                   R"({"tweet":{"id":"1"}})", R"({"tweet":{"id":"1","article":"c"}})",
                                   R"({"tweet":{"id":"2"},"includes":{"tweets":{"id":"1"}}})"})
        EXPECT_EQ(keys(json), QStringList{}) << json;
    EXPECT_EQ(keys(R"({"tweet":{"id":"1","article":{"cover_media":"c","media_entities":"a"}}})"),
              QStringList{QStringLiteral("c")});
    EXPECT_EQ(keys(R"({"tweet":{"id":"1","article":{"cover_media":7,"media_entities":["a"]}}})"),
              QStringList{QStringLiteral("a")});
}

TEST(ArticleMediaItems, AreTheKnownKeysAnywhereInTheArticle)
{
    const MediaByKey media = mediaOf(R"([
        {"media_key":"a","type":"photo","url":"https://p.example/a"},
        {"media_key":"b","type":"photo","url":"https://p.example/b"},
        {"media_key":"c","type":"photo","url":"https://p.example/c"},
        {"media_key":"outside","type":"photo","url":"https://p.example/o"}])");
    const QByteArray json = R"({"tweet":{"id":"1","text":"outside","article":{
        "content_state":{"entityMap":[{"key":"0","value":{"data":{"mediaItems":[{"mediaId":"b"},{"mediaId":"a"},
        {"mediaId":"unknown"},{"mediaId":"b"}]}}}]}}},
        "includes":{"tweets":[{"id":"9","article":["c"]},{"id":"8","article":{"x":["c"]}}]}})";
    EXPECT_EQ(idsOf(postMapping::articleMediaItems(QStringLiteral("1"), json, media)),
              (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
    EXPECT_EQ(idsOf(postMapping::articleMediaItems(QStringLiteral("8"), json, media)),
              QStringList{QStringLiteral("c")});
    EXPECT_TRUE(postMapping::articleMediaItems(QStringLiteral("9"), json, media).isEmpty());
    EXPECT_TRUE(postMapping::articleMediaItems(QStringLiteral("7"), json, media).isEmpty());
    EXPECT_TRUE(postMapping::articleMediaItems(QStringLiteral("1"), "{", media).isEmpty());
}

TEST(CollectMediaKeys, KeepsTheOrderOfArraysAndWhatWasThere)
{
    QStringList keys{QStringLiteral("x")};
    const QSet<QString> known{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("x")};
    const RawJSON json = RawJSON::parse(R"(["b",["x",{"a":"no key of the object counts"}],7,"\u0061","c"])");
    postMapping::collectMediaKeys(json.root(), known, keys);
    EXPECT_EQ(keys, (QStringList{QStringLiteral("x"), QStringLiteral("b"), QStringLiteral("a")}));
}

TEST(TweetOfEnvelope, IsThePostItselfOrTheFirstIncludedOneOfThatID)
{
    const RawJSON envelope = RawJSON::parse(R"({"tweet":{"id":"1","text":"own"},
        "includes":{"tweets":[7,{"id":2},{"id":"1","text":"included"},{"id":"2","text":"first"},
                              {"id":"2","text":"second"}]}})");
    const auto text = [&](const QString& id) {
        const auto found = postMapping::tweet(id, envelope.root());
        return found ? found->member("text")->string() : QStringLiteral("none");
    };
    EXPECT_EQ(text(QStringLiteral("1")), QStringLiteral("own"));
    EXPECT_EQ(text(QStringLiteral("2")), QStringLiteral("first"));
    EXPECT_EQ(text(QStringLiteral("3")), QStringLiteral("none"));
}

} // namespace
} // namespace mirel
