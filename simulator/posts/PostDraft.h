#pragma once

#include "simulator/posts/PostText.h"
#include "simulator/posts/RandomSource.h"
#include "simulator/posts/RenderedPost.h"

namespace mirel::simulator {

// A post while it is being written.
struct PostDraft
{
    PostKey key;
    qint64 id = 0;
    int author = 0;
    RandomSource random;
    PostText text = {};
    QString language = QStringLiteral("en");
    // The first post of the conversation.
    qint64 conversation = 0;
    // Members beyond those that every post has, in their order.
    JSONObjectText extras = {};
    // Media that the post shows, as `attachments` names them.
    QList<QByteArray> attachments = {};
    RenderedPost result = {};
};

} // namespace mirel::simulator
