#pragma once

#include "presentation/PresentationFacts.h"
#include "support/RawJSON.h"

#include <QMap>

namespace mirel {

// Reads the raw JSON of one bookmark for its presentation. Private to this layer. No operation fails: what
// cannot be read is left out.
class RawPostPresentationParser
{
public:
    using MediaByKey = QMap<QString, MediaItem>;

    // `bookmark` must outlive the parser.
    explicit RawPostPresentationParser(const Bookmark& bookmark);
    explicit RawPostPresentationParser(Bookmark&&) = delete;
    // For the post alone, without what came along.
    RawPostPresentationParser(const Bookmark& bookmark, RawJSON tweet);

    // The post itself.
    [[nodiscard]] const RawJSONValue& tweet() const { return m_tweet; }
    [[nodiscard]] PostPresentationKind kind(bool hasExternalLinks) const;

    [[nodiscard]] QList<ExternalLinkPreview> externalLinks(const RawJSONValue& post) const;
    [[nodiscard]] bool hasExternalLinks(const RawJSONValue& post) const;

    // The posts that came along, in their order.
    [[nodiscard]] QList<EmbeddedPostPreview> postPreviews() const;

    // The blocks of the post's article. `fallbackText` stands in for a missing plain text of the article.
    [[nodiscard]] QList<ArticleBlock> articleBlocks(const RawJSONValue& post,
                                                    const QString& fallbackText) const;

    // Absent when the bookmark quotes nothing. `embeddedPosts` are the post previews.
    [[nodiscard]] std::optional<QuotedContentPresentation>
    quotedContent(const QList<EmbeddedPostPreview>& embeddedPosts) const;
    [[nodiscard]] std::optional<PresentationFacts::Quoted> quotedFacts() const;

private:
    [[nodiscard]] bool hasArticle() const;
    [[nodiscard]] bool isRepost() const;
    [[nodiscard]] QList<RawJSONValue> referencedPosts() const;

    [[nodiscard]] const MediaByKey& mediaByKey() const;
    [[nodiscard]] const std::vector<const MediaItem*>& mediaByEnd() const;
    [[nodiscard]] MediaByKey mediaLookup() const;
    [[nodiscard]] std::optional<MediaItem> mediaItem(const QString& key) const;
    [[nodiscard]] QList<MediaItem> mediaItems(const QStringList& keys) const;

    [[nodiscard]] RawJSONValue quotedTweet() const;
    [[nodiscard]] QList<MediaItem> quotedMedia(const RawJSONValue& quotedTweet) const;
    [[nodiscard]] std::optional<QString> quotedTitle(const RawJSONValue& quotedTweet,
                                                     const QList<ExternalLinkPreview>& links) const;
    [[nodiscard]] QuotedContentPresentation::Kind
    quotedKind(const RawJSONValue& quotedTweet, const QList<MediaItem>& media, bool hasExternalLinks) const;

    [[nodiscard]] std::optional<ArticleBlock> richBlock(const RawJSONValue& block, qsizetype index,
                                                        const QList<RawJSONValue>& entities) const;
    [[nodiscard]] std::optional<ArticleBlock> atomicBlock(const QString& id, const QString& text,
                                                          const RawJSONValue& definition) const;
    [[nodiscard]] QList<ArticleBlock> prependingCover(const RawJSONValue& article,
                                                      QList<ArticleBlock> blocks) const;
    [[nodiscard]] QList<ArticleBlock> fallbackAtomicBlocks(const RawJSONValue& article) const;

    const Bookmark& m_bookmark;
    RawJSON m_envelope;
    RawJSONValue m_tweet;
    RawJSONValue m_includes;
    // Made by mediaByKey() when first needed: most searches get by without.
    mutable std::optional<MediaByKey> m_mediaByKey;
    // The same items in the order of their keys read from the end, made likewise by mediaByEnd().
    mutable std::optional<std::vector<const MediaItem*>> m_mediaByEnd;
};

// The media keys in an array that mixes texts with objects.
[[nodiscard]] QStringList mediaKeys(RawJSONValue::Children elements);

// The blocks that a plain text suggests, with `atomicBlocks` in the places that were left for them.
[[nodiscard]] QList<ArticleBlock> heuristicBlocks(const QString& text,
                                                  const QList<ArticleBlock>& atomicBlocks);

} // namespace mirel
