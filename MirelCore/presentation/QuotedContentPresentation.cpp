#include "presentation/QuotedContentPresentation.h"

namespace mirel {

QString label(QuotedContentPresentation::Kind kind)
{
    switch (kind) {
    case QuotedContentPresentation::Kind::article:
        return QStringLiteral("Article");
    case QuotedContentPresentation::Kind::externalLink:
        return QStringLiteral("External link");
    case QuotedContentPresentation::Kind::video:
        return QStringLiteral("Video");
    case QuotedContentPresentation::Kind::image:
        return QStringLiteral("Image");
    case QuotedContentPresentation::Kind::post:
        return QStringLiteral("Post");
    }
    Q_UNREACHABLE();
}

} // namespace mirel
