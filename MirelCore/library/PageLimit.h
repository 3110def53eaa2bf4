#pragma once

#include <QtGlobal>

namespace mirel {

// The most bookmarks that are loaded at once, and so the longest page.
inline constexpr qint64 largestPage = 500;

} // namespace mirel
