#pragma once

#include "x/ArticleDTO.h"
#include "x/MetricsDTO.h"

namespace mirel {

// The whole text of a post that is longer than usual.
struct NoteTweetDTO
{
    QString text;

    static constexpr auto jsonFields() { return std::tuple{jsonField("text", &NoteTweetDTO::text)}; }
};

// What is attached to a post.
struct AttachmentsDTO
{
    std::optional<QStringList> mediaKeys;

    static constexpr auto jsonFields()
    {
        return std::tuple{jsonField("media_keys", &AttachmentsDTO::mediaKeys)};
    }
};

// Another post that a post refers to: "quoted", "retweeted" or "replied_to".
struct ReferencedTweetDTO
{
    QString type;
    QString id;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("type", &ReferencedTweetDTO::type),
            jsonField("id", &ReferencedTweetDTO::id),
        };
    }
};

// A link in the text of a post.
struct EntityURLDTO
{
    std::optional<QString> url;
    std::optional<QString> expandedURL;
    std::optional<QString> unwoundURL;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("url", &EntityURLDTO::url),
            jsonField("expanded_url", &EntityURLDTO::expandedURL),
            jsonField("unwound_url", &EntityURLDTO::unwoundURL),
        };
    }
};

// What X found in the text of a post.
struct EntitiesDTO
{
    std::optional<QList<EntityURLDTO>> urls;

    static constexpr auto jsonFields() { return std::tuple{jsonField("urls", &EntitiesDTO::urls)}; }
};

// A post as X sends it.
struct TweetDTO
{
    QString id;
    QString text;
    QString authorID;
    std::optional<QString> conversationID;
    // ISO 8601.
    std::optional<QString> createdAt;
    std::optional<QString> language;
    std::optional<NoteTweetDTO> noteTweet;
    std::optional<ArticleDTO> article;
    std::optional<AttachmentsDTO> attachments;
    std::optional<MetricsDTO> publicMetrics;
    std::optional<QList<ReferencedTweetDTO>> referencedTweets;
    std::optional<EntitiesDTO> entities;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &TweetDTO::id),
            jsonField("text", &TweetDTO::text),
            jsonField("author_id", &TweetDTO::authorID),
            jsonField("conversation_id", &TweetDTO::conversationID),
            jsonField("created_at", &TweetDTO::createdAt),
            jsonField("lang", &TweetDTO::language),
            jsonField("note_tweet", &TweetDTO::noteTweet),
            jsonField("article", &TweetDTO::article),
            jsonField("attachments", &TweetDTO::attachments),
            jsonField("public_metrics", &TweetDTO::publicMetrics),
            jsonField("referenced_tweets", &TweetDTO::referencedTweets),
            jsonField("entities", &TweetDTO::entities),
        };
    }
};

} // namespace mirel
