#pragma once

#include "library/LibraryChanges.h"
#include "library/LibrarySearch.h"
#include "library/SearchLoading.h"

#include <array>

namespace mirel {

// Answers searches over a library from memory. It holds nothing until the first search, and is never stale:
// each search first takes in what was written since the last one, through this connection or any other.
//
// Used on the connection's thread, outside transactions. The connection outlives this object.
class SearchIndex
{
public:
    explicit SearchIndex(SQLiteConnection& connection);

    // The live bookmarks of a mailbox that pass the search, in order. Throws SQLiteStoreError, and what keeps
    // a bookmark of the mailbox from being loaded, even when it is another one that is looked for.
    [[nodiscard]] QList<qint64> matchingIDs(LibraryFilter mailbox, const LibrarySearch& search,
                                            LibrarySort sort);

    // Must be called after a whole table was emptied.
    void forget();

    struct Size
    {
        qint64 bookmarks = 0;
        // An estimate, from what was asked of the allocator.
        qint64 bytes = 0;
    };
    [[nodiscard]] Size size() const;

private:
    void bringUpToDate(SearchPresentations presentations);
    void loadAll();
    void reload(const QSet<qint64>& ids);
    // The bookmarks of which something is different after those rows were written.
    [[nodiscard]] QSet<qint64> affectedBookmarks(const ChangedRows& rows);
    void add(SearchBatch batch);
    void shareLabels(SearchEntry& entry);
    void put(SearchEntry entry);
    void remove(qint64 id);
    void keepText(SearchEntry& entry);
    void letGoOfText(const SearchEntry& entry);
    [[nodiscard]] QByteArray readText(qint64 bookmarkID);
    [[nodiscard]] const std::vector<quint32>& order(LibrarySort sort);

    SQLiteConnection& m_connection;
    LibraryChanges m_changes;
    // Of the library when it was loaded whole; absent before.
    std::optional<qint64> m_version;
    SearchPresentations m_presentations = SearchPresentations::ofQuotingPosts;
    std::vector<SearchEntry> m_entries;
    // Places in m_entries by bookmark.
    QHash<qint64, quint32> m_places;
    QHash<qint64, SearchAuthor> m_authors;
    QHash<qint64, SearchFolder> m_folders;
    QHash<qint64, std::shared_ptr<const SearchLabel::Names>> m_labels;
    // The bytes of the long texts that are kept, and what they may be.
    qint64 m_longTextBytes = 0;
    qint64 m_longTextBudget = 0;
    // Places in m_entries, one order for each sort; empty until it is asked for.
    std::array<std::vector<quint32>, 3> m_orders;
};

} // namespace mirel
