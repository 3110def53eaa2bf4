#include "x/PostMapping.h"

#include "records/WebHosts.h"
#include "support/RawJSON.h"

namespace mirel::postMapping {

namespace {

std::optional<QString> bestVariantURL(const MediaDTO& media)
{
    if (!media.variants)
        return std::nullopt;
    const MediaVariantDTO* best = nullptr;
    for (const MediaVariantDTO& variant : *media.variants) {
        if (variant.contentType != QLatin1StringView("video/mp4"))
            continue;
        if (!best || variant.bitRate.value_or(0) > best->bitRate.value_or(0))
            best = &variant;
    }
    return best ? std::optional(best->url) : std::nullopt;
}

std::optional<QUrl> displayedURL(const MediaDTO& media)
{
    if (media.url)
        return parseURL(*media.url);
    if (const auto variant = bestVariantURL(media))
        return parseURL(*variant);
    return parseURL(media.previewImageURL);
}

bool leadsToYouTube(const QUrl& url)
{
    const QString host = url.host().toLower();
    // Any host that ends in the main domain's text counts, whatever stands before.
    return host == webHosts::youtubeShort || host.endsWith(webHosts::youtubeMain);
}

} // namespace

std::optional<MediaByKey> mediaByKey(const std::optional<IncludesDTO>& includes)
{
    MediaByKey media;
    if (!includes || !includes->media)
        return media;
    for (const MediaDTO& medium : *includes->media)
        media.insert(medium.mediaKey, medium);
    if (media.size() != includes->media->size())
        return std::nullopt;
    return media;
}

QList<MediaItem> mediaItems(const QStringList& keys, const MediaByKey& media)
{
    QList<MediaItem> items;
    for (const QString& key : keys) {
        const auto found = media.constFind(key);
        if (found == media.constEnd())
            continue;
        const auto url = displayedURL(*found);
        if (!url)
            continue;
        items.append({
            .id = found->mediaKey,
            .kind = fromRawValue<MediaKind>(found->type).value_or(MediaKind::photo),
            .url = *url,
            .previewURL = parseURL(found->previewImageURL),
            .altText = found->altText,
            .width = found->width,
            .height = found->height,
        });
    }
    return items;
}

std::optional<RawJSONValue> tweet(const QString& id, const RawJSONValue& envelope)
{
    const auto hasID = [&](const RawJSONValue& post) {
        const auto postID = post.member("id");
        return postID && postID->stringIfAny() == id;
    };
    const auto own = envelope.member("tweet");
    if (own && hasID(*own))
        return own;
    const auto includes = envelope.member("includes");
    const auto included = includes ? includes->member("tweets") : std::nullopt;
    if (!included || !included->isArray())
        return std::nullopt;
    for (const RawJSONValue post : included->children()) {
        if (hasID(post))
            return post;
    }
    return std::nullopt;
}

void collectMediaKeys(const RawJSONValue& value, const QSet<QString>& known, QStringList& keys)
{
    if (value.isString()) {
        const QString text = value.string();
        if (known.contains(text) && !keys.contains(text))
            keys.append(text);
    }
    for (const RawJSONValue child : value.children())
        collectMediaKeys(child, known, keys);
}

QList<MediaItem> articleMediaItems(const RawJSONValue& tweet, const MediaByKey& media)
{
    const auto article = tweet.member("article");
    if (!article || !article->isObject())
        return {};
    QStringList keys;
    collectMediaKeys(*article, QSet<QString>(media.keyBegin(), media.keyEnd()), keys);
    return mediaItems(keys, media);
}

QList<MediaItem> articleMediaItems(const QString& tweetID, const QByteArray& rawJSON, const MediaByKey& media)
{
    try {
        const RawJSON envelope = RawJSON::parse(rawJSON);
        const auto post = tweet(tweetID, envelope.root());
        return post ? articleMediaItems(*post, media) : QList<MediaItem>{};
    } catch (const RawJSONError&) {
        return {};
    }
}

QStringList articleMediaKeys(const RawJSONValue& tweet)
{
    QStringList keys;
    const auto article = tweet.member("article");
    if (!article)
        return keys;
    const auto append = [&](const std::optional<QString>& key) {
        if (key && !keys.contains(*key))
            keys.append(*key);
    };
    if (const auto cover = article->member("cover_media"))
        append(cover->stringIfAny());
    const auto entities = article->member("media_entities");
    if (!entities || !entities->isArray())
        return keys;
    for (const RawJSONValue entity : entities->children()) {
        std::optional<QString> key = entity.stringIfAny();
        for (const char* const name : {"media_key", "mediaId", "id"}) {
            const auto value = key ? std::nullopt : entity.member(name);
            if (value)
                key = value->stringIfAny();
        }
        append(key);
    }
    return keys;
}

QStringList articleMediaKeys(const QString& tweetID, const QByteArray& rawJSON)
{
    try {
        const RawJSON envelope = RawJSON::parse(rawJSON);
        const auto post = tweet(tweetID, envelope.root());
        return post ? articleMediaKeys(*post) : QStringList{};
    } catch (const RawJSONError&) {
        return {};
    }
}

QList<MediaItem> youtubeItems(const TweetDTO& tweet)
{
    QList<MediaItem> items;
    if (!tweet.entities || !tweet.entities->urls)
        return items;
    for (const EntityURLDTO& entity : *tweet.entities->urls) {
        const auto& text = entity.unwoundURL    ? entity.unwoundURL
                           : entity.expandedURL ? entity.expandedURL
                                                : entity.url;
        const auto url = parseURL(text);
        if (!url || !leadsToYouTube(*url))
            continue;
        MediaItem item;
        item.id = QStringLiteral("youtube-") + *text;
        item.kind = MediaKind::youtube;
        item.url = *url;
        items.append(item);
    }
    return items;
}

} // namespace mirel::postMapping
