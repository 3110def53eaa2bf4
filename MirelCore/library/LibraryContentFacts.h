#pragma once

#include "library/LibraryContentType.h"
#include "presentation/PresentationFacts.h"

#include <optional>

namespace mirel {

// All that decides of which LibraryContentType a bookmark is.
struct LibraryContentFacts
{
    // A title or a text of an article, even an empty one.
    bool hasTitleOrText = false;
    // Of the presentation.
    std::optional<QuotedContentPresentation::Kind> quotedKind;
    PostPresentationKind kind = PostPresentationKind::post;
    qsizetype threadCount = 0;
    // A video, an animated image or a YouTube link among the media.
    bool hasVideo = false;
    bool hasPhoto = false;

    // `presentation` is that of the bookmark.
    [[nodiscard]] static LibraryContentFacts of(const Bookmark& bookmark,
                                                const PresentationFacts& presentation);

    [[nodiscard]] LibraryContentType contentType() const;

    friend bool operator==(const LibraryContentFacts&, const LibraryContentFacts&) = default;
};

} // namespace mirel
