#include "library/PlainEvaluation.h"

#include "support/Error.h"

namespace mirel::testing {

PlainEvaluation::PlainEvaluation(const QString& path)
    : m_store(path)
    , m_connection(path)
{
}

void PlainEvaluation::renew()
{
    m_bookmarks.clear();
    m_authorPlaces.clear();
}

QList<qint64> PlainEvaluation::ids(LibraryFilter mailbox, LibrarySort sort)
{
    return m_store.allBookmarkIDs(mailbox, sort);
}

QList<qint64> PlainEvaluation::matchingIDs(LibraryFilter mailbox, const LibraryRefinements& refinements,
                                           LibrarySort sort)
{
    QList<qint64> matching;
    for (const qint64 id : ids(mailbox, sort)) {
        if (refinements.matches(bookmark(id)))
            matching.append(id);
    }
    return matching;
}

const Bookmark& PlainEvaluation::bookmark(qint64 id)
{
    auto known = m_bookmarks.constFind(id);
    if (known == m_bookmarks.cend())
        known = m_bookmarks.insert(id, m_store.bookmark(id));
    return *known;
}

QList<Bookmark> PlainEvaluation::bookmarks(const QList<qint64>& ids)
{
    QList<Bookmark> bookmarks;
    for (const qint64 id : ids)
        bookmarks.append(bookmark(id));
    return bookmarks;
}

LibraryCounts PlainEvaluation::counts()
{
    const auto count = [this](const char* query) {
        return m_connection.firstRow(query)->integer("count").value_or(0);
    };
    return {
        .all = count("SELECT COUNT(*) AS count FROM bookmarks b WHERE b.deleted_at IS NULL AND 1 = 1"),
        .inbox = count("SELECT COUNT(*) AS count FROM bookmarks b WHERE b.deleted_at IS NULL AND "
                       "b.is_archived = 0 AND b.is_favorite = 0 AND NOT EXISTS (SELECT 1 FROM "
                       "bookmark_folders inbox_folder WHERE inbox_folder.bookmark_id = b.id)"),
        .read = count("SELECT COUNT(*) AS count FROM bookmarks b WHERE b.deleted_at IS NULL AND "
                      "b.is_read = 1"),
        .favorites = count("SELECT COUNT(*) AS count FROM bookmarks b WHERE b.deleted_at IS NULL AND "
                           "b.is_favorite = 1"),
        .archive = count("SELECT COUNT(*) AS count FROM bookmarks b WHERE b.deleted_at IS NULL AND "
                         "b.is_archived = 1"),
    };
}

QList<Bookmark> PlainEvaluation::readableBookmarks()
{
    QList<Bookmark> readable;
    for (const qint64 id : ids(LibraryFilter::all, LibrarySort::newest)) {
        try {
            readable.append(bookmark(id));
        } catch (const Error&) {
            // Not one of them.
        }
    }
    return readable;
}

bool PlainEvaluation::hasUnreadableBookmarks()
{
    return readableBookmarks().size() < ids(LibraryFilter::all, LibrarySort::newest).size();
}

qint64 PlainEvaluation::placeOf(qint64 id, LibrarySort sort)
{
    if (sort != LibrarySort::author)
        return id;
    if (m_authorPlaces.isEmpty()) {
        m_connection.forEachRow(
            "SELECT b.id, dense_rank() OVER (ORDER BY a.username COLLATE NOCASE, b.post_created_at DESC) AS "
            "place FROM bookmarks b JOIN authors a ON a.id = b.author_id",
            {}, [this](const SQLiteRow& row) {
                m_authorPlaces.insert(row.integer("id").value(), row.integer("place").value());
            });
    }
    return m_authorPlaces.value(id);
}

} // namespace mirel::testing
