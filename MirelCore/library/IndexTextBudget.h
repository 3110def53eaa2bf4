#pragma once

#include "library/IndexEntry.h"

namespace mirel {

// How much text the index keeps of the bookmarks: of the 2 KB that one may cost on average, the most. Short
// texts are kept always, long ones as far as this goes; for one that is not kept, the library is asked again.
class IndexTextBudget
{
public:
    static constexpr qsizetype shortText = 900;

    explicit IndexTextBudget(qint64 bookmarks = 0)
        : m_bookmarks(bookmarks)
    {
    }

    void setBookmarks(qint64 bookmarks) { m_bookmarks = bookmarks; }

    // Counts the text of an entry that is kept.
    void add(const IndexEntry& entry) { m_bytes += entry.text.size(); }
    // Counts it no longer.
    void remove(const IndexEntry& entry) { m_bytes -= entry.text.size(); }

    // Drops the text of an entry that does not count yet, when it is long and would go beyond the budget.
    void limit(IndexEntry& entry) const
    {
        if (entry.text.size() > shortText && m_bytes + entry.text.size() > m_bookmarks * bytesPerBookmark)
            entry.text = {};
    }

    [[nodiscard]] bool isExceeded() const { return m_bytes > m_bookmarks * bytesPerBookmark; }
    [[nodiscard]] qint64 bytes() const { return m_bytes; }

private:
    static constexpr qint64 bytesPerBookmark = 1700;

    qint64 m_bookmarks;
    qint64 m_bytes = 0;
};

} // namespace mirel
