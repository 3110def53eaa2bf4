#include "library/RandomPosts.h"

namespace mirel::testing {

namespace {

// Of several scripts, with characters whose case, direction or encoding is odd, and with what means something
// in an expression.
const QStringList& words()
{
    static const QStringList words{
        QStringLiteral("engine"),
        QStringLiteral("Engine"),
        QStringLiteral("notes"),
        QStringLiteral("AND"),
        QStringLiteral("or"),
        QStringLiteral("not"),
        QStringLiteral("has:media"),
        QStringLiteral("http"),
        QStringLiteral("https://a.example/Path?q=1"),
        QStringLiteral("@ada"),
        QStringLiteral("#label"),
        QStringLiteral("a:b:c"),
        QStringLiteral("(brackets)"),
        QStringLiteral("\"quoted\""),
        QStringLiteral("stra\u00DFe"),
        QStringLiteral("STRASSE"),
        QStringLiteral("\u0130stanbul"),
        QStringLiteral("\u0131l\u0131k"),
        QStringLiteral("\u03A3\u03AF\u03C3\u03C5\u03C6\u03BF\u03A3"),
        QStringLiteral("caf\u00E9"),
        QStringLiteral("cafe\u0301"),
        QStringLiteral("\u6F22\u5B57\u304B\u306A"),
        QStringLiteral("\u05DE\u05D7\u05E9\u05D1\u05D4"),
        QStringLiteral("\u0641\u0643\u0631\u0629"),
        QStringLiteral("\U0001F468\u200D\U0001F469\u200D\U0001F467"),
        QStringLiteral("\U0001F600"),
        QStringLiteral("\uFB01n"),
        QStringLiteral("\uFEFFmark"),
        QStringLiteral("nul") + QChar(u'\0') + QStringLiteral("nul"),
        QStringLiteral("half") + QChar(0xD83D),
        QStringLiteral(" "),
        QStringLiteral("\n"),
        QStringLiteral("\u00A0"),
    };
    return words;
}

QByteArrayList bareEnvelopes()
{
    return {
        "",
        "{}",
        "null",
        "[]",
        "{\"tweet\":",
        "\xFF\xFE",
        R"({"tweet":{}})",
        R"({"tweet":{"referenced_tweets":[{"type":"retweeted","id":"8"}]},"includes":{"tweets":[{"id":"8"}]}})",
        R"({"tweet":{"entities":{"urls":[{"url":"https://t.co/a","expanded_url":"https://a.example/"}]}}})"};
}

} // namespace

RandomPosts::RandomPosts(unsigned int seed)
    : m_random(seed)
    , m_envelopes(seed + 1)
{
}

SyncedBookmark RandomPosts::post(int number)
{
    const Bookmark shape = m_envelopes.bookmark();
    SyncedBookmark post{
        .tweetID = QStringLiteral("1000%1").arg(number),
        .author = author(),
        .text = text(),
        .sourceURL = QUrl(QStringLiteral("https://X.com/Status/%1").arg(number)),
        .createdAt = date(),
        .media = m_random.chance(2) ? shape.media : media(),
        .quotedPost = m_random.chance(2) ? shape.quotedPost : std::nullopt,
        .rawJSON = m_random.chance(3) ? rawJSON() : shape.rawJSON,
    };
    if (m_random.chance(4))
        post.language = QStringLiteral("en");
    if (post.quotedPost)
        post.quotedPost->text = text();
    if (m_random.chance(3))
        addArticle(post);
    return post;
}

// As in articles from X, the text of the post is often that of the article.
void RandomPosts::addArticle(SyncedBookmark& post)
{
    if (m_random.chance(2))
        post.contentTitle = phrase();
    if (m_random.chance(4))
        return;
    post.contentText = m_random.chance(2) ? post.text : text();
    if (post.quotedPost && m_random.chance(3))
        post.quotedPost->text = *post.contentText;
}

QString RandomPosts::text()
{
    if (m_random.chance(12))
        return (m_random.oneOf(words()) + u' ' + phrase()).repeated(1 + m_random.below(200));
    if (m_random.chance(30))
        return {};
    QStringList parts;
    const int count = m_random.chance(4) ? 20 + m_random.below(60) : 1 + m_random.below(6);
    for (int i = 0; i < count; ++i)
        parts.append(m_random.oneOf(words()));
    return parts.join(u' ');
}

QString RandomPosts::phrase()
{
    QStringList parts;
    for (int i = 1 + m_random.below(3); i > 0; --i)
        parts.append(m_random.oneOf(words()));
    return parts.join(u' ');
}

QString RandomPosts::name()
{
    static const QStringList names{
        QStringLiteral("Work"),          QStringLiteral("work"),  QStringLiteral("My Label"),
        QStringLiteral("my label"),      QStringLiteral("Later"), QStringLiteral("Stra\u00DFe"),
        QStringLiteral("\u0130zmir"),    QStringLiteral("@home"), QStringLiteral("\u6F22\u5B57"),
        QStringLiteral("\U0001F600 ok"), QStringLiteral("a:b"),   QStringLiteral(" "),
    };
    return m_random.oneOf(names);
}

SyncedAuthor RandomPosts::author()
{
    // Usernames that differ in case alone are one place in the order; letters beyond ASCII are not folded.
    static const QStringList usernames{QStringLiteral("ada"),       QStringLiteral("ADA"),
                                       QStringLiteral("Ada"),       QStringLiteral("mia"),
                                       QStringLiteral("\u00C4nne"), QStringLiteral("\u00E4nne")};
    return {.xID = QString::number(m_random.below(7)),
            .name = m_random.chance(3) ? phrase() : QStringLiteral("Ada Lovelace"),
            .username = m_random.oneOf(usernames)};
}

QList<MediaItem> RandomPosts::media()
{
    QList<MediaItem> items;
    for (int i = m_random.below(3); i > 0; --i) {
        items.append({.id = QStringLiteral("3_%1").arg(i),
                      .kind = m_random.oneOf(rawValues(MediaKind())).value,
                      .url = QUrl(QStringLiteral("https://p.example/%1").arg(i))});
    }
    return items;
}

QList<ThreadPost> RandomPosts::thread()
{
    QList<ThreadPost> posts;
    for (int i = m_random.below(4); i > 0; --i)
        posts.append({.tweetID = QStringLiteral("3000%1").arg(i), .text = phrase(), .createdAt = date()});
    return posts;
}

Instant RandomPosts::date()
{
    return Instant::fromSecondsSince1970(1'600'000'000.5 + m_random.below(12));
}

QByteArray RandomPosts::rawJSON()
{
    return m_random.chance(2) ? m_random.oneOf(bareEnvelopes()) : m_envelopes.envelope();
}

} // namespace mirel::testing
