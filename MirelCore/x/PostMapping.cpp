#include "x/PostMapping.h"

#include "records/WebHosts.h"
#include "support/RawJSON.h"
#include "x/XAPIError.h"

#include <cstring>

namespace mirel::postMapping {

namespace {

using RawPosts = QHash<QString, RawJSONValue>;

// Tells apart what X repeats within a list that must be unique.
template <typename Value>
void insertUnique(QHash<QString, Value>& map, const QString& key, const Value& value)
{
    const qsizetype before = map.size();
    map.insert(key, value);
    if (map.size() == before)
        throw XAPIError::invalidResponse();
}

// A page, typed and raw side by side, with what its posts are looked up in.
struct Page
{
    explicit Page(const QByteArray& data);

    // The post `id` as it stands in the envelope of the post `parentID`.
    [[nodiscard]] std::optional<RawJSONValue> rawPost(const QString& id, const QString& parentID) const;

    RawJSON raw;
    TweetPageResponse response;
    QHash<QString, SyncedAuthor> authors;
    MediaByKey media;
    // Points into `response`.
    QHash<QString, const TweetDTO*> includedPosts;
    RawPosts rawPosts;
    RawPosts rawIncludedPosts;
};

RawJSON parse(const QByteArray& data)
{
    try {
        return RawJSON::parse(data);
    } catch (const RawJSONError&) {
        throw XAPIError::invalidResponse();
    }
}

TweetPageResponse decode(const RawJSON& raw)
{
    try {
        return fromRawJSON<TweetPageResponse>(raw.root());
    } catch (const RawJSONError&) {
        throw XAPIError::invalidResponse();
    }
}

MediaByKey uniqueMedia(const std::optional<IncludesDTO>& includes)
{
    if (const auto media = mediaByKey(includes))
        return *media;
    throw XAPIError::invalidResponse();
}

// The objects of the array `posts` by their id. Of those that share one the last counts.
RawPosts rawPostsByID(const std::optional<RawJSONValue>& posts)
{
    RawPosts byID;
    if (!posts || !posts->isArray())
        return byID;
    for (const RawJSONValue post : posts->children()) {
        const auto id = post.member("id");
        if (id && id->isString())
            byID.insert(id->string(), post);
    }
    return byID;
}

std::optional<RawJSONValue> objectMember(const RawJSONValue& value, const char* key)
{
    const auto member = value.member(key);
    return member && member->isObject() ? member : std::nullopt;
}

Page::Page(const QByteArray& data)
    : raw(parse(data))
    , response(decode(raw))
    , media(uniqueMedia(response.includes))
    , rawPosts(rawPostsByID(raw.root().member("data")))
{
    if (!response.includes)
        return;
    if (response.includes->users) {
        for (const UserDTO& user : *response.includes->users)
            insertUnique(authors, user.id, user.synced());
    }
    if (response.includes->tweets) {
        for (const TweetDTO& post : *response.includes->tweets)
            insertUnique(includedPosts, post.id, &post);
    }
    rawIncludedPosts = rawPostsByID(raw.root().member("includes")->member("tweets"));
}

std::optional<RawJSONValue> Page::rawPost(const QString& id, const QString& parentID) const
{
    const RawPosts& posts = id == parentID ? rawPosts : rawIncludedPosts;
    const auto found = posts.constFind(id);
    return found == posts.constEnd() ? std::nullopt : std::optional(*found);
}

// The includes of a page are written once and copied into each envelope.
class EnvelopeWriter
{
public:
    explicit EnvelopeWriter(const std::optional<RawJSONValue>& includes)
    {
        if (includes)
            m_head = "{\"includes\":" + includes->canonical() + ",\"tweet\":";
    }

