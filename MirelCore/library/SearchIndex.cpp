#include "library/SearchIndex.h"

#include "library/IndexedBookmark.h"
#include "library/ParallelSearchLoading.h"

#include <numeric>

namespace mirel {

namespace {

// Of the 2 KB that a bookmark may cost, on average: a short text is kept always, a long one while all of them
// together stay within their own share.
constexpr qsizetype shortTextSize = 900;
constexpr qint64 longTextBytesPerBookmark = 900;

bool needsPresentation(const LibrarySearch& search)
{
    using Test = LibrarySearchCondition::Test;
    const auto& conditions = search.expression().conditions();
    return search.refinements().contentType ||
           std::any_of(conditions.cbegin(), conditions.cend(), [](const LibrarySearchCondition& condition) {
               return condition.test() == Test::contentType || condition.test() == Test::links;
           });
}

QList<qint64> integers(SQLiteConnection& connection, const QByteArray& sql, SQLiteValues values = {})
{
    QList<qint64> integers;
    connection.forEachRow(sql, values, [&integers](const SQLiteRow& row) {
        if (const auto integer = row.integer("id"))
            integers.append(*integer);
    });
    return integers;
}

} // namespace

bool SearchEntry::isIn(LibraryFilter mailbox) const
{
    switch (mailbox) {
    case LibraryFilter::all:
        return true;
    case LibraryFilter::inbox:
        return !isArchived && !isFavorite && !folderID;
    case LibraryFilter::read:
        return isRead;
    case LibraryFilter::favorites:
        return isFavorite;
    case LibraryFilter::archive:
        return isArchived;
    }
    Q_UNREACHABLE();
}

SearchIndex::SearchIndex(SQLiteConnection& connection)
    : m_connection(connection)
    , m_changes(connection)
{
}

QList<qint64> SearchIndex::matchingIDs(LibraryFilter mailbox, const LibrarySearch& search, LibrarySort sort)
{
    bringUpToDate(needsPresentation(search) ? SearchPresentations::ofAll
                                            : SearchPresentations::ofQuotingPosts);
    const IndexedBookmark::ReadText readText = [this](qint64 id) { return this->readText(id); };
    QList<qint64> ids;
    for (const quint32 place : order(sort)) {
        const SearchEntry& entry = m_entries[place];
        if (!entry.isIn(mailbox))
            continue;
        if (entry.failure)
            std::rethrow_exception(entry.failure);
        const auto folder = entry.folderID ? m_folders.constFind(*entry.folderID) : m_folders.cend();
        const IndexedBookmark bookmark(entry, *m_authors.constFind(entry.authorID),
                                       folder == m_folders.cend() ? nullptr : &*folder, readText);
        if (search.matches(bookmark))
            ids.append(entry.id);
    }
    return ids;
}

void SearchIndex::forget()
{
    m_version.reset();
    m_presentations = SearchPresentations::ofQuotingPosts;
    m_entries = {};
    m_places = {};
    m_authors = {};
    m_folders = {};
    m_labels = {};
    m_longTextBytes = 0;
    m_orders = {};
}

void SearchIndex::bringUpToDate(SearchPresentations presentations)
{
    // Read before the bookmarks: what another connection writes meanwhile is noticed by the next search.
    const qint64 version = m_changes.version();
    const bool isMissingPresentations =
        presentations == SearchPresentations::ofAll && m_presentations == SearchPresentations::ofQuotingPosts;
    const ChangedRows changed = m_changes.take();
    if (m_version != version || isMissingPresentations) {
        forget();
        m_presentations = presentations;
        loadAll();
        m_version = version;
        return;
    }
    if (changed.isEmpty())
        return;
    // Until all is taken in, nothing in memory can be trusted.
    m_version.reset();
    reload(affectedBookmarks(changed));
    if (!changed.authors.isEmpty())
        m_orders = {};
    m_version = version;
}

void SearchIndex::loadAll()
{
    const QList<qint64> ids =
        integers(m_connection, "SELECT b.id FROM bookmarks b JOIN authors a ON a.id = b.author_id "
                               "WHERE b.deleted_at IS NULL");
    m_entries.reserve(static_cast<size_t>(ids.size()));
    m_places.reserve(ids.size());
    m_longTextBudget = ids.size() * longTextBytesPerBookmark;
    ParallelSearchLoading(m_connection, ids, m_presentations).run([this](SearchBatch batch) {
        add(std::move(batch));
    });
}

void SearchIndex::reload(const QSet<qint64>& ids)
{
    QSet<qint64> missing = ids;
    const QList<qint64> list = ids.values();
    ParallelSearchLoading(m_connection, list, m_presentations).run([&](SearchBatch batch) {
        for (const SearchEntry& entry : batch.entries)
            missing.remove(entry.id);
        add(std::move(batch));
    });
    for (const qint64 id : missing)
        remove(id);
}

QSet<qint64> SearchIndex::affectedBookmarks(const ChangedRows& rows)
{
    QSet<qint64> affected = rows.bookmarks + rows.bookmarkFolders;
    for (const SearchEntry& entry : m_entries) {
        const bool isAffected =
            rows.authors.contains(entry.authorID) ||
            (entry.folderID && rows.folders.contains(*entry.folderID)) ||
            std::any_of(entry.labels.cbegin(), entry.labels.cend(), [&rows](const SearchLabel& label) {
                return rows.tags.contains(label.names->id) || rows.bookmarkTags.contains(label.link);
            });
        if (isAffected)
            affected.insert(entry.id);
    }
    // A link that is new, or that took the rowid of one that was removed.
    for (const qint64 id : integers(m_connection,
                                    "SELECT bookmark_id AS id FROM bookmark_tags "
                                    "WHERE rowid IN (SELECT value FROM json_each(?))",
                                    {encodeJSON(rows.bookmarkTags.values())}))
        affected.insert(id);
    return affected;
}

void SearchIndex::add(SearchBatch batch)
{
    m_authors.insert(batch.authors);
    m_folders.insert(batch.folders);
    for (SearchEntry& entry : batch.entries) {
        shareLabels(entry);
        put(std::move(entry));
    }
}

void SearchIndex::shareLabels(SearchEntry& entry)
{
    for (SearchLabel& label : entry.labels) {
        auto& known = m_labels[label.names->id];
        if (known && *known == *label.names)
            label.names = known;
        else
            known = label.names;
    }
}

void SearchIndex::put(SearchEntry entry)
{
    const auto known = m_places.constFind(entry.id);
    if (known != m_places.cend()) {
        SearchEntry& place = m_entries[*known];
        if (place.createdAt != entry.createdAt || place.authorID != entry.authorID)
            m_orders = {};
        letGoOfText(place);
        keepText(entry);
        place = std::move(entry);
        return;
    }
    m_orders = {};
    m_places.insert(entry.id, static_cast<quint32>(m_entries.size()));
    keepText(entry);
    m_entries.push_back(std::move(entry));
}

void SearchIndex::remove(qint64 id)
{
    const auto found = m_places.constFind(id);
    if (found == m_places.cend())
        return;
    const quint32 place = *found;
    m_places.erase(found);
    m_orders = {};
    letGoOfText(m_entries[place]);
    if (place + 1 < m_entries.size()) {
        m_entries[place] = std::move(m_entries.back());
        m_places[m_entries[place].id] = place;
    }
    m_entries.pop_back();
}

void SearchIndex::keepText(SearchEntry& entry)
{
    if (entry.text.size() <= shortTextSize)
        return;
    if (m_longTextBytes + entry.text.size() > m_longTextBudget)
        entry.text = QByteArray();
    m_longTextBytes += entry.text.size();
}

void SearchIndex::letGoOfText(const SearchEntry& entry)
{
    if (entry.text.size() > shortTextSize)
        m_longTextBytes -= entry.text.size();
}

QByteArray SearchIndex::readText(qint64 bookmarkID)
{
    const SearchBatch batch =
        loadSearchBatch(m_connection, {bookmarkID}, SearchPresentations::ofQuotingPosts);
    return batch.entries.empty() ? QByteArray("") : batch.entries.front().text;
}

const std::vector<quint32>& SearchIndex::order(LibrarySort sort)
{
    std::vector<quint32>& places = m_orders[static_cast<size_t>(sort)];
    if (places.size() == m_entries.size())
        return places;
    places.resize(m_entries.size());
    std::iota(places.begin(), places.end(), 0U);
    const auto isNewer = [this](quint32 a, quint32 b) {
        const SearchEntry& left = m_entries[a];
        const SearchEntry& right = m_entries[b];
        return std::tie(left.createdAt, left.id) > std::tie(right.createdAt, right.id);
    };
    switch (sort) {
    case LibrarySort::newest:
        std::sort(places.begin(), places.end(), isNewer);
        break;
    case LibrarySort::oldest:
        std::sort(places.begin(), places.end(), [&isNewer](quint32 a, quint32 b) { return isNewer(b, a); });
        break;
    case LibrarySort::author:
        std::sort(places.begin(), places.end(), [&](quint32 a, quint32 b) {
            const QByteArray left = m_authors.value(m_entries[a].authorID).sortKey;
            const QByteArray right = m_authors.value(m_entries[b].authorID).sortKey;
            return left == right ? isNewer(a, b) : left < right;
        });
        break;
    }
    return places;
}

SearchIndex::Size SearchIndex::size() const
{
    Size size{.bookmarks = static_cast<qint64>(m_entries.size()),
              .bytes = static_cast<qint64>(m_entries.capacity() * sizeof(SearchEntry))};
    for (const SearchEntry& entry : m_entries)
        size.bytes +=
            entry.text.capacity() + static_cast<qint64>(entry.labels.capacity() * sizeof(SearchLabel));
    for (const auto& places : m_orders)
        size.bytes += static_cast<qint64>(places.capacity() * sizeof(quint32));
    size.bytes += m_places.capacity() * static_cast<qint64>(sizeof(qint64) + sizeof(quint32));
    size.bytes += m_authors.capacity() * static_cast<qint64>(sizeof(qint64) + sizeof(SearchAuthor));
    for (const SearchAuthor& author : m_authors)
        size.bytes += 2 * (author.username.capacity() + author.name.capacity()) + author.sortKey.capacity();
    return size;
}

} // namespace mirel
