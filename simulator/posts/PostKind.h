#pragma once

namespace mirel::simulator {

// What a post consists of.
enum class PostKind {
    Plain,
    ForeignLanguage,
    LinkCard,
    Photos,
    Video,
    AnimatedGIF,
    YouTube,
    Quote,
    QuoteOfArticle,
    QuoteOfHidden,
    Repost,
    LongNote,
    RichArticle,
    PlainArticle,
    Thread,
    Reply,
};

} // namespace mirel::simulator
