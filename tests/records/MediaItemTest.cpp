#include "testing/Printing.h"

#include "records/MediaItem.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

MediaItem item(MediaKind kind, const char* url)
{
    MediaItem media;
    media.kind = kind;
    media.url = QUrl(QString::fromUtf8(url));
    return media;
}

struct VideoRow
{
    const char* name;
    const char* url;
    // Null when the link has no video.
    const char* videoID;
};

class YouTubeVideoIDTest : public ::testing::TestWithParam<VideoRow>
{
};

TEST_P(YouTubeVideoIDTest, IsTakenFromTheLink)
{
    const auto expected =
        GetParam().videoID ? std::optional(QString::fromUtf8(GetParam().videoID)) : std::nullopt;
    EXPECT_EQ(item(MediaKind::youtube, GetParam().url).youtubeVideoID(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Links, YouTubeVideoIDTest,
    ::testing::Values(VideoRow{"Watch", "https://www.youtube.com/watch?v=abc", "abc"},
                      VideoRow{"WatchWithoutPrefix", "https://youtube.com/watch?v=abc&t=3", "abc"},
                      VideoRow{"MobileHost", "https://m.youtube.com/watch?v=abc", "abc"},
                      VideoRow{"HostInCapitals", "https://WWW.YouTube.COM/watch?v=abc", "abc"},
                      VideoRow{"FirstOfTwo", "https://youtube.com/watch?v=abc&v=def", "abc"},
                      VideoRow{"AnotherNameFirst", "https://youtube.com/watch?t=1&v=abc", "abc"},
                      VideoRow{"NameInCapitals", "https://youtube.com/watch?V=abc", nullptr},
                      VideoRow{"Encoded", "https://youtube.com/watch?v=a%2Db", "a-b"},
                      VideoRow{"EmptyValueThenPath", "https://youtube.com/embed/abc?v=", "abc"},
                      VideoRow{"Embed", "https://youtube.com/embed/abc", "abc"},
                      VideoRow{"Shorts", "https://youtube.com/shorts/abc", "abc"},
                      VideoRow{"Live", "https://youtube.com/live/abc/more", "abc"},
                      VideoRow{"DoubledSlashes", "https://youtube.com//embed//abc", "abc"},
                      VideoRow{"EmbedInCapitals", "https://youtube.com/Embed/abc", nullptr},
                      VideoRow{"Channel", "https://youtube.com/c/abc", nullptr},
                      VideoRow{"EmbedWithoutID", "https://youtube.com/embed/", nullptr},
                      VideoRow{"Bare", "https://youtube.com", nullptr},
                      VideoRow{"ShortLink", "https://youtu.be/abc", "abc"},
                      VideoRow{"ShortLinkWithMore", "https://youtu.be/abc/def?t=1", "abc"},
                      VideoRow{"ShortLinkBelow", "https://www.youtu.be/abc", "abc"},
                      VideoRow{"ShortLinkEmpty", "https://youtu.be/?v=abc", nullptr},
                      VideoRow{"ShortLinkBare", "https://youtu.be?v=abc", nullptr},
                      VideoRow{"HostThatOnlyEndsAlike", "https://notyoutube.com/watch?v=abc", nullptr},
                      VideoRow{"HostThatBeginsAlike", "https://youtube.com.example/watch?v=abc", nullptr},
                      VideoRow{"ShortHostThatOnlyEndsAlike", "https://notyoutu.be/abc", nullptr},
                      VideoRow{"NoHost", "/watch?v=abc", nullptr}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(MediaItem, HasNoVideoWhenItsKindIsAnother)
{
    for (const MediaKind kind : {MediaKind::photo, MediaKind::video, MediaKind::animatedGIF}) {
        const MediaItem media = item(kind, "https://www.youtube.com/watch?v=abc");
        EXPECT_FALSE(media.youtubeVideoID());
        EXPECT_FALSE(media.youtubeThumbnailURL());
        EXPECT_FALSE(media.youtubeEmbedURL());
    }
}

TEST(MediaItem, HasAThumbnailAndAPlayerOfItsVideo)
{
    const MediaItem media = item(MediaKind::youtube, "https://youtu.be/abc");
    EXPECT_EQ(media.youtubeThumbnailURL(), QUrl(QStringLiteral("https://i.ytimg.com/vi/abc/hqdefault.jpg")));
    const QString prefix =
        QStringLiteral("https://www.youtube-nocookie.com/embed/abc?playsinline=1&rel=0&origin=");
    const QString embed = absoluteString(*media.youtubeEmbedURL());
    EXPECT_TRUE(embed.startsWith(prefix)) << qPrintable(embed);
    const QStringList addresses = embed.sliced(prefix.size()).split(QStringLiteral("&widget_referrer="));
    ASSERT_EQ(addresses.size(), 2);
    EXPECT_EQ(addresses[0], addresses[1]);
    EXPECT_TRUE(addresses[0].startsWith(QStringLiteral("https"))) << qPrintable(addresses[0]);
}

TEST(MediaItem, KeepsTheFirstOfEachID)
{
    QList<MediaItem> items{item(MediaKind::photo, "https://a.example/1"),
                           item(MediaKind::photo, "https://a.example/2"),
                           item(MediaKind::photo, "https://a.example/3")};
    items[0].id = items[2].id = QStringLiteral("x");
    items[1].id = QStringLiteral("y");
    EXPECT_EQ(uniquedByID(items), items.first(2));
    EXPECT_EQ(uniquedByID({}), QList<MediaItem>());
}

} // namespace
} // namespace mirel
