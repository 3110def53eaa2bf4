#pragma once

#include "support/JSONCoding.h"

namespace mirel {

// A span of text that the user marked. Its identity is `id`.
struct BookmarkHighlight
{
    qint64 id = 0;
    qint64 bookmarkID = 0;
    QString selectedText;
    // The text around the selection.
    std::optional<QString> contextText;
    // In characters.
    qint64 startOffset = 0;
    qint64 endOffset = 0;
    QString colorHex;
    Instant createdAt;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &BookmarkHighlight::id),
            jsonField("bookmarkID", &BookmarkHighlight::bookmarkID),
            jsonField("selectedText", &BookmarkHighlight::selectedText),
            jsonField("contextText", &BookmarkHighlight::contextText),
            jsonField("startOffset", &BookmarkHighlight::startOffset),
            jsonField("endOffset", &BookmarkHighlight::endOffset),
            jsonField("colorHex", &BookmarkHighlight::colorHex),
            jsonField("createdAt", &BookmarkHighlight::createdAt),
        };
    }

    friend bool operator==(const BookmarkHighlight&, const BookmarkHighlight&) = default;
};

} // namespace mirel
