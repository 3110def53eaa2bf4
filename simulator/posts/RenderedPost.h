#pragma once

#include "simulator/posts/PostKey.h"

#include <QByteArray>
#include <QList>

#include <optional>
#include <utility>

namespace mirel::simulator {

// One post as JSON, with what a page must include for it.
struct RenderedPost
{
    QByteArray json;
    int author = 0;
    // Media keys with their objects: what a page includes when the post is in its data.
    QList<std::pair<QByteArray, QByteArray>> media;
    // Media that a page does not include when the post is only referenced.
    QList<std::pair<QByteArray, QByteArray>> articleMedia;
    std::optional<PostKey> reference;
    // The referenced post exists, but may not be seen.
    bool referenceIsHidden = false;
    // Position in the table of places.
    std::optional<int> place;
};

} // namespace mirel::simulator
