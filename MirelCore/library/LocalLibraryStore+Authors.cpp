#include "library/LocalLibraryStore.h"

#include "library/OrganizationNames.h"
#include "library/RowDecoding.h"

namespace mirel {

QList<AuthorSummary> LocalLibraryStore::authorSummaries(const QString& search)
{
    const QString pattern = searchPattern(search);
    QList<AuthorSummary> summaries;
    for (const SQLiteRow& row :
         m_database.rows("SELECT a.id, a.x_id, a.name, a.username, a.profile_image_url, "
                         "COUNT(b.id) AS bookmark_count FROM authors a "
                         "JOIN bookmarks b ON b.author_id = a.id AND b.deleted_at IS NULL "
                         "WHERE lower(a.name) LIKE ? OR lower(a.username) LIKE ? "
                         "GROUP BY a.id ORDER BY bookmark_count DESC, a.username COLLATE NOCASE",
                         {pattern, pattern}))
        summaries.append(decodeAuthorSummary(row));
    return summaries;
}

} // namespace mirel
