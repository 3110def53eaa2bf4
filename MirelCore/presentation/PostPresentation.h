#pragma once

#include "presentation/QuotedContentPresentation.h"
#include "records/Bookmark.h"

namespace mirel {

enum class PostPresentationKind { article, thread, repost, quote, externalLink, post };

[[nodiscard]] constexpr auto rawValues(PostPresentationKind)
{
    using enum PostPresentationKind;
    return std::array{
        RawValue{article, QLatin1StringView("article")},
        RawValue{thread, QLatin1StringView("thread")},
        RawValue{repost, QLatin1StringView("repost")},
        RawValue{quote, QLatin1StringView("quote")},
        RawValue{externalLink, QLatin1StringView("externalLink")},
        RawValue{post, QLatin1StringView("post")},
    };
}

// The name that the user sees.
[[nodiscard]] QString label(PostPresentationKind kind);

// What the reader and the cards show of a bookmark: its columns, and its raw JSON read again. A pure function
// of the bookmark.
struct PostPresentation
{
    PostPresentationKind kind = PostPresentationKind::post;
    QList<ArticleBlock> articleBlocks;
    QList<ExternalLinkPreview> externalLinks;
    QList<EmbeddedPostPreview> embeddedPosts;
    std::optional<QuotedContentPresentation> quotedContent;
    std::optional<QString> primaryTitle;
    QList<MediaItem> primaryMedia;

    // Never fails: a damaged raw JSON only makes it thinner.
    explicit PostPresentation(const Bookmark& bookmark);

    // What the user calls the kind: "Article", or "Quoted external link" when there is quoted content.
    [[nodiscard]] QString displayLabel() const;

    // Every field under its name, and the display label. An absent optional is left out. Enumerations stand
    // by the names of their cases, also those whose text in archives and tables is another one.
    [[nodiscard]] QJsonObject toJSON() const;

    friend bool operator==(const PostPresentation&, const PostPresentation&) = default;
};

} // namespace mirel
