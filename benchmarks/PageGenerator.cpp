#include "PageGenerator.h"

#include <QByteArrayList>
#include <QDateTime>
#include <QString>

#include <cmath>

namespace mirel {

namespace {

constexpr int distinctAuthorGroups = 100;
constexpr int firstQuotedPost = 10'000'000;

QByteArray number(int seed, int digits)
{
    return QByteArray::number(1'700'000'000'000'000'000 + seed).last(digits);
}

// Spreads neighbouring seeds over all 32 bits.
quint32 scattered(quint32 seed)
{
    seed = (seed ^ (seed >> 16)) * 0x45d9f3b;
    seed = (seed ^ (seed >> 16)) * 0x45d9f3b;
    return seed ^ (seed >> 16);
}

// A word of a vocabulary of 30,000, in which a few are frequent and most are rare, as in a language.
QByteArray word(quint32 seed)
{
    static const QByteArrayList syllables{"ka", "ne",  "mor", "ti",  "sol", "bra", "ven", "du",
                                          "li", "per", "an",  "gro", "shi", "tu",  "el",  "wo"};
    const double share = scattered(seed) / 4294967296.0;
    auto index = static_cast<quint32>(std::pow(30'000.0, share));
    QByteArray text;
    for (; index > 0; index /= 16)
        text += syllables[index % 16];
    return text;
}

// Text of a few scripts, as long as a post's, with an escaped line end and an escaped picture character.
QByteArray postText(int seed)
{
    static const QByteArrayList sentences{
        "The important image uses my signal.", "学校と軽い文化に美味しいゲームは食べたらしい。",
        "Note time to our safe weight \\uD83D\\uDC3B", "À pessoa livre é de cidade alto\\nàs vezes."};
    QByteArray text;
    for (int i = 0; i < 3; ++i)
        text += sentences[(seed + i * 3) % sentences.size()] + ' ';
    for (int i = 0; i < 12; ++i)
        text += word(static_cast<quint32>(seed * 12 + i)) + ' ';
    return text + "https://t.co/" + number(seed, 10);
}

QByteArray longText(int seed)
{
    QByteArrayList paragraphs;
    for (int i = 0; i < 60; ++i)
        paragraphs.append(postText(seed + i * 1000));
    return paragraphs.join("\\n\\n");
}

QByteArray authorID(int index)
{
    return number(index, 18);
}

QByteArray mediaKey(int index)
{
    return "3_" + number(index, 19);
}

QByteArray user(int index)
{
    return R"({"id":")" + authorID(index) + R"(","name":"Mia Watanabe","username":"mia)" +
           QByteArray::number(index) + R"(","created_at":"2016-08-17T04:56:30.000Z","description":")" +
           postText(index) +
           R"(","protected":false,"verified":false,"profile_image_url":)"
           R"("https://pbs.twimg.com/profile_images/765774278880266078/4Ri7cYja_normal.jpg",)"
           R"("public_metrics":{"followers_count":179,"following_count":1270,"tweet_count":83438,)"
           R"("listed_count":2,"like_count":15936,"media_count":81},"verified_type":"none"})";
}

// Spread over ten years, in no order.
QByteArray writtenAt(int index)
{
    constexpr quint32 minutesInTenYears = 10 * 365 * 24 * 60;
    const QDateTime tenYearsAgo(QDate(2016, 1, 1), QTime(0, 0), Qt::UTC);
    const qint64 seconds = 60LL * (scattered(static_cast<quint32>(index)) % minutesInTenYears);
    return tenYearsAgo.addSecs(seconds).toString(Qt::ISODateWithMs).toLatin1();
}

QByteArray media(int index)
{
    return R"({"media_key":")" + mediaKey(index) +
           R"(","type":"photo","url":"https://pbs.twimg.com/media/_0HTcllbABf45FQ.jpg","width":1200,)"
           R"("height":675,"alt_text":"A chart with two falling lines"})";
}

// The post `index`, written by one of the authors from `firstAuthor` on.
QByteArray post(int index, int firstAuthor, const PageShape& shape)
{
    const QByteArray id = number(index, 19);
    const QByteArray key = mediaKey(index % shape.pictures);
    QByteArray json = R"({"id":")" + id + R"(","edit_history_tweet_ids":[")" + id + R"("],"text":")" +
                      postText(index) + R"(","created_at":")" + writtenAt(index) + R"(","author_id":")" +
                      authorID(firstAuthor + index % shape.authors) + R"(","conversation_id":")" + id +
                      R"(","lang":"en","possibly_sensitive":false,"reply_settings":"everyone",)"
                      R"("public_metrics":{"retweet_count":45,"reply_count":4,"like_count":183,)"
                      R"("quote_count":3,"bookmark_count":51,"impression_count":71622},)"
                      R"("attachments":{"media_keys":[")" +
                      key +
                      R"("]},"entities":{"urls":[{"start":55,"end":78,"url":"https://t.co/5rrVhbArtp",)"
                      R"("expanded_url":"https://example.com/a/long/path/of/a/page.html",)"
                      R"("display_url":"example.com/a/long/path","title":"A page","status":200}]})";
    if (index % 6 == 0 && shape.quotedPosts > 0) {
        json += R"(,"referenced_tweets":[{"type":"quoted","id":")" +
                number(firstQuotedPost + index % shape.quotedPosts, 19) + R"("}])";
    }
    if (index % 25 == 0) {
        json += R"(,"article":{"title":"A long read","plain_text":")" + longText(index) +
                R"(","cover_media":")" + key + R"(","media_entities":[{"media_key":")" + key + R"("}]})";
    }
    return json + '}';
}

} // namespace

PageGenerator PageGenerator::light()
{
    return PageGenerator({.authors = 1, .pictures = 2, .quotedPosts = 0, .includesSize = 0});
}

QByteArray PageGenerator::page(int number) const
{
    const int firstAuthor = number % distinctAuthorGroups * m_shape.authors;
    QByteArrayList posts;
    for (int i = 0; i < postsPerPage; ++i)
        posts.append(post(number * postsPerPage + i, firstAuthor, m_shape));
    QByteArrayList quoted;
    for (int i = 0; i < m_shape.quotedPosts; ++i)
        quoted.append(post(firstQuotedPost + i, firstAuthor, m_shape));
    QByteArrayList pictures;
    for (int i = 0; i < m_shape.pictures; ++i)
        pictures.append(media(i));
    QByteArrayList users;
    qsizetype size = quoted.join(',').size() + pictures.join(',').size();
    for (int i = 0; i < m_shape.authors || size < m_shape.includesSize; ++i) {
        users.append(user(firstAuthor + i));
        size += users.last().size() + 1;
    }
    return R"({"data":[)" + posts.join(',') + R"(],"includes":{"users":[)" + users.join(',') +
           R"(],"tweets":[)" + quoted.join(',') + R"(],"media":[)" + pictures.join(',') +
           R"(]},"meta":{"result_count":50,"next_token":"page-)" + QByteArray::number(number + 1) + R"("}})";
}

} // namespace mirel
