#include "testing/Printing.h"

#include "simulator/posts/PostText.h"

#include <gtest/gtest.h>

namespace mirel::simulator {
namespace {

TEST(PostText, CountsEntitiesInCodePointsOfTheEscapedText)
{
    PostText text;
    text.append(u"a < 🎉 & ")
        .appendHashtag(QStringLiteral("tag"))
        .append(u" ")
        .appendMention(QStringLiteral("me"), 7);
    EXPECT_EQ(text.text(), QStringLiteral("a &lt; 🎉 &amp; #tag @me"));
    EXPECT_EQ(text.entities(), "{\"hashtags\":[{\"start\":15,\"end\":19,\"tag\":\"tag\"}],"
                               "\"mentions\":[{\"start\":20,\"end\":23,\"username\":\"me\",\"id\":\"7\"}]}");
}

TEST(PostText, GivesSeveralLinksOneSpan)
{
    PostText text;
    const QString shortURL = QStringLiteral("https://t.co/a");
    text.appendLinks({{shortURL, QStringLiteral("e1"), QStringLiteral("d"), {{"media_key", "\"3_1\""}}},
                      {shortURL, QStringLiteral("e2"), QStringLiteral("d"), {}}});
    EXPECT_EQ(text.text(), shortURL);
    EXPECT_EQ(text.entities(),
              "{\"urls\":[{\"start\":0,\"end\":14,\"url\":\"https://t.co/a\",\"expanded_url\":\"e1\","
              "\"display_url\":\"d\",\"media_key\":\"3_1\"},{\"start\":0,\"end\":14,"
              "\"url\":\"https://t.co/a\",\"expanded_url\":\"e2\",\"display_url\":\"d\"}]}");
}

TEST(JSONText, EscapesCharactersOutsideTheBasicPlaneAsPairs)
{
    EXPECT_EQ(jsonString(u"é😀\"\\\n\t"), QByteArray("\"é\\uD83D\\uDE00\\\"\\\\\\n\\u0009\""));
}

} // namespace
} // namespace mirel::simulator
