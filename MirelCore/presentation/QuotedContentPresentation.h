#pragma once

#include "presentation/ArticleBlock.h"
#include "presentation/EmbeddedPostPreview.h"
#include "presentation/ExternalLinkPreview.h"

namespace mirel {

// What a bookmark's quoted post shows.
struct QuotedContentPresentation
{
    enum class Kind { article, externalLink, video, image, post };

    Kind kind = Kind::post;
    std::optional<QString> title;
    std::optional<QString> previewText;
    QList<ArticleBlock> articleBlocks;
    QList<ExternalLinkPreview> externalLinks;
    QList<EmbeddedPostPreview> embeddedPosts;
    QList<MediaItem> media;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("kind", &QuotedContentPresentation::kind),
            jsonField("title", &QuotedContentPresentation::title),
            jsonField("previewText", &QuotedContentPresentation::previewText),
            jsonField("articleBlocks", &QuotedContentPresentation::articleBlocks),
            jsonField("externalLinks", &QuotedContentPresentation::externalLinks),
            jsonField("embeddedPosts", &QuotedContentPresentation::embeddedPosts),
            jsonField("media", &QuotedContentPresentation::media),
        };
    }

    friend bool operator==(const QuotedContentPresentation&, const QuotedContentPresentation&) = default;
};

[[nodiscard]] constexpr auto rawValues(QuotedContentPresentation::Kind)
{
    using enum QuotedContentPresentation::Kind;
    return std::array{
        RawValue{article, QLatin1StringView("article")},
        RawValue{externalLink, QLatin1StringView("externalLink")},
        RawValue{video, QLatin1StringView("video")},
        RawValue{image, QLatin1StringView("image")},
        RawValue{post, QLatin1StringView("post")},
    };
}

// The name that the user sees.
[[nodiscard]] QString label(QuotedContentPresentation::Kind kind);

} // namespace mirel
