#pragma once

#include "library/IndexEntry.h"
#include "library/LibrarySearchSubject.h"
#include "library/SQLiteConnection.h"

namespace mirel {

// One entry of an index as the subject of a search.
class IndexedBookmark final : public LibrarySearchSubject
{
public:
    // All outlive this object; `author` and `folder` are those of `entry`, `folder` may be null. A text that
    // the entry does not keep is read through `connection`, and asking for it may throw then.
    IndexedBookmark(const IndexEntry& entry, const IndexedAuthor& author, const IndexedFolder* folder,
                    SQLiteConnection& connection);

    [[nodiscard]] bool hasLabel(const QString& value) const override;
    [[nodiscard]] bool isInFolder(const QString& value) const override;
    [[nodiscard]] bool isByAuthor(const QString& value) const override;
    [[nodiscard]] bool hasAnyLabel() const override;
    [[nodiscard]] bool isArchived() const override;
    [[nodiscard]] bool isFavorite() const override;
    [[nodiscard]] bool isRead() const override;
    [[nodiscard]] bool hasNotes() const override;
    [[nodiscard]] bool hasPresentedMedia() const override;
    [[nodiscard]] bool hasPresentedLinks() const override;
    [[nodiscard]] LibraryContentType contentType() const override;
    [[nodiscard]] bool sourceURLContains(const QByteArray& needle) const override;
    [[nodiscard]] bool textContains(const QByteArray& needle) const override;
    [[nodiscard]] qint64 authorID() const override;
    [[nodiscard]] std::optional<qint64> folderID() const override;
    [[nodiscard]] bool hasLabelWithID(qint64 tagID) const override;
    [[nodiscard]] Instant createdAt() const override;

private:
    [[nodiscard]] const QList<SearchableField>& fields() const;

    const IndexEntry& m_entry;
    const IndexedAuthor& m_author;
    const IndexedFolder* m_folder;
    SQLiteConnection& m_connection;
    // What was read because the entry does not keep it.
    mutable std::optional<QList<SearchableField>> m_fields;
};

} // namespace mirel
