#pragma once

#include <QByteArray>

namespace mirel {

// What a generated page holds.
struct PageShape
{
    int authors = 20;
    int pictures = 25;
    int quotedPosts = 10;
    // Bytes of the includes, reached with users that wrote none of the posts; 0 for no such users. Each
    // envelope holds one post and all of the includes.
    qsizetype includesSize = 88'000;
};

// Pages of bookmarks as X would send them, the same ones on every machine.
class PageGenerator
{
public:
    static constexpr int postsPerPage = 50;

    explicit PageGenerator(PageShape shape = {})
        : m_shape(shape)
    {
    }

    // Envelopes of about 2 KB instead of 90 KB.
    [[nodiscard]] static PageGenerator light();

    // The page `number`, counted from 0. No post stands on two pages.
    [[nodiscard]] QByteArray page(int number) const;

private:
    PageShape m_shape;
};

} // namespace mirel
