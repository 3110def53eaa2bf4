#include "library/LibrarySearchContext.h"

#include "library/LibraryContentFacts.h"
#include "library/SearchableText.h"
#include "presentation/PostPresentation.h"
#include "support/Text.h"

namespace mirel {

LibrarySearchContext::LibrarySearchContext(const Bookmark& bookmark, ReadPresentation readPresentation)
    : m_bookmark(bookmark)
    , m_readPresentation(std::move(readPresentation))
{
}

const PresentationFacts& LibrarySearchContext::presentation() const
{
    if (!m_presentation)
        m_presentation =
            m_readPresentation ? m_readPresentation(m_bookmark) : PresentationFacts::of(m_bookmark);
    return *m_presentation;
}

const std::optional<PresentationFacts::Quoted>& LibrarySearchContext::quotedContent() const
{
    static const std::optional<PresentationFacts::Quoted> none;
    return m_bookmark.quotedPost ? presentation().quoted : none;
}

bool LibrarySearchContext::hasLabel(const QString& value) const
{
    return std::any_of(m_bookmark.tags.cbegin(), m_bookmark.tags.cend(), [&value](const Tag& tag) {
        return searchKey(tag.slug) == value || searchKey(tag.name) == value;
    });
}

bool LibrarySearchContext::isInFolder(const QString& value) const
{
    const auto& folder = m_bookmark.folder;
    return folder && (searchKey(folder->slug) == value || searchKey(folder->name) == value);
}

bool LibrarySearchContext::isByAuthor(const QString& value) const
{
    return isByUsername(value) || isByAuthorNamedLike(value);
}

bool LibrarySearchContext::isByUsername(const QString& value) const
{
    return searchKey(m_bookmark.author.username) == value;
}

bool LibrarySearchContext::isByAuthorNamedLike(const QString& value) const
{
    return searchKey(m_bookmark.author.name).contains(value);
}

bool LibrarySearchContext::hasAnyLabel() const
{
    return !m_bookmark.tags.isEmpty();
}

bool LibrarySearchContext::isArchived() const
{
    return m_bookmark.isArchived;
}

bool LibrarySearchContext::isFavorite() const
{
    return m_bookmark.isFavorite;
}

bool LibrarySearchContext::isRead() const
{
    return m_bookmark.isRead;
}

bool LibrarySearchContext::hasNotes() const
{
    return nilIfBlank(m_bookmark.note).has_value();
}

bool LibrarySearchContext::hasPresentedMedia() const
{
    if (!m_bookmark.media.isEmpty())
        return true;
    const auto& quotedPost = m_bookmark.quotedPost;
    return quotedPost && (!quotedPost->media.isEmpty() || (quotedContent() && quotedContent()->hasMedia));
}

bool LibrarySearchContext::hasPresentedLinks() const
{
    return presentation().hasExternalLinks || (quotedContent() && !quotedContent()->externalLinks.isEmpty());
}

LibraryContentType LibrarySearchContext::contentType() const
{
    // A title or a text decides alone, and spares reading the presentation.
    const bool isDecided = m_bookmark.contentTitle || m_bookmark.contentText;
    const PresentationFacts nothing;
    return LibraryContentFacts::of(m_bookmark, isDecided ? nothing : presentation()).contentType();
}

bool LibrarySearchContext::sourceURLContains(const QByteArray& needle) const
{
    return searchBytes(absoluteString(m_bookmark.sourceURL)).contains(needle);
}

bool LibrarySearchContext::textContains(const QByteArray& needle) const
{
    if (!m_searchableText)
        m_searchableText = searchableText(m_bookmark, quotedContent());
    return m_searchableText->contains(needle);
}

qint64 LibrarySearchContext::authorID() const
{
    return m_bookmark.author.id;
}

std::optional<qint64> LibrarySearchContext::folderID() const
{
    return m_bookmark.folder ? std::optional(m_bookmark.folder->id) : std::nullopt;
}

bool LibrarySearchContext::hasLabelWithID(qint64 tagID) const
{
    return std::any_of(m_bookmark.tags.cbegin(), m_bookmark.tags.cend(),
                       [tagID](const Tag& tag) { return tag.id == tagID; });
}

Instant LibrarySearchContext::createdAt() const
{
    return m_bookmark.createdAt;
}

} // namespace mirel
