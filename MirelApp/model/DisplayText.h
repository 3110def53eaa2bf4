#pragma once

#include <QString>

namespace mirel {

// The text of a post as a reader sees it, with X's HTML escapes resolved.
[[nodiscard]] QString displayText(QString text);

} // namespace mirel
