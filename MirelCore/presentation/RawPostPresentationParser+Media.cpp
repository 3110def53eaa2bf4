#include "presentation/RawJSONLookup.h"
#include "presentation/RawPostPresentationParser.h"

namespace mirel {

using namespace rawJSONLookup;

namespace {

// The video of the highest bit rate, the first of several.
std::optional<RawJSONValue> bestVariant(const RawJSONValue& medium)
{
    std::optional<RawJSONValue> best;
    qint64 bestBitRate = 0;
    for (const RawJSONValue variant : elementsAt(medium, {"variants"})) {
        if (stringAt(variant, {"content_type"}) != QStringLiteral("video/mp4"))
            continue;
        const qint64 bitRate = integer(variant.firstMember("bit_rate")).value_or(0);
        if (best && bitRate <= bestBitRate)
            continue;
        best = variant;
        bestBitRate = bitRate;
    }
    return best;
}

std::optional<QUrl> displayedURL(const RawJSONValue& medium)
{
    const auto variant = bestVariant(medium);
    if (const auto text = variant ? stringAt(*variant, {"url"}) : std::nullopt)
        return parseURL(text);
    return parseURL(firstString(medium, {"url", "preview_image_url"}));
}

// Absent when something that every item needs is missing, also when the kind is unknown.
std::optional<MediaItem> includedMediaItem(const RawJSONValue& medium)
{
    const auto key = stringAt(medium, {"media_key"});
    const auto type = stringAt(medium, {"type"});
    const auto kind = type ? fromRawValue<MediaKind>(*type) : std::nullopt;
    if (!key || !kind)
        return std::nullopt;
    const auto url = displayedURL(medium);
    if (!url)
        return std::nullopt;
    return MediaItem{
        .id = *key,
        .kind = *kind,
        .url = *url,
        .previewURL = parseURL(stringAt(medium, {"preview_image_url"})),
        .altText = stringAt(medium, {"alt_text"}),
        .width = integer(medium.firstMember("width")),
        .height = integer(medium.firstMember("height")),
    };
}

// The users by their id. The first of a repeated id counts.
QHash<QString, RawJSONValue> usersByID(const RawJSONValue& includes)
{
    QHash<QString, RawJSONValue> users;
    for (const RawJSONValue user : elementsAt(includes, {"users"})) {
        const auto id = stringAt(user, {"id"});
        if (id && !users.contains(*id))
            users.insert(*id, user);
    }
    return users;
}

// The order of texts that are read from their end, in which those with the same end stand together.
bool endPrecedes(const QString& a, const QString& b)
{
    return std::lexicographical_compare(a.crbegin(), a.crend(), b.crbegin(), b.crend());
}

std::optional<QString> previewText(const RawJSONValue& post)
{
    if (const auto note = stringAt(post, {"note_tweet", "text"}))
        return note;
    if (const auto article = stringAt(post, {"article", "plain_text"}))
        return article;
    return stringAt(post, {"text"});
}

} // namespace

QStringList mediaKeys(RawJSONValue::Children elements)
{
    QStringList keys;
    for (const RawJSONValue element : elements) {
        const std::optional<QString> key =
            element.isString() ? element.string() : firstString(element, {"media_key", "mediaId", "id"});
        if (key)
            keys.append(*key);
    }
    return keys;
}

const RawPostPresentationParser::MediaByKey& RawPostPresentationParser::mediaByKey() const
{
    if (!m_mediaByKey)
        m_mediaByKey = mediaLookup();
    return *m_mediaByKey;
}

const std::vector<const MediaItem*>& RawPostPresentationParser::mediaByEnd() const
{
    if (m_mediaByEnd)
        return *m_mediaByEnd;
    m_mediaByEnd.emplace();
    for (const MediaItem& item : mediaByKey())
        m_mediaByEnd->push_back(&item);
    std::sort(m_mediaByEnd->begin(), m_mediaByEnd->end(),
              [](const auto* a, const auto* b) { return endPrecedes(a->id, b->id); });
    return *m_mediaByEnd;
}

RawPostPresentationParser::MediaByKey RawPostPresentationParser::mediaLookup() const
{
    MediaByKey media;
    const auto add = [&](const MediaItem& item) {
        if (!media.contains(item.id))
            media.insert(item.id, item);
    };
    // What X sent comes first: it tells more than the columns. Those hold what was found later.
    for (const RawJSONValue medium : elementsAt(m_includes, {"media"})) {
        if (const auto item = includedMediaItem(medium))
            add(*item);
    }
    for (const MediaItem& item : m_bookmark.media)
        add(item);
    if (m_bookmark.quotedPost) {
        for (const MediaItem& item : m_bookmark.quotedPost->media)
            add(item);
    }
    return media;
}

std::optional<MediaItem> RawPostPresentationParser::mediaItem(const QString& key) const
{
    const MediaByKey& media = mediaByKey();
    if (const auto exact = media.constFind(key); exact != media.constEnd())
        return *exact;
    // Articles name a medium by its number, without the prefix of its key.
    const QString suffix = u'_' + key;
    const auto& ends = mediaByEnd();
    const MediaItem* first = nullptr;
    const auto begin = std::lower_bound(
        ends.cbegin(), ends.cend(), suffix,
        [](const MediaItem* item, const QString& wanted) { return endPrecedes(item->id, wanted); });
    for (auto item = begin; item != ends.cend() && (*item)->id.endsWith(suffix); ++item) {
        if (!first || (*item)->id < first->id)
            first = *item;
    }
    return first ? std::optional(*first) : std::nullopt;
}

QList<MediaItem> RawPostPresentationParser::mediaItems(const QStringList& keys) const
{
    QList<MediaItem> items;
    for (const QString& key : keys) {
        if (const auto item = mediaItem(key))
            items.append(*item);
    }
    return items;
}

QList<EmbeddedPostPreview> RawPostPresentationParser::postPreviews() const
{
    const QHash<QString, RawJSONValue> users = usersByID(m_includes);
    QList<EmbeddedPostPreview> previews;
    for (const RawJSONValue post : elementsAt(m_includes, {"tweets"})) {
        const auto id = stringAt(post, {"id"});
        if (!id)
            continue;
        EmbeddedPostPreview preview;
        preview.tweetID = *id;
        const auto authorID = stringAt(post, {"author_id"});
        if (const auto author = authorID ? users.constFind(*authorID) : users.constEnd();
            author != users.constEnd()) {
            preview.authorName = stringAt(*author, {"name"});
            preview.username = stringAt(*author, {"username"});
        }
        preview.text = previewText(post).value_or(QString());
        for (const QString& key : mediaKeys(elementsAt(post, {"attachments", "media_keys"}))) {
            if (const auto item = mediaByKey().constFind(key); item != mediaByKey().constEnd())
                preview.media.append(*item);
        }
        previews.append(preview);
    }
    return previews;
}

} // namespace mirel
