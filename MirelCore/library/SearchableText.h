#pragma once

#include "presentation/PresentationFacts.h"

#include <array>

namespace mirel {

// The parts of a bookmark that a plain search looks at, in the order in which they are joined.
enum class SearchField {
    text,
    primaryTitle,
    contentTitle,
    contentText,
    note,
    sourceURL,
    authorName,
    authorUsername,
    quotedPostText,
    quotedExternalLinks,
    labels,
    folder
};

[[nodiscard]] constexpr auto rawValues(SearchField)
{
    using enum SearchField;
    return std::array{
        RawValue{text, QLatin1StringView("text")},
        RawValue{primaryTitle, QLatin1StringView("primaryTitle")},
        RawValue{contentTitle, QLatin1StringView("contentTitle")},
        RawValue{contentText, QLatin1StringView("contentText")},
        RawValue{note, QLatin1StringView("note")},
        RawValue{sourceURL, QLatin1StringView("sourceURL")},
        RawValue{authorName, QLatin1StringView("author.name")},
        RawValue{authorUsername, QLatin1StringView("author.username")},
        RawValue{quotedPostText, QLatin1StringView("quotedPost.text")},
        RawValue{quotedExternalLinks, QLatin1StringView("quotedContent.externalLinks")},
        RawValue{labels, QLatin1StringView("tags")},
        RawValue{folder, QLatin1StringView("folder")},
    };
}

// Trimmed and lower-cased, as names are compared.
[[nodiscard]] QString searchKey(const QString& text);

// Lower-cased and in UTF-8, as substrings are compared. Diacritics stay. Whatever does not form a character,
// such as half of a surrogate pair, becomes U+FFFD.
[[nodiscard]] QByteArray searchBytes(const QString& text);

// One part, as searchBytes() makes it.
struct SearchableField
{
    SearchField field = SearchField::text;
    QByteArray bytes;

    friend bool operator==(const SearchableField&, const SearchableField&) = default;
};

// The parts that the bookmark has. `quoted` is what its presentation says of the quoted content, which only a
// bookmark with a quoted post has.
[[nodiscard]] QList<SearchableField> searchableFields(const Bookmark& bookmark,
                                                      const std::optional<PresentationFacts::Quoted>& quoted);

// The parts with one space between them.
[[nodiscard]] QByteArray joined(const QList<SearchableField>& fields);

// All parts that the bookmark has, joined.
[[nodiscard]] QByteArray searchableText(const Bookmark& bookmark,
                                        const std::optional<PresentationFacts::Quoted>& quoted);

} // namespace mirel
