#include "library/SearchLoading.h"

#include "library/LibrarySearchContext.h"
#include "library/RowDecoding.h"
#include "library/SearchableText.h"
#include "support/Error.h"

namespace mirel {

namespace {

// The labels of some bookmarks, in two forms: for the index and for decoding a bookmark.
struct LoadedLabels
{
    QHash<qint64, std::vector<SearchLabel>> entries;
    QHash<qint64, QList<Tag>> tags;
};

LoadedLabels loadLabels(SQLiteConnection& connection, const QByteArray& ids)
{
    LoadedLabels labels;
    QHash<qint64, std::shared_ptr<const SearchLabel::Names>> names;
    connection.forEachRow(
        "SELECT bt.rowid AS link, bt.bookmark_id, t.id, t.name, t.slug, t.color_hex, t.source FROM tags t "
        "JOIN bookmark_tags bt ON bt.tag_id = t.id "
        "WHERE bt.bookmark_id IN (SELECT value FROM json_each(?)) ORDER BY t.name COLLATE NOCASE",
        {ids}, [&](const SQLiteRow& row) {
            const qint64 bookmarkID = row.integer("bookmark_id").value_or(0);
            const Tag tag = decodeTag(row);
            auto& shared = names[tag.id];
            if (!shared) {
                shared = std::make_shared<SearchLabel::Names>(SearchLabel::Names{
                    .id = tag.id, .slug = searchKey(tag.slug), .name = searchKey(tag.name)});
            }
            labels.entries[bookmarkID].push_back({.link = row.integer("link").value_or(0), .names = shared});
            labels.tags[bookmarkID].append(tag);
        });
    return labels;
}

QHash<qint64, Folder> loadFolders(SQLiteConnection& connection, const QByteArray& ids)
{
    QHash<qint64, Folder> folders;
    connection.forEachRow(
        "SELECT bf.bookmark_id, f.id, f.name, f.slug, f.description, f.parent_id, f.source, "
        "f.x_folder_id FROM folders f JOIN bookmark_folders bf ON bf.folder_id = f.id "
        "WHERE bf.bookmark_id IN (SELECT value FROM json_each(?))",
        {ids}, [&folders](const SQLiteRow& row) {
            folders.insert(row.integer("bookmark_id").value_or(0), decodeFolder(row));
        });
    return folders;
}

void setText(SearchEntry& entry, const Bookmark& bookmark,
             const std::optional<PresentationFacts::Quoted>& quoted)
{
    for (const SearchableField& field : searchableFields(bookmark, quoted)) {
        if (!entry.text.isNull())
            entry.text += ' ';
        if (field.field == SearchField::sourceURL) {
            entry.addressBegin = entry.text.size();
            entry.addressLength = field.bytes.size();
        }
        entry.text += field.bytes;
    }
    entry.text.squeeze();
}

void describe(SearchEntry& entry, const Bookmark& bookmark, bool isPresentationKnown)
{
    const LibrarySearchContext context(bookmark);
    entry.authorID = bookmark.author.id;
    entry.createdAt = bookmark.createdAt;
    entry.hasNotes = context.hasNotes();
    entry.isPresentationKnown = isPresentationKnown;
    const PresentationFacts presentation = isPresentationKnown ? context.presentation() : PresentationFacts();
    entry.hasPresentedLinks = isPresentationKnown && context.hasPresentedLinks();
    entry.hasPresentedMedia = context.hasPresentedMedia();
    entry.content = LibraryContentFacts::of(bookmark, presentation);
    setText(entry, bookmark, presentation.quoted);
}

class BatchLoader
{
public:
    BatchLoader(SQLiteConnection& connection, const QList<qint64>& ids, SearchPresentations presentations)
        : m_connection(connection)
        , m_ids(encodeJSON(ids))
        , m_presentations(presentations)
        , m_labels(loadLabels(connection, m_ids))
        , m_folders(loadFolders(connection, m_ids))
    {
    }

    SearchBatch load()
    {
        m_connection.forEachRow(
            "SELECT b.id, b.tweet_id, b.conversation_id, b.text, b.content_title, b.content_text, "
            "b.language, b.source_url, b.post_created_at, b.synced_at, b.media_json, b.quoted_json, "
            "b.thread_json, b.note, b.is_read, b.is_favorite, b.is_archived, "
            "CASE WHEN ?1 OR b.quoted_json <> 'null' THEN b.raw_json END AS raw_json, "
            "a.id AS author_local_id, a.x_id AS author_x_id, a.name AS author_name, "
            "a.username AS author_username FROM bookmarks b JOIN authors a ON a.id = b.author_id "
            "WHERE b.id IN (SELECT value FROM json_each(?2)) AND b.deleted_at IS NULL",
            {m_presentations == SearchPresentations::ofAll, m_ids},
            [this](const SQLiteRow& row) { add(row); });
        return std::move(m_batch);
    }

private:
    void add(const SQLiteRow& row)
    {
        SearchEntry& entry = m_batch.entries.emplace_back();
        entry.id = row.integer("id").value_or(0);
        entry.isRead = row.boolean("is_read");
        entry.isFavorite = row.boolean("is_favorite");
        entry.isArchived = row.boolean("is_archived");
        const auto folder = m_folders.constFind(entry.id);
        if (folder != m_folders.cend()) {
            entry.folderID = folder->id;
            m_batch.folders.insert(folder->id,
                                   {.slug = searchKey(folder->slug), .name = searchKey(folder->name)});
        }
        entry.labels = m_labels.entries.value(entry.id);
        try {
            const Bookmark bookmark =
                decodeBookmark(row, m_labels.tags.value(entry.id),
                               folder == m_folders.cend() ? std::nullopt : std::optional(*folder));
            m_batch.authors.insert(bookmark.author.id,
                                   {.username = searchKey(bookmark.author.username),
                                    .name = searchKey(bookmark.author.name),
                                    .sortKey = row.utf8("author_username").value_or(QByteArray()).toLower()});
            describe(entry, bookmark,
                     m_presentations == SearchPresentations::ofAll || bookmark.quotedPost.has_value());
        } catch (const Error&) {
            entry.failure = std::current_exception();
        }
    }

    SQLiteConnection& m_connection;
    QByteArray m_ids;
    SearchPresentations m_presentations;
    LoadedLabels m_labels;
    QHash<qint64, Folder> m_folders;
    SearchBatch m_batch;
};

} // namespace

SearchBatch loadSearchBatch(SQLiteConnection& connection, const QList<qint64>& ids,
                            SearchPresentations presentations)
{
    return BatchLoader(connection, ids, presentations).load();
}

} // namespace mirel
