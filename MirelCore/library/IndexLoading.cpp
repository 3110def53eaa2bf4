#include "library/IndexLoading.h"

#include "library/BookmarkOrganization.h"
#include "library/LibrarySearchContext.h"
#include "library/RowDecoding.h"
#include "library/SearchableText.h"
#include "support/Error.h"

namespace mirel {

namespace {

IndexEntry outlineOf(const SQLiteRow& row)
{
    return {
        .id = row.integer("id").value_or(0),
        .authorID = row.integer("author_local_id"),
        .createdAt = row.instant("post_created_at").value_or(IndexEntry::afterEveryDate),
        .folderID = row.integer("folder_id"),
        .isRead = row.boolean("is_read"),
        .isFavorite = row.boolean("is_favorite"),
        .isArchived = row.boolean("is_archived"),
    };
}

void describe(IndexEntry& entry, const Bookmark& bookmark, bool readsPresentation)
{
    const LibrarySearchContext context(bookmark);
    entry.hasNotes = context.hasNotes();
    entry.hasPresentedMedia = context.hasPresentedMedia();
    entry.text = IndexedText(searchableFields(bookmark, context.quotedContent()));
    if (!readsPresentation)
        return;
    entry.hasPresentedLinks = context.hasPresentedLinks();
    entry.content = LibraryContentFacts::of(bookmark, context.presentation());
}

// Some bookmarks, as far as a search needs them.
class BookmarkReader
{
public:
    BookmarkReader(SQLiteConnection& connection, const QList<qint64>& ids)
        : m_connection(connection)
        , m_ids(encodeJSON(ids))
        , m_organization(connection, m_ids)
    {
    }

    // Hands over the row of each, without the raw JSON where `readsAllRawJSON` is false and nothing is
    // quoted.
    void forEach(bool readsAllRawJSON, const std::function<void(const SQLiteRow&)>& visit)
    {
        m_connection.forEachRow(
            "SELECT b.id, b.tweet_id, b.text, b.content_title, b.content_text, b.source_url, "
            "b.post_created_at, b.synced_at, b.media_json, b.quoted_json, b.thread_json, b.note, b.is_read, "
            "b.is_favorite, b.is_archived, bf.folder_id, "
            "CASE WHEN ?1 OR b.quoted_json <> 'null' THEN b.raw_json END AS raw_json, "
            "a.id AS author_local_id, a.x_id AS author_x_id, a.name AS author_name, "
            "a.username AS author_username FROM bookmarks b JOIN authors a ON a.id = b.author_id "
            "LEFT JOIN bookmark_folders bf ON bf.bookmark_id = b.id "
            "WHERE b.id IN (SELECT value FROM json_each(?2)) AND b.deleted_at IS NULL",
            {readsAllRawJSON, m_ids}, visit);
    }

    [[nodiscard]] Bookmark decode(const SQLiteRow& row) const
    {
        const qint64 id = row.integer("id").value_or(0);
        return decodeBookmark(row, m_organization.tagsOf(id), m_organization.folderOf(id));
    }
    // The bookmarks share the names of their labels.
    [[nodiscard]] std::vector<IndexedLabel> labelsOf(qint64 bookmarkID)
    {
        std::vector<IndexedLabel> labels;
        for (const auto& [link, tag] : m_organization.labelsOf(bookmarkID)) {
            auto& names = m_names[tag.id];
            if (!names) {
                names = std::make_shared<IndexedLabel::Names>(IndexedLabel::Names{
                    .id = tag.id, .slug = searchKey(tag.slug), .name = searchKey(tag.name)});
            }
            labels.push_back({.link = link, .names = names});
        }
        return labels;
    }

private:
    SQLiteConnection& m_connection;
    QByteArray m_ids;
    BookmarkOrganization m_organization;
    QHash<qint64, std::shared_ptr<const IndexedLabel::Names>> m_names;
};

void add(IndexBatch& batch, BookmarkReader& reader, const SQLiteRow& row, IndexDepth depth)
{
    IndexEntry& entry = batch.entries.emplace_back(outlineOf(row));
    entry.depth = depth;
    try {
        const Bookmark bookmark = reader.decode(row);
        entry.labels = reader.labelsOf(entry.id);
        describe(entry, bookmark, depth == IndexDepth::presentations);
        const Author& author = bookmark.author;
        batch.authors.insert(author.id,
                             {.username = searchKey(author.username), .name = searchKey(author.name)});
        if (const auto& folder = bookmark.folder)
            batch.folders.insert(folder->id,
                                 {.slug = searchKey(folder->slug), .name = searchKey(folder->name)});
    } catch (const Error&) {
        entry.failure = std::current_exception();
    }
}

// The outlines of the live bookmarks `b` for which `condition` is true.
std::vector<IndexEntry> outlinesWhere(SQLiteConnection& connection, const QByteArray& condition,
                                      const SQLiteValues& values)
{
    std::vector<IndexEntry> entries;
    connection.forEachRow(
        "SELECT b.id, b.post_created_at, b.is_read, b.is_favorite, b.is_archived, bf.folder_id, "
        "a.id AS author_local_id FROM bookmarks b LEFT JOIN authors a ON a.id = b.author_id "
        "LEFT JOIN bookmark_folders bf ON bf.bookmark_id = b.id WHERE b.deleted_at IS NULL AND " +
            condition,
        values, [&entries](const SQLiteRow& row) { entries.push_back(outlineOf(row)); });
    return entries;
}

// The numbers in `place`, by `id`.
QHash<qint64, qint64> loadPlaces(SQLiteConnection& connection, const QByteArray& query)
{
    QHash<qint64, qint64> places;
    connection.forEachRow(query, {}, [&places](const SQLiteRow& row) {
        places.insert(row.integer("id").value_or(0), row.integer("place").value_or(0));
    });
    return places;
}

} // namespace

std::vector<IndexEntry> loadOutlines(SQLiteConnection& connection)
{
    return outlinesWhere(connection, "1 = 1", {});
}

std::vector<IndexEntry> loadOutlines(SQLiteConnection& connection, const QList<qint64>& ids)
{
    return outlinesWhere(connection, "b.id IN (SELECT value FROM json_each(?))", {encodeJSON(ids)});
}

IndexBatch loadIndexBatch(SQLiteConnection& connection, const QList<qint64>& ids, IndexDepth depth)
{
    IndexBatch batch;
    BookmarkReader reader(connection, ids);
    reader.forEach(depth == IndexDepth::presentations,
                   [&](const SQLiteRow& row) { add(batch, reader, row, depth); });
    return batch;
}

QList<SearchableField> loadSearchableFields(SQLiteConnection& connection, qint64 bookmarkID)
{
    QList<SearchableField> fields;
    BookmarkReader reader(connection, {bookmarkID});
    reader.forEach(false, [&](const SQLiteRow& row) {
        const Bookmark bookmark = reader.decode(row);
        fields = searchableFields(bookmark, LibrarySearchContext(bookmark).quotedContent());
    });
    return fields;
}

QHash<qint64, qint64> loadAuthorRanks(SQLiteConnection& connection)
{
    return loadPlaces(connection, "SELECT id, dense_rank() OVER (ORDER BY username COLLATE NOCASE) AS place "
                                  "FROM authors");
}

QHash<qint64, qint64> loadRanksOfMistypedDates(SQLiteConnection& connection)
{
    return loadPlaces(connection, "SELECT id, dense_rank() OVER (ORDER BY post_created_at) AS place "
                                  "FROM bookmarks WHERE typeof(post_created_at) NOT IN ('real', 'integer')");
}

} // namespace mirel
