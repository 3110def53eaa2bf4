#pragma once

#include "records/MediaItem.h"

namespace mirel {

// A style over a part of an article's block. Offset and length count UTF-16 code units and are kept as X sent
// them: they may reach past the text.
struct ArticleStyleRange
{
    enum class Style { bold, italic, strikethrough };

    qint64 offset = 0;
    qint64 length = 0;
    Style style = Style::bold;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("offset", &ArticleStyleRange::offset),
            jsonField("length", &ArticleStyleRange::length),
            jsonField("style", &ArticleStyleRange::style),
        };
    }

    friend bool operator==(const ArticleStyleRange&, const ArticleStyleRange&) = default;
};

[[nodiscard]] constexpr auto rawValues(ArticleStyleRange::Style)
{
    using enum ArticleStyleRange::Style;
    return std::array{
        RawValue{bold, QLatin1StringView("bold")},
        RawValue{italic, QLatin1StringView("italic")},
        RawValue{strikethrough, QLatin1StringView("strikethrough")},
    };
}

// A link over a part of an article's block, in the units of ArticleStyleRange.
struct ArticleLinkRange
{
    qint64 offset = 0;
    qint64 length = 0;
    QUrl url;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("offset", &ArticleLinkRange::offset),
            jsonField("length", &ArticleLinkRange::length),
            jsonField("url", &ArticleLinkRange::url),
        };
    }

    friend bool operator==(const ArticleLinkRange&, const ArticleLinkRange&) = default;
};

// One paragraph, heading, picture or other piece of an article, as the reader draws it.
struct ArticleBlock
{
    enum class Kind {
        paragraph,
        headingOne,
        headingTwo,
        headingThree,
        unorderedListItem,
        orderedListItem,
        blockquote,
        divider,
        code,
        embeddedPost,
        media
    };

    // Stable within one article.
    QString id;
    Kind kind = Kind::paragraph;
    QString text;
    QList<ArticleStyleRange> styles;
    QList<ArticleLinkRange> links;
    std::optional<QString> embeddedPostID;
    QList<MediaItem> media;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &ArticleBlock::id),
            jsonField("kind", &ArticleBlock::kind),
            jsonField("text", &ArticleBlock::text),
            jsonField("styles", &ArticleBlock::styles),
            jsonField("links", &ArticleBlock::links),
            jsonField("embeddedPostID", &ArticleBlock::embeddedPostID),
            jsonField("media", &ArticleBlock::media),
        };
    }

    friend bool operator==(const ArticleBlock&, const ArticleBlock&) = default;
};

[[nodiscard]] constexpr auto rawValues(ArticleBlock::Kind)
{
    using enum ArticleBlock::Kind;
    return std::array{
        RawValue{paragraph, QLatin1StringView("paragraph")},
        RawValue{headingOne, QLatin1StringView("headingOne")},
        RawValue{headingTwo, QLatin1StringView("headingTwo")},
        RawValue{headingThree, QLatin1StringView("headingThree")},
        RawValue{unorderedListItem, QLatin1StringView("unorderedListItem")},
        RawValue{orderedListItem, QLatin1StringView("orderedListItem")},
        RawValue{blockquote, QLatin1StringView("blockquote")},
        RawValue{divider, QLatin1StringView("divider")},
        RawValue{code, QLatin1StringView("code")},
        RawValue{embeddedPost, QLatin1StringView("embeddedPost")},
        RawValue{media, QLatin1StringView("media")},
    };
}

} // namespace mirel
