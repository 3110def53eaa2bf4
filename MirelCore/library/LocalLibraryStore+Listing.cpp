#include "library/LocalLibraryStore.h"

#include "library/BookmarkOrganization.h"
#include "library/PageLimit.h"
#include "library/RowDecoding.h"
#include "library/SQLiteStoreError.h"

#include <QHash>

namespace mirel {

namespace {

QByteArray clauseOf(LibraryFilter filter)
{
    switch (filter) {
    case LibraryFilter::all:
        return "1 = 1";
    case LibraryFilter::inbox:
        return "b.is_archived = 0 AND b.is_favorite = 0 AND NOT EXISTS "
               "(SELECT 1 FROM bookmark_folders inbox_folder WHERE inbox_folder.bookmark_id = b.id)";
    case LibraryFilter::read:
        return "b.is_read = 1";
    case LibraryFilter::favorites:
        return "b.is_favorite = 1";
    case LibraryFilter::archive:
        return "b.is_archived = 1";
    }
    Q_UNREACHABLE();
}

QByteArray orderOf(LibrarySort sort)
{
    switch (sort) {
    case LibrarySort::newest:
        return "b.post_created_at DESC, b.id DESC";
    case LibrarySort::oldest:
        return "b.post_created_at ASC, b.id ASC";
    case LibrarySort::author:
        return "a.username COLLATE NOCASE ASC, b.post_created_at DESC";
    }
    Q_UNREACHABLE();
}

QByteArray idQuery(LibraryFilter filter, LibrarySort sort)
{
    return "SELECT b.id FROM bookmarks b JOIN authors a ON a.id = b.author_id "
           "WHERE b.deleted_at IS NULL AND " +
           clauseOf(filter) + "\nORDER BY " + orderOf(sort);
}

QList<qint64> idsOf(const std::vector<SQLiteRow>& rows)
{
    QList<qint64> ids;
    ids.reserve(static_cast<qsizetype>(rows.size()));
    for (const SQLiteRow& row : rows) {
        if (const auto id = row.integer("id"))
            ids.append(*id);
    }
    return ids;
}

} // namespace

QList<Bookmark> LocalLibraryStore::listBookmarks(LibraryFilter filter, qint64 limit, qint64 offset,
                                                 LibrarySort sort)
{
    return bookmarks(
        m_index.ids(filter, sort, std::clamp<qint64>(limit, 1, largestPage), std::max<qint64>(offset, 0)));
}

// A page costs three statements whatever its size. The ids are bound as one JSON array.
QList<Bookmark> LocalLibraryStore::bookmarks(const QList<qint64>& ids)
{
    const QByteArray wanted = encodeJSON(ids);
    QHash<qint64, SQLiteRow> rows;
    for (SQLiteRow& row :
         m_database.rows("SELECT b.*, a.id AS author_local_id, a.x_id AS author_x_id, a.name AS author_name, "
                         "a.username AS author_username, a.profile_image_url AS author_profile_image_url "
                         "FROM bookmarks b JOIN authors a ON a.id = b.author_id "
                         "WHERE b.id IN (SELECT value FROM json_each(?)) AND b.deleted_at IS NULL",
                         {wanted}))
        rows.emplace(row.integer("id").value_or(0), std::move(row));

    const BookmarkOrganization organization(m_database, wanted);
    QList<Bookmark> page;
    page.reserve(ids.size());
    for (const qint64 id : ids) {
        const auto row = rows.constFind(id);
        if (row == rows.cend())
            throw SQLiteStoreError::bookmarkNotFound();
        page.append(decodeBookmark(*row, organization.tagsOf(id), organization.folderOf(id)));
    }
    return page;
}

QList<qint64> LocalLibraryStore::allBookmarkIDs(LibraryFilter filter, LibrarySort sort)
{
    return idsOf(m_database.rows(idQuery(filter, sort)));
}

LibraryCounts LocalLibraryStore::libraryCounts()
{
    return m_index.counts();
}

} // namespace mirel
