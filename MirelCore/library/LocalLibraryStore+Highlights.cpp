#include "library/LocalLibraryStore.h"

#include "library/OrganizationError.h"
#include "library/RowDecoding.h"
#include "support/Text.h"

namespace mirel {

namespace {

constexpr qsizetype longestSelection = 500;
constexpr qsizetype longestContext = 1200;

} // namespace

BookmarkHighlight LocalLibraryStore::createHighlight(qint64 bookmarkID, const QString& selectedText,
                                                     const std::optional<QString>& contextText,
                                                     qint64 startOffset, qint64 endOffset,
                                                     const QString& colorHex, Instant createdAt)
{
    const QString selection = firstCharacters(trimmed(storedText(selectedText)), longestSelection);
    if (selection.isEmpty())
        throw OrganizationError(OrganizationError::Case::invalidName);
    BookmarkHighlight highlight{
        .bookmarkID = bookmarkID,
        .selectedText = selection,
        .startOffset = std::max<qint64>(startOffset, 0),
        // The start as it was passed: raising it to 0 does not raise the end.
        .endOffset = std::max(endOffset, startOffset),
        .colorHex = storedText(colorHex),
        .createdAt = createdAt,
    };
    if (contextText)
        highlight.contextText = firstCharacters(storedText(*contextText), longestContext);
    m_database.run("INSERT INTO highlights (bookmark_id, selected_text, context_text, start_offset, "
                   "end_offset, color_hex, created_at) VALUES (?, ?, ?, ?, ?, ?, ?)",
                   {highlight.bookmarkID, highlight.selectedText, highlight.contextText,
                    highlight.startOffset, highlight.endOffset, highlight.colorHex, highlight.createdAt});
    highlight.id = m_database.lastInsertedRowID();
    return highlight;
}

QList<BookmarkHighlight> LocalLibraryStore::highlights(std::optional<qint64> bookmarkID)
{
    const auto rows =
        bookmarkID
            ? m_database.rows("SELECT * FROM highlights WHERE bookmark_id = ? ORDER BY created_at DESC",
                              {*bookmarkID})
            : m_database.rows("SELECT * FROM highlights ORDER BY created_at DESC");
    QList<BookmarkHighlight> highlights;
    for (const SQLiteRow& row : rows)
        highlights.append(decodeHighlight(row));
    return highlights;
}

void LocalLibraryStore::deleteHighlight(qint64 id)
{
    m_database.run("DELETE FROM highlights WHERE id = ?", {id});
}

} // namespace mirel
