#include "presentation/PresentationFacts.h"

#include "presentation/RawPostPresentationParser.h"

namespace mirel {

namespace {

RawPostPresentationParser parserFor(const Bookmark& bookmark)
{
    // Only a quoted post needs what came along with the post, which is nearly all of the text.
    auto tweet = bookmark.quotedPost ? std::nullopt : RawJSON::parseObject(bookmark.rawJSON, "tweet");
    return tweet ? RawPostPresentationParser(bookmark, *std::move(tweet))
                 : RawPostPresentationParser(bookmark);
}

} // namespace

PresentationFacts PresentationFacts::of(const Bookmark& bookmark)
{
    const RawPostPresentationParser parser = parserFor(bookmark);
    PresentationFacts facts;
    facts.hasExternalLinks = parser.hasExternalLinks(parser.tweet());
    facts.kind = parser.kind(facts.hasExternalLinks);
    facts.quoted = parser.quotedFacts();
    return facts;
}

} // namespace mirel
