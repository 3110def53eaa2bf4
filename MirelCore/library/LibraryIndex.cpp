#include "library/LibraryIndex.h"

#include "library/BackgroundIndexLoading.h"
#include "library/IndexedBookmark.h"
#include "library/ParallelIndexLoading.h"

#include <numeric>

namespace mirel {

namespace {

IndexDepth depthFor(const LibrarySearch& search)
{
    using Test = LibrarySearchCondition::Test;
    const auto& conditions = search.expression().conditions();
    const bool needsPresentations =
        search.refinements().contentType ||
        std::any_of(conditions.cbegin(), conditions.cend(), [](const LibrarySearchCondition& condition) {
            return condition.test() == Test::contentType || condition.test() == Test::links;
        });
    return needsPresentations ? IndexDepth::presentations : IndexDepth::texts;
}

} // namespace

bool IndexEntry::isIn(LibraryFilter mailbox) const
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

LibraryIndex::LibraryIndex(SQLiteConnection& connection)
    : m_connection(connection)
    , m_changes(connection)
{
}

LibraryIndex::~LibraryIndex() = default;

QList<qint64> LibraryIndex::ids(LibraryFilter mailbox, LibrarySort sort, qint64 limit, qint64 offset)
{
    bringUpToDate(IndexDepth::outline);
    QList<qint64> ids;
    for (const quint32 place : order(sort)) {
        const IndexEntry& entry = m_entries[place];
        if (!entry.authorID || !entry.isIn(mailbox) || offset-- > 0)
            continue;
        if (ids.size() == limit)
            break;
        ids.append(entry.id);
    }
    return ids;
}

LibraryCounts LibraryIndex::counts()
{
    bringUpToDate(IndexDepth::outline);
    const auto count = [this](LibraryFilter mailbox) -> qint64 {
        return std::count_if(m_entries.cbegin(), m_entries.cend(),
                             [mailbox](const IndexEntry& entry) { return entry.isIn(mailbox); });
    };
    return {
        .all = count(LibraryFilter::all),
        .inbox = count(LibraryFilter::inbox),
        .read = count(LibraryFilter::read),
        .favorites = count(LibraryFilter::favorites),
        .archive = count(LibraryFilter::archive),
    };
}

QList<qint64> LibraryIndex::matchingIDs(LibraryFilter mailbox, const LibrarySearch& search, LibrarySort sort)
{
    const IndexDepth depth = depthFor(search);
    bringUpToDate(depth);
    QList<qint64> ids;
    for (const quint32 place : order(sort)) {
        const IndexEntry& entry = m_entries[place];
        // One that is less deep was deleted by another process between its outline and the rest.
        if (!entry.isIn(mailbox) || entry.depth < depth)
            continue;
        if (entry.failure)
            std::rethrow_exception(entry.failure);
        if (matches(search, entry))
            ids.append(entry.id);
    }
    return ids;
}

bool LibraryIndex::matches(const LibrarySearch& search, const IndexEntry& entry)
{
    const auto author = m_authors.constFind(*entry.authorID);
    Q_ASSERT(author != m_authors.cend());
    const auto folder = entry.folderID ? m_folders.constFind(*entry.folderID) : m_folders.cend();
    return search.matches(
        IndexedBookmark(entry, *author, folder == m_folders.cend() ? nullptr : &*folder, m_connection));
}

void LibraryIndex::forget()
{
    m_version.reset();
    m_depth = IndexDepth::outline;
    m_entries = {};
    m_places = {};
    m_authors = {};
    m_folders = {};
    m_labels = {};
    m_textBudget = IndexTextBudget();
    m_orders = {};
}

void LibraryIndex::bringUpToDate(IndexDepth depth)
{
    // Read before the bookmarks: what another connection writes meanwhile is noticed by the next call.
    const qint64 version = m_changes.version();
    const ChangedRows changed = m_changes.take();
    const bool isLoaded = m_version == version;
    m_version.reset();
    if (!isLoaded)
        loadOutline();
    else if (!changed.isEmpty())
        takeIn(changed);
    if (depth > m_depth)
        deepen(depth);
    m_version = version;
}

void LibraryIndex::loadOutline()
{
    forget();
    m_entries = loadOutlines(m_connection);
    m_entries.shrink_to_fit();
    m_places.reserve(static_cast<qsizetype>(m_entries.size()));
    quint32 place = 0;
    for (const IndexEntry& entry : m_entries)
        m_places.insert(entry.id, place++);
    m_textBudget.setBookmarks(place);
}

void LibraryIndex::deepen(IndexDepth depth)
{
    load(shallowerThan(depth, std::numeric_limits<qsizetype>::max()), depth);
    dropLongestTexts();
    m_depth = depth;
}

QList<qint64> LibraryIndex::shallowerThan(IndexDepth depth, qsizetype limit) const
{
    QList<qint64> ids;
    for (const IndexEntry& entry : m_entries) {
        if (ids.size() == limit)
            break;
        if (entry.depth < depth && entry.authorID)
            ids.append(entry.id);
    }
    return ids;
}

bool LibraryIndex::prepare(IndexDepth depth, qsizetype limit)
{
    bringUpToDate(IndexDepth::outline);
    if (m_depth >= depth)
        return true;
    const QList<qint64> ids = shallowerThan(depth, limit);
    load(ids, depth);
    return ids.size() < limit;
}

void LibraryIndex::beginLoadingAhead()
{
    // Otherwise the reader could keep the file from being switched to that mode.
    const auto mode = m_connection.firstRow("PRAGMA journal_mode");
    const bool canReadBesideWriter = mode && mode->text("journal_mode") == QStringLiteral("wal");
    if (!canReadBesideWriter || QThread::idealThreadCount() < 2)
        return;
    // What was written so far is in what will be read.
    forget();
    static_cast<void>(m_changes.take());
    m_loadingAhead.emplace(LoadingAhead{
        .version = m_changes.version(),
        .loading = std::make_unique<BackgroundIndexLoading>(m_connection.path(), IndexDepth::presentations)});
}

void LibraryIndex::endLoadingAhead()
{
    if (!m_loadingAhead)
        return;
    const LoadingAhead ahead = *std::exchange(m_loadingAhead, std::nullopt);
    std::vector<IndexBatch> batches = ahead.loading->finish();
    m_version.reset();
    // What another connection wrote meanwhile is not known row by row.
    if (batches.empty() || m_changes.version() != ahead.version)
        return;
    const ChangedRows changed = m_changes.take();
    loadOutline();
    for (IndexBatch& batch : batches)
        add(std::move(batch));
    if (!changed.isEmpty())
        takeIn(changed);
    m_version = ahead.version;
}

void LibraryIndex::takeIn(const ChangedRows& rows)
{
    QSet<qint64> affected = affectedBookmarks(rows);
    const QList<qint64> ids = affected.values();
    for (IndexEntry& entry : loadOutlines(m_connection, ids)) {
        affected.remove(entry.id);
        put(std::move(entry));
    }
    for (const qint64 id : affected)
        remove(id);
    if (m_depth > IndexDepth::outline)
        load(ids, m_depth);
    dropLongestTexts();
    if (!rows.authors.isEmpty())
        m_orders[static_cast<size_t>(LibrarySort::author)] = {};
}

QSet<qint64> LibraryIndex::affectedBookmarks(const ChangedRows& rows)
{
    QSet<qint64> affected = rows.bookmarks + rows.bookmarkFolders;
    for (const IndexEntry& entry : m_entries) {
        // One without an author may have got it.
        const bool isAffected =
            (entry.authorID ? rows.authors.contains(*entry.authorID) : !rows.authors.isEmpty()) ||
            (entry.folderID && rows.folders.contains(*entry.folderID)) ||
            std::any_of(entry.labels.cbegin(), entry.labels.cend(), [&rows](const IndexedLabel& label) {
                return rows.bookmarkTags.contains(label.link);
            });
        if (isAffected)
            affected.insert(entry.id);
    }
    const auto addLinked = [&](const QByteArray& query, const QSet<qint64>& ids) {
        if (ids.isEmpty())
            return;
        m_connection.forEachRow(query, {encodeJSON(ids.values())}, [&affected](const SQLiteRow& row) {
            affected.insert(row.integer("bookmark_id").value_or(0));
        });
    };
    // Links that are new, or that took the rowid of one that was removed.
    addLinked("SELECT bookmark_id FROM bookmark_tags WHERE rowid IN (SELECT value FROM json_each(?))",
              rows.bookmarkTags);
    // Also those that were there before their label.
    addLinked("SELECT bookmark_id FROM bookmark_tags WHERE tag_id IN (SELECT value FROM json_each(?))",
              rows.tags);
    return affected;
}

void LibraryIndex::load(const QList<qint64>& ids, IndexDepth depth)
{
    ParallelIndexLoading(m_connection, ids, depth).run([this](IndexBatch batch) { add(std::move(batch)); });
}

void LibraryIndex::add(IndexBatch batch)
{
    m_authors.insert(batch.authors);
    m_folders.insert(batch.folders);
    for (IndexEntry& entry : batch.entries) {
        shareLabels(entry);
        m_textBudget.limit(entry);
        put(std::move(entry));
    }
}

void LibraryIndex::shareLabels(IndexEntry& entry)
{
    for (IndexedLabel& label : entry.labels) {
        auto& known = m_labels[label.names->id];
        if (known && *known == *label.names)
            label.names = known;
        else
            known = label.names;
    }
}

void LibraryIndex::put(IndexEntry entry)
{
    const auto known = m_places.constFind(entry.id);
    m_textBudget.add(entry);
    if (known == m_places.cend()) {
        m_orders = {};
        m_places.insert(entry.id, static_cast<quint32>(m_entries.size()));
        // push_back() would double the memory.
        if (m_entries.size() == m_entries.capacity())
            m_entries.reserve(m_entries.size() * 9 / 8 + 16);
        m_entries.push_back(std::move(entry));
        m_textBudget.setBookmarks(static_cast<qint64>(m_entries.size()));
        return;
    }
    IndexEntry& place = m_entries[*known];
    if (place.createdAt != entry.createdAt || entry.createdAt == IndexEntry::afterEveryDate ||
        place.authorID != entry.authorID)
        m_orders = {};
    m_textBudget.remove(place);
    place = std::move(entry);
}

void LibraryIndex::remove(qint64 id)
{
    const auto found = m_places.constFind(id);
    if (found == m_places.cend())
        return;
    const quint32 place = *found;
    m_places.erase(found);
    m_orders = {};
    m_textBudget.remove(m_entries[place]);
    if (place + 1 < m_entries.size()) {
        m_entries[place] = std::move(m_entries.back());
        m_places[m_entries[place].id] = place;
    }
    m_entries.pop_back();
    m_textBudget.setBookmarks(static_cast<qint64>(m_entries.size()));
}

// The short texts that came after long ones may have gone beyond the budget.
void LibraryIndex::dropLongestTexts()
{
    if (!m_textBudget.isExceeded())
        return;
    std::vector<IndexEntry*> longest;
    for (IndexEntry& entry : m_entries) {
        if (entry.text.size() > IndexTextBudget::shortText)
            longest.push_back(&entry);
    }
    std::sort(longest.begin(), longest.end(),
              [](const auto* a, const auto* b) { return a->text.size() > b->text.size(); });
    for (IndexEntry* const entry : longest) {
        if (!m_textBudget.isExceeded())
            return;
        m_textBudget.remove(*entry);
        entry->text = {};
    }
}

const std::vector<quint32>& LibraryIndex::order(LibrarySort sort)
{
    std::vector<quint32>& known = m_orders[static_cast<size_t>(sort)];
    if (known.size() == m_entries.size())
        return known;
    // Kept only once it is sorted, which may fail.
    std::vector<quint32> places(m_entries.size());
    std::iota(places.begin(), places.end(), 0U);
    const bool hasMistypedDates = std::any_of(m_entries.cbegin(), m_entries.cend(), [](const auto& entry) {
        return entry.createdAt == IndexEntry::afterEveryDate;
    });
    const auto mistyped = hasMistypedDates ? loadRanksOfMistypedDates(m_connection) : QHash<qint64, qint64>();
    const auto isNewer = [&](quint32 a, quint32 b) {
        const auto key = [&](const IndexEntry& entry) {
            return std::tuple(entry.createdAt, mistyped.value(entry.id), entry.id);
        };
        return key(m_entries[a]) > key(m_entries[b]);
    };
    switch (sort) {
    case LibrarySort::newest:
        std::sort(places.begin(), places.end(), isNewer);
        break;
    case LibrarySort::oldest:
        std::sort(places.begin(), places.end(), [&isNewer](quint32 a, quint32 b) { return isNewer(b, a); });
        break;
    case LibrarySort::author: {
        const QHash<qint64, qint64> ranks = loadAuthorRanks(m_connection);
        std::sort(places.begin(), places.end(), [&](quint32 a, quint32 b) {
            const qint64 left = ranks.value(m_entries[a].authorID.value_or(0));
            const qint64 right = ranks.value(m_entries[b].authorID.value_or(0));
            return left == right ? isNewer(a, b) : left < right;
        });
        break;
    }
    }
    known = std::move(places);
    return known;
}

LibraryIndex::Size LibraryIndex::size() const
{
    Size size{.bookmarks = static_cast<qint64>(m_entries.size()),
              .bytes = static_cast<qint64>(m_entries.capacity() * sizeof(IndexEntry)) + m_textBudget.bytes()};
    for (const IndexEntry& entry : m_entries)
        size.bytes += static_cast<qint64>(entry.labels.capacity() * sizeof(IndexedLabel));
    for (const auto& places : m_orders)
        size.bytes += static_cast<qint64>(places.capacity() * sizeof(quint32));
    size.bytes += m_places.capacity() * static_cast<qint64>(sizeof(qint64) + sizeof(quint32));
    size.bytes += m_authors.capacity() * static_cast<qint64>(sizeof(qint64) + sizeof(IndexedAuthor));
    for (const IndexedAuthor& author : m_authors)
        size.bytes += 2 * (author.username.capacity() + author.name.capacity());
    return size;
}

} // namespace mirel
