#pragma once

#include "library/LocalLibraryStore.h"
#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/CommandSyntax.h"

#include <QSet>

namespace mirel {

// Which part of a mailbox is listed, and in which order.
struct ListingOptions
{
    LibraryFilter filter = LibraryFilter::all;
    LibrarySort sort = LibrarySort::newest;
    qint64 limit = 50;
    qint64 offset = 0;

    void describe(CommandSyntax& syntax);

    friend bool operator==(const ListingOptions&, const ListingOptions&) = default;
};

// The line that stands for a bookmark in a listing, in columns.
[[nodiscard]] QStringList rowOf(const Bookmark& bookmark, std::optional<int> columns);

// One line for each bookmark, or "No bookmarks.".
[[nodiscard]] QByteArray listingText(const QList<QStringList>& rows, std::optional<int> columns);

// Standard output of a command that lists `bookmarks`: an array of Bookmark, or one line each.
[[nodiscard]] QByteArray answerBookmarks(const CommandSurroundings& surroundings,
                                         const QList<Bookmark>& bookmarks);

// Calls `take` with each bookmark of a listing, in order. `readBatch(limit, offset)` returns a part of it; a
// bookmark that moves down between two parts, because another process added one above it, is taken once.
template <typename ReadBatch, typename Take>
void forEachBookmark(const ListingOptions& options, const ReadBatch& readBatch, const Take& take)
{
    constexpr qint64 batchSize = 500;
    QSet<qint64> taken;
    qint64 offset = options.offset;
    for (qint64 left = options.limit; left > 0;) {
        const qint64 size = std::min(left, batchSize);
        const QList<Bookmark> batch = readBatch(size, offset);
        for (const Bookmark& bookmark : batch) {
            if (taken.contains(bookmark.id))
                continue;
            taken.insert(bookmark.id);
            take(bookmark);
        }
        if (batch.size() < size)
            return;
        offset += size;
        left -= size;
    }
}

// Joins JSON texts into the text of an array.
class JSONArrayText
{
public:
    void append(const QByteArray& element) { m_text += (m_text.isEmpty() ? '[' : ',') + element; }
    [[nodiscard]] QByteArray toUtf8() const { return m_text.isEmpty() ? "[]" : m_text + ']'; }

private:
    QByteArray m_text;
};

} // namespace mirel
