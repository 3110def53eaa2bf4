#include "library/IndexedBookmark.h"

#include "library/IndexLoading.h"

namespace mirel {

IndexedBookmark::IndexedBookmark(const IndexEntry& entry, const IndexedAuthor& author,
                                 const IndexedFolder* folder, SQLiteConnection& connection)
    : m_entry(entry)
    , m_author(author)
    , m_folder(folder)
    , m_connection(connection)
{
}

bool IndexedBookmark::hasLabel(const QString& value) const
{
    return std::any_of(m_entry.labels.cbegin(), m_entry.labels.cend(), [&value](const IndexedLabel& label) {
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
    Q_ASSERT(m_entry.depth == IndexDepth::presentations);
    return m_entry.hasPresentedLinks;
}

LibraryContentType IndexedBookmark::contentType() const
{
    Q_ASSERT(m_entry.depth == IndexDepth::presentations);
    return m_entry.content.contentType();
}

bool IndexedBookmark::sourceURLContains(const QByteArray& needle) const
{
    if (m_entry.text.canFind(needle))
        return m_entry.text.addressContains(needle);
    return std::any_of(fields().cbegin(), fields().cend(), [&needle](const SearchableField& field) {
        return field.field == SearchField::sourceURL && field.bytes.contains(needle);
    });
}

bool IndexedBookmark::textContains(const QByteArray& needle) const
{
    if (m_entry.text.canFind(needle))
        return m_entry.text.contains(needle);
    return joined(fields()).contains(needle);
}

qint64 IndexedBookmark::authorID() const
{
    return m_entry.authorID.value_or(0);
}

std::optional<qint64> IndexedBookmark::folderID() const
{
    // That of a folder which is missing is none.
    return m_folder ? m_entry.folderID : std::nullopt;
}

bool IndexedBookmark::hasLabelWithID(qint64 tagID) const
{
    return std::any_of(m_entry.labels.cbegin(), m_entry.labels.cend(),
                       [tagID](const IndexedLabel& label) { return label.names->id == tagID; });
}

Instant IndexedBookmark::createdAt() const
{
    return m_entry.createdAt;
}

const QList<SearchableField>& IndexedBookmark::fields() const
{
    if (!m_fields)
        m_fields = loadSearchableFields(m_connection, m_entry.id);
    return *m_fields;
}

} // namespace mirel
