#pragma once

#include "presentation/PresentationFacts.h"

namespace mirel {

// The bookmark that `columns` describe, with a plain value for every column that is not named, also inside a
// quoted post and the posts of a thread.
[[nodiscard]] Bookmark bookmarkOf(const QByteArray& columns, const QByteArray& rawJSON);

// The facts as the whole presentation tells them.
[[nodiscard]] PresentationFacts factsOf(const PostPresentation& presentation);

} // namespace mirel
