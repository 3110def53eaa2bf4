#include "presentation/PostPresentation.h"

namespace mirel {

PostPresentation::PostPresentation(const Bookmark& bookmark)
    : primaryTitle(bookmark.contentTitle)
    , primaryMedia(bookmark.media)
{
}

QString PostPresentation::displayLabel() const
{
    return QStringLiteral("Post");
}

} // namespace mirel
