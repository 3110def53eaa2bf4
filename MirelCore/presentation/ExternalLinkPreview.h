#pragma once

#include "support/JSONCoding.h"

namespace mirel {

// A link that leads out of X, with what X told of the page behind it.
struct ExternalLinkPreview
{
    QUrl url;
    std::optional<QString> displayURL;
    std::optional<QString> title;
    std::optional<QString> summary;
    std::optional<QUrl> imageURL;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("url", &ExternalLinkPreview::url),
            jsonField("displayURL", &ExternalLinkPreview::displayURL),
            jsonField("title", &ExternalLinkPreview::title),
            jsonField("summary", &ExternalLinkPreview::summary),
            jsonField("imageURL", &ExternalLinkPreview::imageURL),
        };
    }

    friend bool operator==(const ExternalLinkPreview&, const ExternalLinkPreview&) = default;
};

} // namespace mirel