    [[nodiscard]] QByteArray envelope(const RawJSONValue& post) const
    {
        QByteArray text(m_head.size() + post.canonicalSize() + 1, Qt::Uninitialized);
        std::memcpy(text.data(), m_head.constData(), static_cast<size_t>(m_head.size()));
        *post.writeCanonical(text.data() + m_head.size()) = '}';
        return text;
    }

private:
    QByteArray m_head = "{\"tweet\":";
};

QHash<QString, QByteArray> envelopes(const RawPosts& posts, const std::optional<RawJSONValue>& includes)
{
    const EnvelopeWriter writer(includes);
    QHash<QString, QByteArray> byID;
    byID.reserve(posts.size());
    for (auto post = posts.constBegin(); post != posts.constEnd(); ++post)
        byID.insert(post.key(), writer.envelope(*post));
    return byID;
}

QString fullText(const TweetDTO& tweet)
{
    if (tweet.noteTweet)
        return tweet.noteTweet->text;
    if (tweet.article && tweet.article->plainText)
        return *tweet.article->plainText;
    return tweet.text;
}

std::optional<QString> articleTitle(const TweetDTO& tweet)
{
    return tweet.article ? tweet.article->title : std::nullopt;
}

std::optional<QString> articleText(const TweetDTO& tweet)
{
    return tweet.article ? tweet.article->plainText : std::nullopt;
}

Instant creation(const TweetDTO& tweet)
{
    if (!tweet.createdAt)
        return Instant();
    if (const auto instant = Instant::fromISO8601(*tweet.createdAt))
        return *instant;
    throw XAPIError::invalidResponse();
}

PostMetrics metrics(const TweetDTO& tweet)
{
    return tweet.publicMetrics.value_or(MetricsDTO{}).model();
}

QStringList attachedKeys(const TweetDTO& tweet)
{
    return tweet.attachments ? tweet.attachments->mediaKeys.value_or(QStringList{}) : QStringList{};
}

// Whatever X may send as a name makes a URL: what a path cannot hold is percent-encoded.
QUrl webAddress(const QString& username, const QString& id)
{
    const QByteArray path =
        '/' + QUrl::toPercentEncoding(username) + "/status/" + QUrl::toPercentEncoding(id);
    return QUrl(QStringLiteral("https://") + webHosts::x + QString::fromLatin1(path), QUrl::StrictMode);
}

// The media attached to a post, inside its article and behind its links, each once.
QList<MediaItem> allMedia(const TweetDTO& tweet, const std::optional<RawJSONValue>& rawPost,
                          const MediaByKey& media)
{
    QList<MediaItem> items = mediaItems(attachedKeys(tweet), media);
    if (rawPost)
        items.append(articleMediaItems(*rawPost, media));
    items.append(youtubeItems(tweet));
    return uniquedByID(items);
}

// The quoted post, when the page includes it.
const TweetDTO* quotedTweet(const TweetDTO& tweet, const Page& page)
{
    if (!tweet.referencedTweets)
        return nullptr;
    for (const ReferencedTweetDTO& reference : *tweet.referencedTweets) {
        if (reference.type == QLatin1StringView("quoted"))
            return page.includedPosts.value(reference.id);
    }
    return nullptr;
}

QuotedPost quotedPost(const TweetDTO& quoted, const QString& parentID, const Page& page)
{
    QuotedPost post;
    post.tweetID = quoted.id;
    if (const auto author = page.authors.constFind(quoted.authorID); author != page.authors.constEnd())
        post.author = *author;
    post.text = fullText(quoted);
    post.media = allMedia(quoted, page.rawPost(quoted.id, parentID), page.media);
    post.contentTitle = articleTitle(quoted);
    post.contentText = articleText(quoted);
    return post;
}

SyncedBookmark bookmark(const TweetDTO& tweet, const Page& page, const QHash<QString, QByteArray>& rawJSON)
{
    const auto author = page.authors.constFind(tweet.authorID);
    if (author == page.authors.constEnd())
        throw XAPIError::invalidResponse();
    SyncedBookmark bookmark;
    bookmark.tweetID = tweet.id;
    bookmark.conversationID = tweet.conversationID;
    bookmark.author = *author;
    bookmark.text = fullText(tweet);
    bookmark.contentTitle = articleTitle(tweet);
    bookmark.contentText = articleText(tweet);
    bookmark.language = tweet.language;
    bookmark.sourceURL = webAddress(author->username, tweet.id);
    bookmark.createdAt = creation(tweet);
    bookmark.metrics = metrics(tweet);
    bookmark.media = allMedia(tweet, page.rawPost(tweet.id, tweet.id), page.media);
    bookmark.rawJSON = rawJSON.value(tweet.id, "{}");
    return bookmark;
}

ThreadPost threadPost(const TweetDTO& tweet, const MediaByKey& media)
{
    return {
        .tweetID = tweet.id,
        .text = fullText(tweet),
        .createdAt = creation(tweet),
        .metrics = metrics(tweet),
        .media = mediaItems(attachedKeys(tweet), media) + youtubeItems(tweet),
    };
}

} // namespace

ParsedBookmarkPage parseBookmarkPage(const QByteArray& data)
{
    const Page page(data);
    const auto rawJSON = envelopes(page.rawPosts, objectMember(page.raw.root(), "includes"));
    ParsedBookmarkPage parsed;
    for (const TweetDTO& tweet : page.response.data) {
        SyncedBookmark item = bookmark(tweet, page, rawJSON);
        QStringList articleKeys;
        if (const TweetDTO* const quoted = quotedTweet(tweet, page)) {
            item.quotedPost = quotedPost(*quoted, tweet.id, page);
            if (const auto rawPost = page.rawPost(quoted->id, tweet.id))
                articleKeys = articleMediaKeys(*rawPost);
        }
        parsed.items.append(std::move(item));
        parsed.quotedArticleMediaKeys.append(articleKeys);
    }
    const MetaDTO meta = page.response.meta.value_or(MetaDTO{});
    parsed.nextToken = meta.nextToken;
    parsed.resultCount = meta.resultCount.value_or(parsed.items.size());
    return parsed;
}

QList<ThreadPost> threadPosts(const QByteArray& data, const QString& authorID)
{
    const TweetPageResponse response = decode(parse(data));
    const MediaByKey media = uniqueMedia(response.includes);
    QList<ThreadPost> posts;
    for (const TweetDTO& tweet : response.data) {
        if (tweet.authorID == authorID)
            posts.append(threadPost(tweet, media));
    }
    std::stable_sort(posts.begin(), posts.end(),
                     [](const ThreadPost& a, const ThreadPost& b) { return a.createdAt < b.createdAt; });
    return posts;
}

QHash<QString, QByteArray> rawEnvelopes(const QByteArray& data)
{
    try {
        const RawJSON page = RawJSON::parse(data);
        const auto posts = page.root().member("data");
        if (!posts || !posts->isArray())
            return {};
        for (const RawJSONValue post : posts->children()) {
            if (!post.isObject())
                return {};
        }
        return envelopes(rawPostsByID(posts), objectMember(page.root(), "includes"));
    } catch (const RawJSONError&) {
        return {};
    }
}

} // namespace mirel::postMapping
