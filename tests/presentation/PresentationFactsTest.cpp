#include "testing/Printing.h"

#include "presentation/PresentationCase.h"

#include <gtest/gtest.h>

#include <random>

namespace mirel {
namespace {

// Envelopes of every shape, from a seed: mostly of the right keys and types, sometimes not.
class RandomEnvelopes
{
public:
    explicit RandomEnvelopes(unsigned int seed)
        : m_random(seed)
    {
    }

    QByteArray envelope()
    {
        QJsonObject envelope{{QStringLiteral("includes"), includes()}};
        envelope.insert(QStringLiteral("tweet"), post(QStringLiteral("1")));
        return writeJSON(envelope);
    }

    Bookmark bookmark()
    {
        Bookmark bookmark = bookmarkOf("{}", envelope());
        if (chance(4))
            bookmark.contentTitle = QStringLiteral("Own title");
        bookmark.thread.resize(below(4));
        if (chance(2))
            bookmark.media.append(item());
        if (chance(4))
            return bookmark;
        bookmark.quotedPost.emplace();
        bookmark.quotedPost->tweetID = key({"8", "9"});
        if (chance(3))
            bookmark.quotedPost->contentTitle = QStringLiteral("Stored title");
        if (chance(3))
            bookmark.quotedPost->contentText = QStringLiteral("Line\n \nLine");
        for (int i = below(3); i > 0; --i)
            bookmark.quotedPost->media.append(item());
        return bookmark;
    }

private:
    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned int>(limit)); }
    bool chance(int outOf) { return below(outOf) == 0; }

    QString key(std::initializer_list<const char*> keys)
    {
        return QString::fromLatin1(*(keys.begin() + below(static_cast<int>(keys.size()))));
    }

    // Now and then something of another type.
    QJsonValue orOdd(const QJsonValue& value)
    {
        if (!chance(10))
            return value;
        const QJsonArray odd{QJsonValue::Null, 7, true, QStringLiteral("x"), QJsonObject(), QJsonArray()};
        return odd.at(below(static_cast<int>(odd.size())));
    }

    template <typename Make>
    QJsonArray list(int limit, Make make)
    {
        QJsonArray array;
        for (int i = below(limit); i > 0; --i)
            array.append(orOdd(make()));
        return array;
    }

    QString mediaKey() { return key({"3_1", "7_2", "16_3", "9_4", "1", "2", "3"}); }

    MediaItem item()
    {
        MediaItem item;
        item.id = mediaKey();
        item.kind = static_cast<MediaKind>(below(4));
        item.url = QUrl(QStringLiteral("https://p.example/stored"));
        return item;
    }

    QJsonObject medium()
    {
        return {{QStringLiteral("media_key"), orOdd(mediaKey())},
                {QStringLiteral("type"), orOdd(key({"photo", "video", "animated_gif", "hologram"}))},
                {QStringLiteral("url"), orOdd(key({"https://p.example/a", "http://[bad"}))}};
    }

    QJsonObject link()
    {
        QJsonObject link{
            {QStringLiteral("url"), key({"https://t.co/a", "https://x.com/a", "https://a.example/",
                                         "https://b.example/", "http://[bad"})}};
        if (chance(2))
            link.insert(QStringLiteral("title"), orOdd(QStringLiteral("Page")));
        return link;
    }

    QJsonObject article()
    {
        QJsonObject article;
        if (chance(2))
            article.insert(QStringLiteral("title"), orOdd(QStringLiteral("Title")));
        if (chance(2))
            article.insert(QStringLiteral("cover_media"), orOdd(mediaKey()));
        if (chance(2))
            article.insert(QStringLiteral("media_entities"), orOdd(list(3, [&] { return mediaKey(); })));
        if (chance(2))
            article.insert(QStringLiteral("plain_text"), orOdd(QStringLiteral("a\n \nb")));
        if (chance(2))
            article.insert(QStringLiteral("content_state"), orOdd(document()));
        return article;
    }

    QJsonObject document()
    {
        const auto block = [&] {
            const QJsonObject range{{QStringLiteral("key"), orOdd(below(3))}};
            return QJsonObject{{QStringLiteral("type"), key({"atomic", "atomic", "unstyled"})},
                               {QStringLiteral("text"), orOdd(key({" ", "text"}))},
                               {QStringLiteral("entityRanges"), QJsonArray{orOdd(range)}}};
        };
        const auto entity = [&] {
            const QJsonObject data{
                {QStringLiteral("mediaItems"), orOdd(list(3, [&] { return mediaKey(); }))}};
            return QJsonObject{{QStringLiteral("type"), key({"MEDIA", "image", "divider"})},
                               {QStringLiteral("data"), orOdd(data)}};
        };
        return {{QStringLiteral("blocks"), orOdd(list(4, block))},
                {QStringLiteral("entityMap"), orOdd(list(4, entity))}};
    }

    QJsonObject post(const QString& id)
    {
        QJsonObject post{{QStringLiteral("id"), orOdd(id)}};
        const QJsonObject reference{{QStringLiteral("type"), key({"retweeted", "quoted"})}};
        post.insert(QStringLiteral("referenced_tweets"), orOdd(QJsonArray{orOdd(reference)}));
        post.insert(QStringLiteral("entities"),
                    orOdd(QJsonObject{{QStringLiteral("urls"), orOdd(list(4, [&] { return link(); }))}}));
        if (chance(2)) {
            const QJsonArray keys = list(4, [&] { return mediaKey(); });
            post.insert(QStringLiteral("attachments"),
                        orOdd(QJsonObject{{QStringLiteral("media_keys"), orOdd(keys)}}));
        }
        if (chance(2))
            post.insert(QStringLiteral("article"), orOdd(article()));
        return post;
    }

    QJsonObject includes()
    {
        return {{QStringLiteral("media"), orOdd(list(6, [&] { return medium(); }))},
                {QStringLiteral("tweets"), orOdd(list(4, [&] {
                     return post(key({"8", "9", "9"}));
                 }))}};
    }

    std::mt19937 m_random;
};

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
