#include "library/BookmarkOrganization.h"

#include "library/RowDecoding.h"

namespace mirel {

BookmarkOrganization::BookmarkOrganization(SQLiteConnection& connection, const QByteArray& bookmarkIDs)
{
    connection.forEachRow(
        "SELECT bt.rowid AS link, bt.bookmark_id, t.id, t.name, t.slug, t.color_hex, t.source FROM tags t "
        "JOIN bookmark_tags bt ON bt.tag_id = t.id "
        "WHERE bt.bookmark_id IN (SELECT value FROM json_each(?)) ORDER BY t.name COLLATE NOCASE",
        {bookmarkIDs}, [this](const SQLiteRow& row) {
            m_labels[row.integer("bookmark_id").value_or(0)].append(
                {.link = row.integer("link").value_or(0), .tag = decodeTag(row)});
        });
    connection.forEachRow(
        "SELECT bf.bookmark_id, f.id, f.name, f.slug, f.description, f.parent_id, f.source, "
        "f.x_folder_id FROM folders f JOIN bookmark_folders bf ON bf.folder_id = f.id "
        "WHERE bf.bookmark_id IN (SELECT value FROM json_each(?))",
        {bookmarkIDs}, [this](const SQLiteRow& row) {
            m_folders.insert(row.integer("bookmark_id").value_or(0), decodeFolder(row));
        });
}

QList<BookmarkOrganization::Label> BookmarkOrganization::labelsOf(qint64 bookmarkID) const
{
    return m_labels.value(bookmarkID);
}

QList<Tag> BookmarkOrganization::tagsOf(qint64 bookmarkID) const
{
    QList<Tag> tags;
    for (const Label& label : labelsOf(bookmarkID))
        tags.append(label.tag);
    return tags;
}

std::optional<Folder> BookmarkOrganization::folderOf(qint64 bookmarkID) const
{
    const auto found = m_folders.constFind(bookmarkID);
    return found == m_folders.cend() ? std::nullopt : std::optional(*found);
}

} // namespace mirel
