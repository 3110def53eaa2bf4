#pragma once

#include "library/IndexEntry.h"
#include "library/SQLiteConnection.h"

#include <QHash>

namespace mirel {

// What was loaded of some bookmarks, with what they share, by its ids.
struct IndexBatch
{
    std::vector<IndexEntry> entries;
    QHash<qint64, IndexedAuthor> authors;
    QHash<qint64, IndexedFolder> folders;
};

// How bookmarks come into the index, in no particular order. All throw SQLiteStoreError when the library
// cannot be read.

// The outlines of all live bookmarks.
[[nodiscard]] std::vector<IndexEntry> loadOutlines(SQLiteConnection& connection);

// The outlines of those of the bookmarks that are live.
[[nodiscard]] std::vector<IndexEntry> loadOutlines(SQLiteConnection& connection, const QList<qint64>& ids);

// The entries of those of the bookmarks that are live and have an author, to a depth beyond the outline. One
// that cannot be read is an entry with its failure.
[[nodiscard]] IndexBatch loadIndexBatch(SQLiteConnection& connection, const QList<qint64>& ids,
                                        IndexDepth depth);

// The parts of the searchable text of a bookmark; none when it is gone. Throws also what keeps it from being
// read.
[[nodiscard]] QList<SearchableField> loadSearchableFields(SQLiteConnection& connection, qint64 bookmarkID);

// The place of each author in the order by username, the same for usernames that differ in the case of ASCII
// letters alone.
[[nodiscard]] QHash<qint64, qint64> loadAuthorRanks(SQLiteConnection& connection);

// The places among each other, from 1, of the bookmarks whose date is no number.
[[nodiscard]] QHash<qint64, qint64> loadRanksOfMistypedDates(SQLiteConnection& connection);

} // namespace mirel
