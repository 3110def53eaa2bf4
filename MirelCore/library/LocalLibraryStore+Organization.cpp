#include "library/LocalLibraryStore.h"

#include "library/OrganizationError.h"
#include "library/OrganizationNames.h"
#include "library/RowDecoding.h"
#include "library/SQLiteStoreError.h"
#include "support/Text.h"

namespace mirel {

Tag LocalLibraryStore::createTag(const QString& name, const QString& colorHex, Tag::Source source)
{
    const QString stored = storedName(name);
    m_database.run("INSERT INTO tags (name, slug, color_hex, source) VALUES (?, ?, ?, ?) "
                   "ON CONFLICT(name) DO UPDATE SET color_hex = excluded.color_hex",
                   {stored, slug(stored), colorHex, rawValue(source)});
    const auto row = m_database.firstRow(
        "SELECT id, name, slug, color_hex, source FROM tags WHERE name = ? COLLATE NOCASE", {stored});
    if (!row) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The label could not be loaded."));
    }
    return decodeTag(*row);
}

QList<Tag> LocalLibraryStore::tags(const QString& search)
{
    const QString pattern = searchPattern(search);
    QList<Tag> tags;
    for (const SQLiteRow& row :
         m_database.rows("SELECT id, name, slug, color_hex, source FROM tags "
                         "WHERE lower(name) LIKE ? OR lower(slug) LIKE ? ORDER BY name COLLATE NOCASE",
                         {pattern, pattern}))
        tags.append(decodeTag(row));
    return tags;
}

QList<TagSummary> LocalLibraryStore::tagSummaries(const QString& search)
{
    const QString pattern = searchPattern(search);
    QList<TagSummary> summaries;
    for (const SQLiteRow& row :
         m_database.rows("SELECT t.id, t.name, t.slug, t.color_hex, t.source, "
                         "COUNT(DISTINCT bt.bookmark_id) AS bookmark_count, "
                         "COUNT(DISTINCT CASE WHEN b.is_read = 0 AND b.is_archived = 0 "
                         "THEN bt.bookmark_id END) AS unread_count "
                         "FROM tags t LEFT JOIN bookmark_tags bt ON bt.tag_id = t.id "
                         "LEFT JOIN bookmarks b ON b.id = bt.bookmark_id "
                         "WHERE lower(t.name) LIKE ? OR lower(t.slug) LIKE ? "
                         "GROUP BY t.id ORDER BY t.name COLLATE NOCASE",
                         {pattern, pattern}))
        summaries.append(decodeTagSummary(row));
    return summaries;
}

Tag LocalLibraryStore::renameTag(qint64 id, const QString& name, const QString& colorHex)
{
    const QString clean = cleanName(name);
    m_database.run("UPDATE tags SET name = ?, slug = ?, color_hex = ? WHERE id = ?",
                   {clean, slug(clean), colorHex, id});
    const auto row =
        m_database.firstRow("SELECT id, name, slug, color_hex, source FROM tags WHERE id = ?", {id});
    if (!row) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The label no longer exists."));
    }
    return decodeTag(*row);
}

void LocalLibraryStore::addTag(qint64 tagID, qint64 bookmarkID)
{
    m_database.run("INSERT OR IGNORE INTO bookmark_tags (bookmark_id, tag_id) VALUES (?, ?)",
                   {bookmarkID, tagID});
}

void LocalLibraryStore::removeTag(qint64 tagID, qint64 bookmarkID)
{
    m_database.run("DELETE FROM bookmark_tags WHERE bookmark_id = ? AND tag_id = ?", {bookmarkID, tagID});
}

void LocalLibraryStore::mergeTags(const QList<qint64>& sourceIDs, qint64 targetID)
{
    SQLiteTransaction transaction(m_database);
    for (const qint64 sourceID : QSet<qint64>(sourceIDs.cbegin(), sourceIDs.cend())) {
        if (sourceID == targetID)
            continue;
        m_database.run("INSERT OR IGNORE INTO bookmark_tags (bookmark_id, tag_id) "
                       "SELECT bookmark_id, ? FROM bookmark_tags WHERE tag_id = ?",
                       {targetID, sourceID});
        m_database.run("DELETE FROM tags WHERE id = ?", {sourceID});
    }
    transaction.commit();
}

void LocalLibraryStore::deleteTags(const QList<qint64>& ids)
{
    for (const qint64 id : QSet<qint64>(ids.cbegin(), ids.cend()))
        m_database.run("DELETE FROM tags WHERE id = ?", {id});
}

