#pragma once

#include "support/Instant.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace mirel {

// Text for a terminal. A column is the place of one Latin letter: most CJK characters and emoji take two,
// combining marks none.

[[nodiscard]] int displayWidth(const QString& text);

// `text`, or so much of its beginning as leaves room for an ellipsis, in at most `columns` columns. Cut
// between characters as a reader counts them.
[[nodiscard]] QString truncatedToWidth(const QString& text, int columns);

// `text` with blanks behind it, up to `columns` columns.
[[nodiscard]] QString paddedToWidth(const QString& text, int columns);

// Breaks each line of `text` at blanks so that it fits `columns` columns; a word that does not fit is cut.
[[nodiscard]] QStringList wrappedToWidth(const QString& text, int columns);

// One line for each row, its columns aligned. Cells may hold any text. With `columns` the last cell is
// cut to the width of the terminal, though never to less than 20 columns. Every line ends with a line end.
[[nodiscard]] QString alignedLines(QList<QStringList> rows, std::optional<int> columns);

// `text` without the characters that steer a terminal. Line ends stay.
[[nodiscard]] QString printable(const QString& text);

// `text` on one line: printable, and with one blank for each run of white space.
[[nodiscard]] QString oneLine(const QString& text);

// Where the user is: "2026-01-31", and "2026-01-31 14:05".
[[nodiscard]] QString dateText(Instant instant);
[[nodiscard]] QString timeText(Instant instant);

} // namespace mirel
