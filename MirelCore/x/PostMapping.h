#pragma once

#include "records/SyncedBookmark.h"
#include "records/ThreadPost.h"
#include "support/RawJSONValue.h"
#include "x/TweetPageResponse.h"

#include <QHash>
#include <QSet>

namespace mirel {

// A page of bookmarks as the mapping leaves it.
struct ParsedBookmarkPage
{
    QList<SyncedBookmark> items;
    std::optional<QString> nextToken;
    // What X reported, else the number of items.
    qint64 resultCount = 0;
    // For each item articleMediaKeys() of its quoted post; empty for an item without one.
    QList<QStringList> quotedArticleMediaKeys;
};

// Turns the answers of X into values. Free of storage and network; any thread.
namespace postMapping {

using MediaByKey = QHash<QString, MediaDTO>;

// The bookmarks of a page, in its order. Throws XAPIError::invalidResponse when the page cannot be read,
// lacks a required field or the author of a post, has a date that is none, or repeats a user, medium or post
// among its includes; nothing of the page is returned then.
[[nodiscard]] ParsedBookmarkPage parseBookmarkPage(const QByteArray& data);

// The posts by `authorID` on a page, earliest first. Throws XAPIError::invalidResponse when the page cannot
// be read.
[[nodiscard]] QList<ThreadPost> threadPosts(const QByteArray& data, const QString& authorID);

// The raw JSON text of each post of a page by its id: an object with the post as X sent it under "tweet" and
// the whole includes of the page, if it has any, under "includes". Of a post that stands twice the last one
// counts. Empty when `data` is not such a page.
[[nodiscard]] QHash<QString, QByteArray> rawEnvelopes(const QByteArray& data);

// The media by their key. Absent when a key is repeated.
[[nodiscard]] std::optional<MediaByKey> mediaByKey(const std::optional<IncludesDTO>& includes);

// The known media among `keys`, in their order. A medium without a usable URL is left out.
[[nodiscard]] QList<MediaItem> mediaItems(const QStringList& keys, const MediaByKey& media);

// The media that the article of a post names anywhere. `rawJSON` is the envelope of the post or of one that
// refers to it. Empty when there is no article.
[[nodiscard]] QList<MediaItem> articleMediaItems(const QString& tweetID, const QByteArray& rawJSON,
                                                 const MediaByKey& media);
// The same, of the post itself.
[[nodiscard]] QList<MediaItem> articleMediaItems(const RawJSONValue& tweet, const MediaByKey& media);

// The keys of the cover and of the media entities of a post's article, each once, known or not. As far as the
// article can be read; never throws.
[[nodiscard]] QStringList articleMediaKeys(const QString& tweetID, const QByteArray& rawJSON);
// The same, of the post itself.
[[nodiscard]] QStringList articleMediaKeys(const RawJSONValue& tweet);

// Appends every string inside `value`, at any depth, that is in `known` and not yet in `keys`.
void collectMediaKeys(const RawJSONValue& value, const QSet<QString>& known, QStringList& keys);

// The post `id` of an envelope, itself or among the posts that it includes.
[[nodiscard]] std::optional<RawJSONValue> tweet(const QString& id, const RawJSONValue& envelope);

// An item for each link of a post that leads to YouTube.
[[nodiscard]] QList<MediaItem> youtubeItems(const TweetDTO& tweet);

} // namespace postMapping
} // namespace mirel
