#pragma once

#include "library/LibrarySearchSubject.h"
#include "library/SearchEntry.h"

#include <QHash>

namespace mirel {

class SearchIndex;

// One entry of an index as the subject of a search.
class IndexedBookmark final : public LibrarySearchSubject
{
public:
    // Reads the searchable text of a bookmark whose entry does not keep it; may throw.
    using ReadText = std::function<QByteArray(qint64 bookmarkID)>;

    // All outlive this object, `author` and `folder` are those of `entry`. `folder` may be null.
    IndexedBookmark(const SearchEntry& entry, const SearchAuthor& author, const SearchFolder* folder,
                    const ReadText& readText);

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
    [[nodiscard]] const QByteArray& text() const;

    const SearchEntry& m_entry;
    const SearchAuthor& m_author;
    const SearchFolder* m_folder;
    const ReadText& m_readText;
    // What was read because the entry does not keep it.
    mutable QByteArray m_text;
};

} // namespace mirel
