#pragma once

#include "presentation/PresentationCase.h"
#include "testing/RandomChoices.h"

namespace mirel {

// Envelopes of every shape, from a seed: mostly of the right keys and types, sometimes not.
class RandomEnvelopes
{
public:
    explicit RandomEnvelopes(unsigned int seed)
        : m_random(seed)
    {
    }

    // The raw JSON of a post.
    QByteArray envelope()
    {
        QJsonObject envelope{{QStringLiteral("includes"), includes()}};
        envelope.insert(QStringLiteral("tweet"), post(QStringLiteral("1")));
        return writeJSON(envelope);
    }

    // Such an envelope in a bookmark, whose quoted post is often among the includes.
    Bookmark bookmark()
    {
        Bookmark bookmark = bookmarkOf("{}", envelope());
        if (m_random.chance(4))
            bookmark.contentTitle = QStringLiteral("Own title");
        bookmark.thread.resize(m_random.below(4));
        if (m_random.chance(2))
            bookmark.media.append(item());
        if (m_random.chance(4))
            return bookmark;
        bookmark.quotedPost.emplace();
        bookmark.quotedPost->tweetID = key({"8", "9"});
        if (m_random.chance(3))
            bookmark.quotedPost->contentTitle = QStringLiteral("Stored title");
        if (m_random.chance(3))
            bookmark.quotedPost->contentText = QStringLiteral("Line\n \nLine");
        for (int i = m_random.below(3); i > 0; --i)
            bookmark.quotedPost->media.append(item());
        return bookmark;
    }

private:
    QString key(std::initializer_list<const char*> keys)
    {
        return QString::fromLatin1(*(keys.begin() + m_random.below(static_cast<int>(keys.size()))));
    }

    // Now and then something of another type.
    QJsonValue orOdd(const QJsonValue& value)
    {
        if (!m_random.chance(10))
            return value;
        const QJsonArray odd{QJsonValue::Null, 7, true, QStringLiteral("x"), QJsonObject(), QJsonArray()};
        return odd.at(m_random.below(static_cast<int>(odd.size())));
    }

    template <typename Make>
    QJsonArray list(int limit, Make make)
    {
        QJsonArray array;
        for (int i = m_random.below(limit); i > 0; --i)
            array.append(orOdd(make()));
        return array;
    }

    QString mediaKey() { return key({"3_1", "7_2", "16_3", "9_4", "1", "2", "3"}); }

    MediaItem item()
    {
        MediaItem item;
        item.id = mediaKey();
        item.kind = static_cast<MediaKind>(m_random.below(4));
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
        if (m_random.chance(2))
            link.insert(QStringLiteral("title"), orOdd(QStringLiteral("Page")));
        return link;
    }

    QJsonObject article()
    {
        QJsonObject article;
        if (m_random.chance(2))
            article.insert(QStringLiteral("title"), orOdd(QStringLiteral("Title")));
        if (m_random.chance(2))
            article.insert(QStringLiteral("cover_media"), orOdd(mediaKey()));
        if (m_random.chance(2))
            article.insert(QStringLiteral("media_entities"), orOdd(list(3, [&] { return mediaKey(); })));
        if (m_random.chance(2))
            article.insert(QStringLiteral("plain_text"), orOdd(QStringLiteral("a\n \nb")));
        if (m_random.chance(2))
            article.insert(QStringLiteral("content_state"), orOdd(document()));
        return article;
    }

    QJsonObject document()
    {
        const auto block = [&] {
            const QJsonObject range{{QStringLiteral("key"), orOdd(m_random.below(3))}};
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
        if (m_random.chance(2)) {
            const QJsonArray keys = list(4, [&] { return mediaKey(); });
            post.insert(QStringLiteral("attachments"),
                        orOdd(QJsonObject{{QStringLiteral("media_keys"), orOdd(keys)}}));
        }
        if (m_random.chance(2))
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

    testing::RandomChoices m_random;
};

} // namespace mirel
