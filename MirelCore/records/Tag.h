#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

// A label. Its identity is `id`.
struct Tag
{
    enum class Source {
        manual,
        // Created from an accepted suggestion.
        generated
    };

    qint64 id = 0;
    // Unique without regard to case.
    QString name;
    QString slug;
    // A hash sign and six hexadecimal digits.
    QString colorHex;
    Source source = Source::manual;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &Tag::id),         jsonField("name", &Tag::name),
            jsonField("slug", &Tag::slug),     jsonField("colorHex", &Tag::colorHex),
            jsonField("source", &Tag::source),
        };
    }

    friend bool operator==(const Tag&, const Tag&) = default;
};

[[nodiscard]] constexpr auto rawValues(Tag::Source)
{
    return std::array{
        RawValue{Tag::Source::manual, QLatin1StringView("manual")},
        RawValue{Tag::Source::generated, QLatin1StringView("generated")},
    };
}

// A label with the number of bookmarks that carry it.
struct TagSummary
{
    Tag tag;
    qint64 bookmarkCount = 0;
    qint64 unreadCount = 0;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("tag", &TagSummary::tag),
            jsonField("bookmarkCount", &TagSummary::bookmarkCount),
            jsonField("unreadCount", &TagSummary::unreadCount),
        };
    }

    friend bool operator==(const TagSummary&, const TagSummary&) = default;
};

} // namespace mirel
