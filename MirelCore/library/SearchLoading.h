#pragma once

#include "library/SQLiteConnection.h"
#include "library/SearchEntry.h"

#include <QHash>

namespace mirel {

// Whose presentation is read. It costs the raw JSON, most of a bookmark, and only the text of a bookmark that
// quotes another one depends on it; its kind and its links always do.
enum class SearchPresentations { ofQuotingPosts, ofAll };

// What was loaded of some bookmarks.
struct SearchBatch
{
    std::vector<SearchEntry> entries;
    // Of these bookmarks, by their ids.
    QHash<qint64, SearchAuthor> authors;
    QHash<qint64, SearchFolder> folders;
};

// Loads those of the bookmarks that are live, in no particular order. A bookmark that cannot be read is an
// entry with its failure. Throws SQLiteStoreError when the library itself cannot be read.
[[nodiscard]] SearchBatch loadSearchBatch(SQLiteConnection& connection, const QList<qint64>& ids,
                                          SearchPresentations presentations);

} // namespace mirel
