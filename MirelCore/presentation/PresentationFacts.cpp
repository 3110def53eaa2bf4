#include "presentation/PresentationFacts.h"

#include "presentation/RawPostPresentationParser.h"

namespace mirel {

PresentationFacts PresentationFacts::of(const Bookmark& bookmark)
{
    const RawPostPresentationParser parser(bookmark);
    PresentationFacts facts;
    facts.hasExternalLinks = parser.hasExternalLinks(parser.tweet());
    facts.kind = parser.kind(facts.hasExternalLinks);
    facts.quoted = parser.quotedFacts();
    return facts;
}

} // namespace mirel
