#pragma once

#include "library/IndexLoading.h"
#include "library/IndexTextBudget.h"
#include "library/LibraryChanges.h"
#include "library/LibrarySearch.h"
#include "records/LibrarySummaries.h"

#include <array>

namespace mirel {

class BackgroundIndexLoading;
class IndexedBookmark;

// Answers listings, counts and searches from memory. It holds nothing until it is asked, goes no deeper than
// the question needs, and is never stale: each call first takes in what was written since the last one,
// through this connection or any other.
//
// Used on the connection's thread, outside transactions. The connection outlives this object. Every call
// throws SQLiteStoreError when the library cannot be read.
class LibraryIndex
{
public:
    explicit LibraryIndex(SQLiteConnection& connection);
    ~LibraryIndex();
    Q_DISABLE_COPY_MOVE(LibraryIndex)

    // The live bookmarks of a mailbox, in order. `limit` and `offset` are not negative.
    [[nodiscard]] QList<qint64> ids(LibraryFilter mailbox, LibrarySort sort,
                                    qint64 limit = std::numeric_limits<qint64>::max(), qint64 offset = 0);

    // A bookmark whose author is missing counts, although it is never listed.
    [[nodiscard]] LibraryCounts counts();

    // Those of them that pass the search. Throws also what keeps a bookmark of the mailbox from being loaded,
    // even when it is another one that is looked for, or nothing is asked of any.
    [[nodiscard]] QList<qint64> matchingIDs(LibraryFilter mailbox, const LibrarySearch& search,
                                            LibrarySort sort);

    // Does a part of the work that the first search of that depth would do, for at most `limit` bookmarks.
    // Returns whether nothing is left.
    bool prepare(IndexDepth depth, qsizetype limit);

    // Between these two calls, another processor does the work of the first search as far as it comes, and
    // this connection is free for other work. What is written meanwhile, here or elsewhere, is noticed as
    // always. Where that processor cannot be had, or cannot read, the first search does it all; they throw
    // SQLiteStoreError as every call does, and nothing else.
    void beginLoadingAhead();
    void endLoadingAhead();

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
    // Each of these brings the index up to date, or throws and leaves it to be loaded anew.
    void bringUpToDate(IndexDepth depth);
    void loadOutline();
    void deepen(IndexDepth depth);
    void takeIn(const ChangedRows& rows);
    // The bookmarks of which something is different after those rows were written.
    [[nodiscard]] QSet<qint64> affectedBookmarks(const ChangedRows& rows);

    // At most `limit` bookmarks of which less is known.
    [[nodiscard]] QList<qint64> shallowerThan(IndexDepth depth, qsizetype limit) const;
    void load(const QList<qint64>& ids, IndexDepth depth);
    void add(IndexBatch batch);
    void shareLabels(IndexEntry& entry);
    void put(IndexEntry entry);
    void remove(qint64 id);
    void dropLongestTexts();

    [[nodiscard]] const std::vector<quint32>& order(LibrarySort sort);
    [[nodiscard]] bool matches(const LibrarySearch& search, const IndexEntry& entry);

    struct LoadingAhead
    {
        // Of the library when it began.
        qint64 version = 0;
        std::unique_ptr<BackgroundIndexLoading> loading;
    };

    SQLiteConnection& m_connection;
    LibraryChanges m_changes;
    // Of the library as it was loaded; absent when nothing is, or not all.
    std::optional<qint64> m_version;
    // What is known of every bookmark that has an author; of some it may be more.
    IndexDepth m_depth = IndexDepth::outline;
    std::vector<IndexEntry> m_entries;
    // Places in m_entries by bookmark.
    QHash<qint64, quint32> m_places;
    QHash<qint64, IndexedAuthor> m_authors;
    QHash<qint64, IndexedFolder> m_folders;
    QHash<qint64, std::shared_ptr<const IndexedLabel::Names>> m_labels;
    IndexTextBudget m_textBudget;
    // Places in m_entries, one order for each sort; empty until it is asked for.
    std::array<std::vector<quint32>, 3> m_orders;
    std::optional<LoadingAhead> m_loadingAhead;
};

} // namespace mirel
