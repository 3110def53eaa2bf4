#include "library/LibraryContentFacts.h"

namespace mirel {

namespace {

LibraryContentType contentTypeOf(QuotedContentPresentation::Kind kind)
{
    switch (kind) {
    case QuotedContentPresentation::Kind::article:
        return LibraryContentType::article;
    case QuotedContentPresentation::Kind::externalLink:
        return LibraryContentType::externalLink;
    case QuotedContentPresentation::Kind::video:
        return LibraryContentType::video;
    case QuotedContentPresentation::Kind::image:
        return LibraryContentType::image;
    case QuotedContentPresentation::Kind::post:
        return LibraryContentType::quote;
    }
    Q_UNREACHABLE();
}

} // namespace

LibraryContentFacts LibraryContentFacts::of(const Bookmark& bookmark, const PresentationFacts& presentation)
{
    LibraryContentFacts facts{
        .hasTitleOrText = bookmark.contentTitle.has_value() || bookmark.contentText.has_value(),
        .kind = presentation.kind,
        .threadCount = bookmark.thread.size(),
    };
    if (presentation.quoted)
        facts.quotedKind = presentation.quoted->kind;
    for (const MediaItem& item : bookmark.media)
        (item.kind == MediaKind::photo ? facts.hasPhoto : facts.hasVideo) = true;
    return facts;
}

LibraryContentType LibraryContentFacts::contentType() const
{
    if (hasTitleOrText)
        return LibraryContentType::article;
    if (quotedKind)
        return contentTypeOf(*quotedKind);
    if (kind == PostPresentationKind::article)
        return LibraryContentType::article;
    if (threadCount >= 2)
        return LibraryContentType::thread;
    if (kind == PostPresentationKind::externalLink)
        return LibraryContentType::externalLink;
    if (hasVideo)
        return LibraryContentType::video;
    if (hasPhoto)
        return LibraryContentType::image;
    return LibraryContentType::tweet;
}

} // namespace mirel
