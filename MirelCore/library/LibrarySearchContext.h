#pragma once

#include "library/LibrarySearchSubject.h"
#include "presentation/PresentationFacts.h"

#include <functional>

namespace mirel {

// One loaded bookmark as the subject of a search. Its presentation is read when it is first asked for and
// then kept, and so is its searchable text.
class LibrarySearchContext final : public LibrarySearchSubject
{
public:
    using ReadPresentation = std::function<PresentationFacts(const Bookmark&)>;

    // The bookmark must outlive the context. `readPresentation` is called at most once.
    explicit LibrarySearchContext(const Bookmark& bookmark, ReadPresentation readPresentation = {});

    [[nodiscard]] const Bookmark& bookmark() const { return m_bookmark; }
    [[nodiscard]] const PresentationFacts& presentation() const;
    // What the presentation says of the quoted content. Without a quoted post there is none, and nothing is
    // read.
    [[nodiscard]] const std::optional<PresentationFacts::Quoted>& quotedContent() const;

    [[nodiscard]] bool isByUsername(const QString& value) const;
    [[nodiscard]] bool isByAuthorNamedLike(const QString& value) const;

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
    const Bookmark& m_bookmark;
    ReadPresentation m_readPresentation;
    mutable std::optional<PresentationFacts> m_presentation;
    mutable std::optional<QByteArray> m_searchableText;
};

} // namespace mirel
