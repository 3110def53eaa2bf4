#pragma once

#include <QString>
#include <QStringList>

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

// `text` without the characters that steer a terminal. Line ends stay.
[[nodiscard]] QString printable(const QString& text);

// `text` on one line: printable, and with one blank for each run of white space.
[[nodiscard]] QString oneLine(const QString& text);

} // namespace mirel
