#include "x/PostMapping.h"

#include <benchmark/benchmark.h>

namespace mirel {
namespace {

constexpr int postsPerPage = 50;
constexpr qsizetype includesSize = 88'000;

QString number(int seed, int digits)
{
    return QString::number(1'700'000'000'000'000'000 + seed).last(digits);
}

// Text of a few scripts, as long as a post's, with an escaped line end and an escaped picture character.
QByteArray postText(int seed)
{
    static const QByteArrayList sentences{
        "The important image uses my signal.", "学校と軽い文化に美味しいゲームは食べたらしい。",
        "Note time to our safe weight \\uD83D\\uDC3B", "À pessoa livre é de cidade alto\\nàs vezes."};
    QByteArray text;
    for (int i = 0; i < 5; ++i)
        text += sentences[(seed + i * 3) % sentences.size()] + ' ';
    return text + "https://t.co/" + number(seed, 10).toLatin1();
}

QByteArray post(int index)
{
    const QByteArray id = number(index, 19).toLatin1();
    const QByteArray author = number(index % 20, 18).toLatin1();
    const QByteArray mediaKey = "3_" + number(index % 25, 19).toLatin1();
    QByteArray json = R"({"id":")" + id + R"(","edit_history_tweet_ids":[")" + id + R"("],"text":")" +
                      postText(index) + R"(","created_at":"2026-08-19T17:17:56.000Z","author_id":")" +
                      author + R"(","conversation_id":")" + id +
                      R"(","lang":"en","possibly_sensitive":false,"reply_settings":"everyone",)"
                      R"("public_metrics":{"retweet_count":45,"reply_count":4,"like_count":183,)"
                      R"("quote_count":3,"bookmark_count":51,"impression_count":71622},)"
                      R"("attachments":{"media_keys":[")" +
                      mediaKey +
                      R"("]},"entities":{"urls":[{"start":55,"end":78,"url":"https://t.co/5rrVhbArtp",)"
                      R"("expanded_url":"https://example.com/a/long/path/of/a/page.html",)"
                      R"("display_url":"example.com/a/long/path","title":"A page","status":200}]})";
    if (index % 6 == 0)
        json += R"(,"referenced_tweets":[{"type":"quoted","id":")" +
                number(1000 + index % 10, 19).toLatin1() + R"("}])";
    if (index % 25 == 0) {
        json += R"(,"article":{"title":"A long read","plain_text":")" + postText(index).repeated(60) +
                R"(","cover_media":")" + mediaKey + R"(","media_entities":[{"media_key":")" + mediaKey +
                R"("}]})";
    }
    return json + '}';
}

QByteArray user(int index)
{
    return R"({"id":")" + number(index % 100'000, 18).toLatin1() +
           R"(","name":"Mia Watanabe","username":"mia)" + QByteArray::number(index) +
           R"(","created_at":"2016-08-17T04:56:30.000Z","description":")" + postText(index) +
           R"(","protected":false,"verified":false,"profile_image_url":)"
           R"("https://pbs.twimg.com/profile_images/765774278880266078/4Ri7cYja_normal.jpg",)"
           R"("public_metrics":{"followers_count":179,"following_count":1270,"tweet_count":83438,)"
           R"("listed_count":2,"like_count":15936,"media_count":81},"verified_type":"none"})";
}

QByteArray media(int index)
{
    return R"({"media_key":"3_)" + number(index, 19).toLatin1() +
           R"(","type":"photo","url":"https://pbs.twimg.com/media/_0HTcllbABf45FQ.jpg","width":1200,)"
           R"("height":675,"alt_text":"A chart with two falling lines"})";
}

// A page of X's shape whose posts have envelopes of about 90 KB.
QByteArray generatePage()
{
    QByteArrayList posts;
    for (int i = 0; i < postsPerPage; ++i)
        posts.append(post(i));
    QByteArrayList users;
    QByteArrayList pictures;
    QByteArrayList quoted;
    for (int i = 0; i < 10; ++i)
        quoted.append(post(1000 + i));
    for (int i = 0; i < 25; ++i)
        pictures.append(media(i));
    qsizetype size = quoted.join(',').size() + pictures.join(',').size();
    for (int i = 0; size < includesSize; ++i) {
        users.append(user(i));
        size += users.last().size() + 1;
    }
    return R"({"data":[)" + posts.join(',') + R"(],"includes":{"users":[)" + users.join(',') +
           R"(],"tweets":[)" + quoted.join(',') + R"(],"media":[)" + pictures.join(',') +
           R"(]},"meta":{"result_count":50,"next_token":"zldjwdz3w6sba13nbs02gucaxm63dy9h5ltzqc9ybpu"}})";
}

void mapsPages(benchmark::State& state)
{
    const QByteArray page = generatePage();
    qsizetype envelopeBytes = 0;
    for (auto unused : state) {
        const ParsedBookmarkPage parsed = postMapping::parseBookmarkPage(page);
        envelopeBytes = 0;
        for (const SyncedBookmark& item : parsed.items)
            envelopeBytes += item.rawJSON.size() / postsPerPage;
        benchmark::DoNotOptimize(parsed.items.data());
    }
    state.counters["posts"] = benchmark::Counter(static_cast<double>(state.iterations() * postsPerPage),
                                                 benchmark::Counter::kIsRate);
    state.counters["envelopeBytes"] = static_cast<double>(envelopeBytes);
    state.counters["pageBytes"] = static_cast<double>(page.size());
}
BENCHMARK(mapsPages)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace mirel

BENCHMARK_MAIN();
