#include "library/LibraryContentType.h"

namespace mirel {

QString label(LibraryContentType type)
{
    switch (type) {
    case LibraryContentType::tweet:
        return QStringLiteral("Tweet");
    case LibraryContentType::article:
        return QStringLiteral("Article");
    case LibraryContentType::quote:
        return QStringLiteral("Quote");
    case LibraryContentType::thread:
        return QStringLiteral("Thread");
    case LibraryContentType::externalLink:
        return QStringLiteral("External link");
    case LibraryContentType::video:
        return QStringLiteral("Video");
    case LibraryContentType::image:
        return QStringLiteral("Image");
    }
    Q_UNREACHABLE();
}

} // namespace mirel
