#include "testing/Printing.h"

#include "simulator/posts/PostFactory.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <gtest/gtest.h>

namespace mirel::simulator {
namespace {

const QString origin = QStringLiteral("http://127.0.0.1:8080");

QJsonObject parsed(const RenderedPost& post)
{
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(post.json, &error).object();
    EXPECT_EQ(error.error, QJsonParseError::NoError) << post.json.toStdString();
    return object;
}

// Every bookmarked post of a small account, with what it refers to.
QList<RenderedPost> manyPosts(const PostFactory& factory)
{
    QList<RenderedPost> posts;
    for (int serial = 0; serial < 600; ++serial) {
        posts.append(factory.render({serial}));
        if (posts.last().reference)
            posts.append(factory.render(*posts.last().reference));
    }
    return posts;
}

TEST(PostFactory, MakesTheSamePostAgainAndInAnyOrder)
{
    const PostFactory first(8, 10'000, origin);
    const PostFactory second(8, 10'000, origin);
    const QByteArray late = second.render({9'000}).json;
    EXPECT_EQ(first.render({3}).json, second.render({3}).json);
    EXPECT_EQ(first.render({9'000}).json, late);
    EXPECT_NE(first.render({3}).json, PostFactory(9, 10'000, origin).render({3}).json);
}

TEST(PostFactory, FindsEachPostByItsIdentifierAndNoOther)
{
    const PostFactory factory(8, 50'000, origin);
    for (const int serial : {0, 1, 777, 49'999, 50'010}) {
        EXPECT_EQ(factory.find(factory.id({serial})), PostKey{serial});
        EXPECT_FALSE(factory.find(factory.id({serial}) + (1 << 22)));
    }
    EXPECT_FALSE(factory.find(0));
    EXPECT_FALSE(factory.find(-5));
}

TEST(PostFactory, GivesFiftyThousandPostsDifferentIdentifiersAndPlausibleDates)
{
    const PostFactory factory(2, 50'000, origin);
    QSet<qint64> ids;
    for (int serial = 0; serial < 50'000; ++serial)
        ids.insert(factory.id({serial}));
    EXPECT_EQ(ids.size(), 50'000);
    EXPECT_GT(*std::min_element(ids.begin(), ids.end()), 0);
}

TEST(PostFactory, HoldsEveryKindInEveryFiftyPosts)
{
    const PostFactory factory(8, 200, origin);
    for (const int start : {0, 13, 150}) {
        QSet<PostKind> kinds;
        for (int serial = start; serial < start + 50; ++serial)
            kinds.insert(factory.kind({serial}));
        EXPECT_EQ(kinds.size(), static_cast<qsizetype>(PostKind::Reply) + 1);
    }
}

TEST(PostFactory, CountsTheSpansOfLinksAndMentionsInCodePoints)
{
    const PostFactory factory(8, 600, origin);
    int spans = 0;
    for (const RenderedPost& post : manyPosts(factory)) {
        const QJsonObject object = parsed(post);
        for (const QJsonObject& holder : {object, object.value(QLatin1StringView("note_tweet")).toObject()}) {
            const QList<uint> text = holder.value(QLatin1StringView("text")).toString().toUcs4();
            const QJsonObject entities = holder.value(QLatin1StringView("entities")).toObject();
            for (const QJsonValue& url : entities.value(QLatin1StringView("urls")).toArray()) {
                const int start = url[QLatin1StringView("start")].toInt();
                const QList<uint> part = text.mid(start, url[QLatin1StringView("end")].toInt() - start);
                EXPECT_EQ(QString::fromUcs4(reinterpret_cast<const char32_t*>(part.data()), part.size()),
                          url[QLatin1StringView("url")].toString());
                ++spans;
            }
        }
    }
    EXPECT_GT(spans, 200);
}

TEST(PostFactory, VariesItsPostsAsRealOnesVary)
{
    const PostFactory factory(8, 600, origin);
    QSet<QString> languages;
    QByteArray all;
    QSet<qsizetype> photos;
    for (const RenderedPost& post : manyPosts(factory)) {
        const QJsonObject object = parsed(post);
        languages.insert(object.value(QLatin1StringView("lang")).toString());
        all += post.json;
        for (const auto& [key, json] : post.media)
            all += json;
        photos.insert(post.media.size());
    }
    EXPECT_GE(languages.size(), 20);
    EXPECT_EQ(photos, QSet<qsizetype>({0, 1, 2, 3, 4}));
    for (const char* piece :
         {"\"note_tweet\":", "\"content_state\":", "\"entityMap\":[", "\"entityMap\":{",
          "\"entity_ranges\":", "\"plain_text\":", "\"type\":\"quoted\"", "\"type\":\"retweeted\"",
          "\"type\":\"replied_to\"", "\"type\":\"animated_gif\"", "\"type\":\"video\"", "\"unwound_url\":",
          "\"images\":", "\"confidence\":1.0,", "18446744073709551615", "\"geo\":", "&amp;", "youtu"}) {
        EXPECT_TRUE(all.contains(piece)) << piece;
    }
}

TEST(PostFactory, LeavesOptionalFieldsOutNowAndThen)
{
    const PostFactory factory(8, 600, origin);
    for (const char* field : {"lang", "conversation_id", "public_metrics", "entities", "attachments"}) {
        int present = 0;
        const QList<RenderedPost> posts = manyPosts(factory);
        for (const RenderedPost& post : posts)
            present += parsed(post).contains(QLatin1StringView(field)) ? 1 : 0;
        EXPECT_GT(present, 0) << field;
        EXPECT_LT(present, posts.size()) << field;
    }
}

} // namespace
} // namespace mirel::simulator
