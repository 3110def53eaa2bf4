#pragma once

#include <QSet>
#include <QString>

#include <optional>

namespace mirel {

// The way through one of X's lists, page by page, which always ends.
class PageWalk
{
public:
    explicit PageWalk(qint64 mostPages)
        : m_mostPages(mostPages)
    {
    }

    // Of the page that is due; absent for the first.
    [[nodiscard]] const std::optional<QString>& token() const { return m_token; }

    // Goes on from the page that was due to the one that it names. Returns false when it names none, and
    // throws BookmarkSyncError when there were pages enough, or when that page was there before.
    [[nodiscard]] bool advance(const std::optional<QString>& nextToken);

private:
    qint64 m_mostPages;
    qint64 m_pages = 1;
    std::optional<QString> m_token;
    QSet<QString> m_seenTokens;
};

} // namespace mirel
