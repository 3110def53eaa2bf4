#pragma once

#include "records/Bookmark.h"
#include "records/BookmarkHighlight.h"

#include <optional>

namespace mirel {

// What the reader shows of a bookmark, as text for people: its author, what it is, its article block by block
// or its text and thread, its links, media and quoted content, and what the user made of it. Wraps to
// `columns`, when there are any.
[[nodiscard]] QByteArray readerText(const Bookmark& bookmark, const QList<BookmarkHighlight>& highlights,
                                    std::optional<int> columns);

} // namespace mirel