Folder LocalLibraryStore::createFolder(const QString& name, const std::optional<QString>& description,
                                       std::optional<qint64> parentID, Folder::Source source,
                                       const std::optional<QString>& xFolderID)
{
    const QString stored = storedName(name);
    m_database.run("INSERT INTO folders (name, slug, description, parent_id, source, x_folder_id) "
                   "VALUES (?, ?, ?, ?, ?, ?) ON CONFLICT(name) DO UPDATE SET "
                   "description = COALESCE(excluded.description, folders.description), "
                   "parent_id = COALESCE(excluded.parent_id, folders.parent_id), "
                   "x_folder_id = COALESCE(excluded.x_folder_id, folders.x_folder_id)",
                   {stored, slug(stored), description, parentID, rawValue(source), xFolderID});
    const auto row = m_database.firstRow("SELECT id, name, slug, description, parent_id, source, x_folder_id "
                                         "FROM folders WHERE name = ? COLLATE NOCASE",
                                         {stored});
    if (!row) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The folder could not be loaded."));
    }
    return decodeFolder(*row);
}

QList<Folder> LocalLibraryStore::folders(const QString& search)
{
    const QString pattern = searchPattern(search);
    QList<Folder> folders;
    for (const SQLiteRow& row :
         m_database.rows("SELECT id, name, slug, description, parent_id, source, x_folder_id FROM folders "
                         "WHERE lower(name) LIKE ? OR lower(slug) LIKE ? ORDER BY name COLLATE NOCASE",
                         {pattern, pattern}))
        folders.append(decodeFolder(row));
    return folders;
}

QList<FolderSummary> LocalLibraryStore::folderSummaries(const QString& search)
{
    const QString pattern = searchPattern(search);
    QList<FolderSummary> summaries;
    for (const SQLiteRow& row :
         m_database.rows("SELECT f.id, f.name, f.slug, f.description, f.parent_id, f.source, f.x_folder_id, "
                         "COUNT(DISTINCT bf.bookmark_id) AS bookmark_count, "
                         "COUNT(DISTINCT CASE WHEN b.is_read = 0 AND b.is_archived = 0 "
                         "THEN bf.bookmark_id END) AS unread_count "
                         "FROM folders f LEFT JOIN bookmark_folders bf ON bf.folder_id = f.id "
                         "LEFT JOIN bookmarks b ON b.id = bf.bookmark_id "
                         "WHERE lower(f.name) LIKE ? OR lower(f.slug) LIKE ? "
                         "GROUP BY f.id ORDER BY f.name COLLATE NOCASE",
                         {pattern, pattern}))
        summaries.append(decodeFolderSummary(row));
    return summaries;
}

Folder LocalLibraryStore::updateFolder(qint64 id, const QString& name,
                                       const std::optional<QString>& description,
                                       std::optional<qint64> parentID)
{
    if (parentID && folderWouldCycle(id, *parentID))
        throw OrganizationError(OrganizationError::Case::folderCycle);
    const QString clean = cleanName(name);
    m_database.run("UPDATE folders SET name = ?, slug = ?, description = ?, parent_id = ? WHERE id = ?",
                   {clean, slug(clean), description, parentID, id});
    const auto row = m_database.firstRow(
        "SELECT id, name, slug, description, parent_id, source, x_folder_id FROM folders WHERE id = ?", {id});
    if (!row) {
        throw SQLiteStoreError(SQLiteStoreError::Case::notFound,
                               QStringLiteral("The folder no longer exists."));
    }
    return decodeFolder(*row);
}

bool LocalLibraryStore::folderWouldCycle(qint64 folderID, qint64 parentID)
{
    QSet<qint64> seen;
    std::optional<qint64> ancestor = parentID;
    while (ancestor) {
        if (*ancestor == folderID)
            return true;
        // Folders that were stored in a circle without this one.
        if (seen.contains(*ancestor))
            return false;
        seen.insert(*ancestor);
        const auto row = m_database.firstRow("SELECT parent_id FROM folders WHERE id = ?", {*ancestor});
        ancestor = row ? row->integer("parent_id") : std::nullopt;
    }
    return false;
}

void LocalLibraryStore::deleteFolder(qint64 id)
{
    m_database.run("DELETE FROM folders WHERE id = ?", {id});
}

void LocalLibraryStore::assignFolder(qint64 folderID, qint64 bookmarkID)
{
    m_database.run("INSERT INTO bookmark_folders (bookmark_id, folder_id) VALUES (?, ?) "
                   "ON CONFLICT(bookmark_id) DO UPDATE SET folder_id = excluded.folder_id",
                   {bookmarkID, folderID});
}

void LocalLibraryStore::unassignFolder(qint64 bookmarkID)
{
    m_database.run("DELETE FROM bookmark_folders WHERE bookmark_id = ?", {bookmarkID});
}

} // namespace mirel
