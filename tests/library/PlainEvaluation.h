#pragma once

#include "library/LocalLibraryStore.h"

namespace mirel::testing {

// What listings and searches of a library must give: the definition. Order and mailbox come from the tables,
// and each bookmark is loaded and asked by itself. Errors are those of the store.
class PlainEvaluation
{
public:
    // Opens the library for itself.
    explicit PlainEvaluation(const QString& path);

    // To be called when the library may have changed.
    void renew();

    // The bookmarks of a mailbox in order, of which none is loaded.
    [[nodiscard]] QList<qint64> ids(LibraryFilter mailbox, LibrarySort sort);

    // Those of them that pass the refinements. Loads all of the mailbox, whatever the refinements.
    [[nodiscard]] QList<qint64> matchingIDs(LibraryFilter mailbox, const LibraryRefinements& refinements,
                                            LibrarySort sort);

    [[nodiscard]] const Bookmark& bookmark(qint64 id);
    [[nodiscard]] QList<Bookmark> bookmarks(const QList<qint64>& ids);
    [[nodiscard]] LibraryCounts counts();

    // All that can be loaded.
    [[nodiscard]] QList<Bookmark> readableBookmarks();
    // Some cannot.
    [[nodiscard]] bool hasUnreadableBookmarks();

    // The same number for bookmarks that may come in either order.
    [[nodiscard]] qint64 placeOf(qint64 id, LibrarySort sort);

private:
    LocalLibraryStore m_store;
    SQLiteConnection m_connection;
    QHash<qint64, Bookmark> m_bookmarks;
    QHash<qint64, qint64> m_authorPlaces;
};

} // namespace mirel::testing
