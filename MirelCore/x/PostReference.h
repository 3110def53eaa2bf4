#pragma once

#include <QString>

#include <optional>

namespace mirel {

// The id of the X post that a user's text names: the id itself, or a web address whose path holds
// "/status/" and the id. Absent when it names none.
[[nodiscard]] std::optional<QString> tweetID(const QString& text);

} // namespace mirel
