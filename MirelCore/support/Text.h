#pragma once

#include <QString>

#include <optional>

namespace mirel {

// `text` without white space and line ends at both ends.
[[nodiscard]] QString trimmed(QStringView text);

// The trimmed text, or absent when nothing is left of it.
[[nodiscard]] std::optional<QString> nilIfBlank(QStringView text);
[[nodiscard]] std::optional<QString> nilIfBlank(const std::optional<QString>& text);

// The number of characters as a reader counts them: grapheme clusters.
[[nodiscard]] qsizetype characterCount(const QString& text);

// The first `count` characters (grapheme clusters) of `text`, or all of it when it is shorter.
[[nodiscard]] QString firstCharacters(const QString& text, qsizetype count);

} // namespace mirel
