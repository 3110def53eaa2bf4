#include "simulator/posts/PostFactory.h"

#include <QDateTime>

namespace mirel::simulator {

namespace {

// 2026-08-20T18:00:00Z: the youngest post is not younger than this.
constexpr qint64 newest = 1'787'248'800'000;
// Identifiers of posts count milliseconds from here.
constexpr qint64 idEpoch = 1'288'834'974'657;
constexpr qint64 minute = 60'000;
constexpr qint64 day = 24 * 60 * minute;
// Between two bookmarks.
constexpr qint64 spacing = day / 10;

QList<PostKind> kindsOfFifty()
{
    const QList<std::pair<PostKind, int>> table{
        {PostKind::Plain, 8},          {PostKind::ForeignLanguage, 11},
        {PostKind::LinkCard, 7},       {PostKind::Photos, 6},
        {PostKind::Video, 2},          {PostKind::AnimatedGIF, 1},
        {PostKind::YouTube, 1},        {PostKind::Quote, 3},
        {PostKind::QuoteOfArticle, 1}, {PostKind::QuoteOfHidden, 1},
        {PostKind::Repost, 2},         {PostKind::LongNote, 2},
        {PostKind::RichArticle, 1},    {PostKind::PlainArticle, 1},
        {PostKind::Thread, 2},         {PostKind::Reply, 1},
    };
    QList<PostKind> kinds;
    for (const auto& [kind, count] : table)
        kinds.append(QList<PostKind>(count, kind));
    return kinds;
}

} // namespace

PostFactory::PostFactory(quint64 seed, int posts, const QString& origin)
    : m_seed(seed)
    , m_posts(posts)
    , m_people(seed, origin)
    , m_media(origin)
{
    const QList<PostKind> kinds = kindsOfFifty();
    RandomSource random(seed, 0xc1c1e, 0);
    for (const int position : random.shuffled(static_cast<int>(kinds.size())))
        m_kinds.append(kinds.at(position));
}

qint64 PostFactory::id(PostKey key) const
{
    return ((createdAt(key) - idEpoch) << 22) | (qint64{key.serial} << 6) | key.role;
}

std::optional<PostKey> PostFactory::find(qint64 wanted) const
{
    const PostKey key{static_cast<int>(wanted >> 6) & (PostKey::serialLimit - 1),
                      static_cast<int>(wanted & (PostKey::roleLimit - 1))};
    if (wanted <= 0 || id(key) != wanted || !exists(key))
        return std::nullopt;
    return key;
}

bool PostFactory::isVisible(PostKey key) const
{
    return key.role != PostKey::referenced ||
           kind({key.serial, PostKey::bookmarked}) != PostKind::QuoteOfHidden;
}

bool PostFactory::exists(PostKey key) const
{
    const PostKey bookmarked{key.serial, PostKey::bookmarked};
    if (key == bookmarked)
        return true;
    if (key.role != PostKey::referenced)
        return conversation(bookmarked).contains(key);
    switch (kind(bookmarked)) {
    case PostKind::Quote:
    case PostKind::QuoteOfArticle:
    case PostKind::QuoteOfHidden:
    case PostKind::Repost:
    case PostKind::Reply:
        return true;
    default:
        return false;
    }
}

PostKind PostFactory::kind(PostKey key) const
{
    if (key.role == PostKey::bookmarked)
        return m_kinds.at(key.serial % static_cast<int>(m_kinds.size()));
    return key.role == PostKey::referenced ? referencedKind(key.serial) : PostKind::Plain;
}

PostKind PostFactory::referencedKind(int serial) const
{
    RandomSource random = randomFor({serial, PostKey::referenced}, 1);
    switch (kind({serial, PostKey::bookmarked})) {
    case PostKind::Quote:
        return random.pick(QList<PostKind>{PostKind::Plain, PostKind::ForeignLanguage, PostKind::Photos,
                                           PostKind::LinkCard});
    case PostKind::QuoteOfArticle:
        return PostKind::PlainArticle;
    case PostKind::Repost:
        return random.oneIn(2) ? PostKind::Photos : PostKind::Plain;
    default:
        return PostKind::Plain;
    }
}

RenderedPost PostFactory::render(PostKey key) const
{
    PostDraft draft{key, id(key), authorOf(key), randomFor(key, 2)};
    draft.conversation = draft.id;
    const PostKind kindOfPost = kind(key);
    if (key.role >= PostKey::replies)
        writeReply(draft, threadPost(key.serial, 0));
    else if (key.role >= PostKey::thread || kindOfPost == PostKind::Thread)
        writeThreadPost(draft);
    else
        write(draft, kindOfPost);
    return finish(draft);
}

QList<PostKey> PostFactory::conversation(PostKey key) const
{
    const PostKind kindOfPost = kind({key.serial, PostKey::bookmarked});
    if (kindOfPost == PostKind::Reply)
        return {{key.serial, PostKey::referenced}, {key.serial, PostKey::bookmarked}};
    if (key.role == PostKey::referenced)
        return {key};
    QList<PostKey> posts;
    for (int i = 0; i < threadLength(key.serial); ++i)
        posts.append(threadPost(key.serial, i));
    RandomSource random = randomFor({key.serial, PostKey::bookmarked}, 3);
    for (int i = random.below(6); i > 0; --i)
        posts.append({key.serial, PostKey::replies + i - 1});
    return posts;
}

RandomSource PostFactory::randomFor(PostKey key, quint64 purpose) const
{
    return RandomSource(m_seed, purpose, static_cast<quint64>(key.serial * PostKey::roleLimit + key.role));
}

qint64 PostFactory::createdAt(PostKey key) const
{
    RandomSource random(m_seed, 4, static_cast<quint64>(key.serial));
    const qint64 position = std::max(0, m_posts - 1 - key.serial);
    const double wandering = random.fraction();
    const qint64 own =
        newest - position * spacing -
        static_cast<qint64>(wandering * wandering * wandering * 200 * static_cast<double>(day));
    const qint64 seconds = own / 1000 * 1000;
    if (key.role == PostKey::bookmarked)
        return seconds;
    if (key.role == PostKey::referenced)
        return seconds - random.between(40, 30'000) * minute;
    if (key.role >= PostKey::replies)
        return seconds + (key.role - PostKey::replies + 30) * 17 * minute;
    return seconds + (key.role - PostKey::thread - threadPosition(key.serial)) * 3 * minute;
}

int PostFactory::languageOf(PostKey key) const
{
    RandomSource random = randomFor(key, 5);
    return random.below(static_cast<int>(Content::shared().languages.size()));
}

int PostFactory::authorOf(PostKey key) const
{
    RandomSource random = randomFor(key, 6);
    if (key.role >= PostKey::thread && key.role < PostKey::replies)
        return authorOf({key.serial, PostKey::bookmarked});
    if (kind(key) == PostKind::ForeignLanguage)
        return m_people.nativeAuthor(languageOf(key), random);
    return m_people.englishAuthor(random);
}

int PostFactory::threadLength(int serial) const
{
    RandomSource random = randomFor({serial, PostKey::bookmarked}, 7);
    return kind({serial, PostKey::bookmarked}) == PostKind::Thread ? random.between(3, 7) : 1;
}

int PostFactory::threadPosition(int serial) const
{
    // Mostly the beginning of a thread is bookmarked.
    RandomSource random = randomFor({serial, PostKey::bookmarked}, 8);
    return threadLength(serial) > 1 && random.oneIn(3) ? 1 : 0;
}

PostKey PostFactory::threadPost(int serial, int position) const
{
    return {serial, position == threadPosition(serial) ? PostKey::bookmarked : PostKey::thread + position};
}

RenderedPost PostFactory::finish(PostDraft& draft) const
{
    const QString number = QString::number(draft.id);
    const QString created = QDateTime::fromMSecsSinceEpoch(createdAt(draft.key), Qt::UTC)
                                .toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
    JSONObjectText object;
    object.text("id", number)
        .raw("edit_history_tweet_ids", jsonArray({jsonString(number)}))
        .text("text", draft.text.text())
        .text("created_at", created)
        .text("author_id", QString::number(m_people.id(draft.author)));
    if (!draft.random.oneIn(60))
        object.text("conversation_id", QString::number(draft.conversation));
    if (!draft.random.oneIn(40))
        object.text("lang", draft.language);
    object.flag("possibly_sensitive", false).text("reply_settings", u"everyone");
    if (!draft.random.oneIn(50))
        object.raw("public_metrics", metrics(draft));
    if (draft.text.hasEntities())
        object.raw("entities", draft.text.entities());
    if (!draft.attachments.isEmpty()) {
        QList<QByteArray> keys;
        for (const QByteArray& key : draft.attachments)
            keys.append('"' + key + '"');
        object.raw("attachments", "{\"media_keys\":" + jsonArray(keys) + '}');
    }
    addOddities(draft);
    QByteArray json = object.json();
    if (!draft.extras.isEmpty())
        json = json.chopped(1) + ',' + draft.extras.json().mid(1);
    draft.result.json = json;
    draft.result.author = draft.author;
    return draft.result;
}

QByteArray PostFactory::metrics(PostDraft& draft) const
{
    const double fame = draft.random.fraction();
    const auto likes = static_cast<qint64>(fame * fame * fame * fame * 18'000);
    JSONObjectText object;
    object.number("retweet_count", likes / 9).number("reply_count", likes / 23 + draft.random.below(4));
    object.number("like_count", likes).number("quote_count", likes / 70);
    object.number("bookmark_count", likes / 5 + 1);
    // The count of views is missing from old posts.
    if (!draft.random.oneIn(12))
        object.number("impression_count", likes * 61 + draft.random.between(30, 900));
    return object.json();
}

} // namespace mirel::simulator
