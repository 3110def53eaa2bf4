#include "library/IndexedBookmark.h"

#include <string_view>

namespace mirel {

namespace {

bool contains(QByteArrayView text, const QByteArray& needle)
{
    return std::string_view(text.data(), static_cast<size_t>(text.size()))
               .find(std::string_view(needle.constData(), static_cast<size_t>(needle.size()))) !=
           std::string_view::npos;
}

} // namespace

IndexedBookmark::IndexedBookmark(const SearchEntry& entry, const SearchAuthor& author,
                                 const SearchFolder* folder, const ReadText& readText)
    : m_entry(entry)
    , m_author(author)
    , m_folder(folder)
    , m_readText(readText)
{
}

bool IndexedBookmark::hasLabel(const QString& value) const
{
    return std::any_of(m_entry.labels.cbegin(), m_entry.labels.cend(), [&value](const SearchLabel& label) {
        return label.names->slug == value || label.names->name == value;
    });
}

bool IndexedBookmark::isInFolder(const QString& value) const
{
    return m_folder && (m_folder->slug == value || m_folder->name == value);
}

bool IndexedBookmark::isByAuthor(const QString& value) const
{
    return m_author.username == value || m_author.name.contains(value);
}

bool IndexedBookmark::hasAnyLabel() const
{
    return !m_entry.labels.empty();
}

bool IndexedBookmark::isArchived() const
{
    return m_entry.isArchived;
}

bool IndexedBookmark::isFavorite() const
{
    return m_entry.isFavorite;
}

bool IndexedBookmark::isRead() const
{
    return m_entry.isRead;
}

bool IndexedBookmark::hasNotes() const
{
    return m_entry.hasNotes;
}

bool IndexedBookmark::hasPresentedMedia() const
{
    return m_entry.hasPresentedMedia;
}

bool IndexedBookmark::hasPresentedLinks() const
{
    Q_ASSERT(m_entry.isPresentationKnown);
    return m_entry.hasPresentedLinks;
}

LibraryContentType IndexedBookmark::contentType() const
{
    Q_ASSERT(m_entry.isPresentationKnown);
    return m_entry.content.contentType();
}

bool IndexedBookmark::sourceURLContains(const QByteArray& needle) const
{
    return contains(QByteArrayView(text()).sliced(m_entry.addressBegin, m_entry.addressLength), needle);
}

bool IndexedBookmark::textContains(const QByteArray& needle) const
{
    return contains(text(), needle);
}

qint64 IndexedBookmark::authorID() const
{
    return m_entry.authorID;
}

std::optional<qint64> IndexedBookmark::folderID() const
{
    return m_entry.folderID;
}

bool IndexedBookmark::hasLabelWithID(qint64 tagID) const
{
    return std::any_of(m_entry.labels.cbegin(), m_entry.labels.cend(),
                       [tagID](const SearchLabel& label) { return label.names->id == tagID; });
}

Instant IndexedBookmark::createdAt() const
{
    return m_entry.createdAt;
}

const QByteArray& IndexedBookmark::text() const
{
    if (!m_entry.text.isNull())
        return m_entry.text;
    if (m_text.isNull())
        m_text = m_readText(m_entry.id);
    return m_text;
}

} // namespace mirel
