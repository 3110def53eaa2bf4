#pragma once

#include <QLocale>
#include <QString>

#include <optional>

namespace mirel {

// `text` without white space and line ends at both ends.
[[nodiscard]] QString trimmed(QStringView text);

// The trimmed text, or absent when nothing is left of it.
[[nodiscard]] std::optional<QString> nilIfBlank(QStringView text);
[[nodiscard]] std::optional<QString> nilIfBlank(const std::optional<QString>& text);

// The text in lower case, the same in every language. The cost grows with the length, unlike that of
// QString::toLower().
[[nodiscard]] QString lowerCased(QString text);

// The number of characters as a reader counts them: grapheme clusters.
[[nodiscard]] qsizetype characterCount(const QString& text);

// The first `count` characters (grapheme clusters) of `text`, or all of it when it is shorter.
[[nodiscard]] QString firstCharacters(const QString& text, qsizetype count);

// What a name is known by: its words, folded and joined with "-". "Deep & Work" gives "deep-work".
//
// Folding takes away case ("Straße" gives "strasse") and the marks on Latin, Greek and Cyrillic letters, on
// digits and on symbols ("Café" gives "cafe"). Marks of other scripts are part of their letters and stay, and
// nothing is transliterated: "日本語" and "हिन्दी" give themselves. `locale` decides what the lower case of a
// letter is, which in Turkish differs for "I". Words are runs of Unicode's letters, marks and numbers.
//
// A name without any, such as "!!!" or one of emoji only, gives a random UUID, another one on each call.
[[nodiscard]] QString slug(const QString& name, const QLocale& locale = QLocale());

} // namespace mirel
