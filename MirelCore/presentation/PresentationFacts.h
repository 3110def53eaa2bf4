#pragma once

#include "presentation/PostPresentation.h"

namespace mirel {

// The part of a bookmark's presentation on which searches depend, at a fraction of its cost: no article
// blocks, no embedded posts.
struct PresentationFacts
{
    PostPresentationKind kind = PostPresentationKind::post;
    bool hasExternalLinks = false;
    // Present when the presentation has quoted content.
    struct Quoted
    {
        QuotedContentPresentation::Kind kind = QuotedContentPresentation::Kind::post;
        std::optional<QString> title;
        QList<QUrl> externalLinks;
        bool hasMedia = false;

        friend bool operator==(const Quoted&, const Quoted&) = default;
    };
    std::optional<Quoted> quoted;

    // Never fails, and equals what PostPresentation(bookmark) says.
    [[nodiscard]] static PresentationFacts of(const Bookmark& bookmark);

    friend bool operator==(const PresentationFacts&, const PresentationFacts&) = default;
};

} // namespace mirel
