#include "presentation/RawJSONLookup.h"
#include "presentation/RawPostPresentationParser.h"

namespace mirel {

using namespace rawJSONLookup;

namespace {

QString fallbackText(const QuotedPost& quoted)
{
    return quoted.contentText.value_or(quoted.text);
}

} // namespace

RawJSONValue RawPostPresentationParser::quotedTweet() const
{
    for (const RawJSONValue post : elementsAt(m_includes, {"tweets"})) {
        if (stringAt(post, {"id"}) == m_bookmark.quotedPost->tweetID)
            return post;
    }
    return emptyObject();
}

// Without that of the article's blocks.
QList<MediaItem> RawPostPresentationParser::quotedMedia(const RawJSONValue& quotedTweet) const
{
    QList<MediaItem> media = m_bookmark.quotedPost->media;
    const auto isStored = [&](const QString& key) {
        const QList<MediaItem>& stored = m_bookmark.quotedPost->media;
        return std::any_of(stored.begin(), stored.end(), [&](const auto& item) { return item.id == key; });
    };
    for (const QString& key : mediaKeys(elementsAt(quotedTweet, {"attachments", "media_keys"}))) {
        // The stored item of that key comes first anyway. Mostly all are stored, and no lookup is made.
        const auto item = isStored(key) ? std::nullopt : mediaItem(key);
        if (item)
            media.append(*item);
    }
    return uniquedByID(media);
}

std::optional<QString> RawPostPresentationParser::quotedTitle(const RawJSONValue& quotedTweet,
                                                              const QList<ExternalLinkPreview>& links) const
{
    if (const auto title = stringAt(quotedTweet, {"article", "title"}))
        return title;
    if (m_bookmark.quotedPost->contentTitle)
        return m_bookmark.quotedPost->contentTitle;
    return links.isEmpty() ? std::nullopt : links.first().title;
}

QuotedContentPresentation::Kind RawPostPresentationParser::quotedKind(const RawJSONValue& quotedTweet,
                                                                      const QList<MediaItem>& media,
                                                                      bool hasExternalLinks) const
{
    using Kind = QuotedContentPresentation::Kind;
    if (objectAt(quotedTweet, {"article"}) || m_bookmark.quotedPost->contentTitle)
        return Kind::article;
    const auto isPhoto = [](const MediaItem& item) { return item.kind == MediaKind::photo; };
    if (!std::all_of(media.begin(), media.end(), isPhoto))
        return Kind::video;
    if (!media.isEmpty())
        return Kind::image;
    return hasExternalLinks ? Kind::externalLink : Kind::post;
}

std::optional<QuotedContentPresentation>
RawPostPresentationParser::quotedContent(const QList<EmbeddedPostPreview>& embeddedPosts) const
{
    if (!m_bookmark.quotedPost)
        return std::nullopt;
    const RawJSONValue quoted = quotedTweet();
    const QString fallback = fallbackText(*m_bookmark.quotedPost);
    QuotedContentPresentation content;
    content.articleBlocks = articleBlocks(quoted, fallback);
    content.externalLinks = externalLinks(quoted);
    content.embeddedPosts = embeddedPosts;
    content.media = quotedMedia(quoted);
    for (const ArticleBlock& block : content.articleBlocks)
        content.media.append(block.media);
    content.media = uniquedByID(content.media);
    content.title = quotedTitle(quoted, content.externalLinks);
    content.previewText = stringAt(quoted, {"article", "preview_text"}).value_or(fallback);
    content.kind = quotedKind(quoted, content.media, !content.externalLinks.isEmpty());
    return content;
}

std::optional<PresentationFacts::Quoted> RawPostPresentationParser::quotedFacts() const
{
    if (!m_bookmark.quotedPost)
        return std::nullopt;
    const RawJSONValue quoted = quotedTweet();
    const QList<ExternalLinkPreview> links = externalLinks(quoted);
    const QList<MediaItem> media = quotedMedia(quoted);
    PresentationFacts::Quoted facts;
    facts.title = quotedTitle(quoted, links);
    for (const ExternalLinkPreview& link : links)
        facts.externalLinks.append(link.url);
    // The media of an article's blocks cannot change the kind: that is `article`.
    facts.kind = quotedKind(quoted, media, !links.isEmpty());
    facts.hasMedia = !media.isEmpty();
    if (!facts.hasMedia) {
        const auto blocks = articleBlocks(quoted, fallbackText(*m_bookmark.quotedPost));
        facts.hasMedia = std::any_of(blocks.begin(), blocks.end(),
                                     [](const ArticleBlock& block) { return !block.media.isEmpty(); });
    }
    return facts;
}

} // namespace mirel
