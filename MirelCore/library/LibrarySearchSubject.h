#pragma once

#include "library/LibraryContentType.h"
#include "support/Instant.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace mirel {

// What a search can ask of one bookmark. It holds facts only: which of them a condition asks for, and what it
// makes of the answer, is decided by LibrarySearchCondition and LibrarySearch. Asking
// throws only where an implementation says so.
//
// Values are lower-cased and not empty; what they are compared with is as searchKey() makes it. Needles are
// as searchBytes() makes them.
class LibrarySearchSubject
{
public:
    LibrarySearchSubject() = default;
    LibrarySearchSubject(const LibrarySearchSubject&) = delete;
    LibrarySearchSubject& operator=(const LibrarySearchSubject&) = delete;
    virtual ~LibrarySearchSubject() = default;

    // A label's slug or name is `value`.
    [[nodiscard]] virtual bool hasLabel(const QString& value) const = 0;
    // The folder's slug or name is `value`.
    [[nodiscard]] virtual bool isInFolder(const QString& value) const = 0;
    // The author's username is `value`, or the name contains it.
    [[nodiscard]] virtual bool isByAuthor(const QString& value) const = 0;

    [[nodiscard]] virtual bool hasAnyLabel() const = 0;
    [[nodiscard]] virtual bool isArchived() const = 0;
    [[nodiscard]] virtual bool isFavorite() const = 0;
    [[nodiscard]] virtual bool isRead() const = 0;
    // A note that is more than white space.
    [[nodiscard]] virtual bool hasNotes() const = 0;

    // Media of the post, of the post that it quotes, or of what is shown of that one.
    [[nodiscard]] virtual bool hasPresentedMedia() const = 0;
    // Links out of X in what is shown of the post or of the one that it quotes.
    [[nodiscard]] virtual bool hasPresentedLinks() const = 0;
    [[nodiscard]] virtual LibraryContentType contentType() const = 0;

    // The address of the post, lower-cased, contains `needle`.
    [[nodiscard]] virtual bool sourceURLContains(const QByteArray& needle) const = 0;
    // The searchable text contains `needle`.
    [[nodiscard]] virtual bool textContains(const QByteArray& needle) const = 0;

    // Rows of the library.
    [[nodiscard]] virtual qint64 authorID() const = 0;
    // Absent when the bookmark is in no folder.
    [[nodiscard]] virtual std::optional<qint64> folderID() const = 0;
    [[nodiscard]] virtual bool hasLabelWithID(qint64 tagID) const = 0;
    // When the post was written.
    [[nodiscard]] virtual Instant createdAt() const = 0;
};

} // namespace mirel
