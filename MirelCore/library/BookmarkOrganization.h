#pragma once

#include "library/SQLiteConnection.h"
#include "records/Folder.h"
#include "records/Tag.h"

#include <QHash>

namespace mirel {

// The labels and the folders of some bookmarks.
class BookmarkOrganization
{
public:
    // A label on a bookmark; `link` is the rowid in `bookmark_tags`.
    struct Label
    {
        qint64 link = 0;
        Tag tag;
    };

    // Reads those of the bookmarks whose ids are in the JSON array. Throws SQLiteStoreError.
    BookmarkOrganization(SQLiteConnection& connection, const QByteArray& bookmarkIDs);

    // By name.
    [[nodiscard]] QList<Label> labelsOf(qint64 bookmarkID) const;
    [[nodiscard]] QList<Tag> tagsOf(qint64 bookmarkID) const;
    [[nodiscard]] std::optional<Folder> folderOf(qint64 bookmarkID) const;

private:
    QHash<qint64, QList<Label>> m_labels;
    QHash<qint64, Folder> m_folders;
};

} // namespace mirel
