#include "library/LibraryEdits.h"

namespace mirel::testing {

namespace {

// Between which a library stays.
constexpr int fewBookmarks = 20;
constexpr int manyBookmarks = 50;

const QString color = QStringLiteral("#123456");

std::optional<QString> note(EditBench& bench)
{
    switch (bench.random().below(4)) {
    case 0:
        return std::nullopt;
    case 1:
        return QStringLiteral(" \n");
    case 2:
        return bench.posts().text();
    default:
        return bench.posts().phrase();
    }
}

std::optional<qint64> parent(EditBench& bench)
{
    return bench.random().chance(2) ? std::optional(bench.idIn("folders")) : std::nullopt;
}

QString query(EditBench& bench)
{
    static const QStringList queries{QStringLiteral("engine"), QStringLiteral("has:media"),
                                     QStringLiteral("label:work"), QStringLiteral("type:article OR is:read"),
                                     QStringLiteral("nowhere")};
    return bench.random().oneOf(queries);
}

void rollBack(EditBench& bench)
{
    SQLiteTransaction transaction(bench.connection());
    bench.connection().execute("UPDATE bookmarks SET note = 'rolled back', is_read = 1;"
                               "UPDATE tags SET slug = slug || 'x'; DELETE FROM bookmark_tags;");
}

} // namespace

EditBench::EditBench(const QString& path, unsigned int seed)
    : m_connection(path)
    , m_random(seed)
    , m_posts(seed + 1)
{
}

qint64 EditBench::idIn(const char* table)
{
    const auto row = m_connection.firstRow(QByteArray("SELECT MAX(id) AS id FROM ") + table);
    return m_random.below(static_cast<int>(row->integer("id").value_or(0)) + 2);
}

QList<qint64> EditBench::idsIn(const char* table)
{
    QList<qint64> ids;
    for (int i = m_random.below(4); i > 0; --i)
        ids.append(idIn(table));
    return ids;
}

SyncedBookmark EditBench::nextPost()
{
    const auto live = m_connection.firstRow("SELECT COUNT(*) AS n FROM bookmarks WHERE deleted_at IS NULL")
                          ->integer("n")
                          .value();
    const bool isNew = live < fewBookmarks || (live < manyBookmarks && m_random.chance(2));
    return m_posts.post(isNew ? m_postCount++ : m_random.below(m_postCount + 1));
}

const std::vector<LibraryEdit>& storeEdits()
{
    static const std::vector<LibraryEdit> edits{
        {"upsertFromX", 60,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.upsertFromX(bench.nextPost(), bench.posts().date());
         }},
        {"updateLocalState", 30,
         [](LocalLibraryStore& store, EditBench& bench) {
             RandomChoices& random = bench.random();
             store.updateLocalState(bench.idIn("bookmarks"), note(bench), random.chance(2), random.chance(3),
                                    random.chance(3));
         }},
        {"replaceThread", 10,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.replaceThread(bench.idIn("bookmarks"), bench.posts().thread());
         }},
        {"markThreadEnriched", 3,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.markThreadEnriched(bench.idIn("bookmarks"), bench.posts().date());
         }},
        {"updateMetrics", 3,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.updateMetrics(bench.idIn("bookmarks"), {.views = bench.random().below(1'000)});
         }},
        {"deleteBookmarkLocally", 10,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.deleteBookmarkLocally(bench.idIn("bookmarks"));
         }},
        {"createTag", 12,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.createTag(bench.posts().name(), color, Tag::Source::manual);
         }},
        {"renameTag", 10,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.renameTag(bench.idIn("tags"), bench.posts().name(), color);
         }},
        {"addTag", 40,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.addTag(bench.idIn("tags"), bench.idIn("bookmarks"));
         }},
        {"removeTag", 20,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.removeTag(bench.idIn("tags"), bench.idIn("bookmarks"));
         }},
        {"mergeTags", 5,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.mergeTags(bench.idsIn("tags"), bench.idIn("tags"));
         }},
        {"deleteTags", 3,
         [](LocalLibraryStore& store, EditBench& bench) { store.deleteTags(bench.idsIn("tags")); }},
        {"createFolder", 10,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.createFolder(bench.posts().name(), {}, parent(bench), Folder::Source::local, {});
         }},
        {"updateFolder", 10,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.updateFolder(bench.idIn("folders"), bench.posts().name(), {}, parent(bench));
         }},
        {"deleteFolder", 4,
         [](LocalLibraryStore& store, EditBench& bench) { store.deleteFolder(bench.idIn("folders")); }},
        {"assignFolder", 30,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.assignFolder(bench.idIn("folders"), bench.idIn("bookmarks"));
         }},
        {"unassignFolder", 12,
         [](LocalLibraryStore& store, EditBench& bench) { store.unassignFolder(bench.idIn("bookmarks")); }},
        {"createRule", 5,
         [](LocalLibraryStore& store, EditBench& bench) {
             const bool isForLabel = bench.random().chance(2);
             store.createRule(bench.posts().name(), query(bench),
                              isForLabel ? BookmarkRule::Action::tag : BookmarkRule::Action::folder,
                              bench.idIn(isForLabel ? "tags" : "folders"), bench.random().chance(2));
         }},
        {"setRuleEnabled", 3,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.setRuleEnabled(bench.idIn("bookmark_rules"), bench.random().chance(2));
         }},
        {"deleteRule", 3,
         [](LocalLibraryStore& store, EditBench& bench) { store.deleteRule(bench.idIn("bookmark_rules")); }},
        {"runRule", 5,
         [](LocalLibraryStore& store, EditBench& bench) { store.runRule(bench.idIn("bookmark_rules")); }},
        {"runEnabledRules", 3, [](LocalLibraryStore& store, EditBench&) { store.runEnabledRules(); }},
        {"createHighlight", 3,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.createHighlight(bench.idIn("bookmarks"), bench.posts().phrase(), {}, 0, 3, color,
                                   bench.posts().date());
         }},
        {"deleteHighlight", 3,
         [](LocalLibraryStore& store, EditBench& bench) { store.deleteHighlight(bench.idIn("highlights")); }},
        {"savePreferences", 3,
         [](LocalLibraryStore& store, EditBench& bench) {
             AppPreferences preferences;
             preferences.pageSize = 10 + bench.random().below(100);
             store.savePreferences(preferences);
         }},
        {"createSyncRun", 3,
         [](LocalLibraryStore& store, EditBench&) { store.createSyncRun(SyncRun::Kind::manual); }},
        {"updateSyncRun", 3,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.updateSyncRun(bench.idIn("sync_runs"), SyncRun::Status::running, 1, 2, 3, 4);
         }},
        {"appendSyncLogEntry", 3,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.appendSyncLogEntry(bench.idIn("sync_runs"), SyncLogEntry::Event::page,
                                      bench.posts().phrase());
         }},
        {"purgeAllLocalData", 1,
         [](LocalLibraryStore& store, EditBench& bench) {
             store.purgeAllLocalData();
             // The others have something to work on again.
             for (int i = 0; i < fewBookmarks; ++i)
                 store.upsertFromX(bench.nextPost(), bench.posts().date());
         }},
    };
    return edits;
}

const QStringList& readingOperations()
{
    static const QStringList operations{
        QStringLiteral("LocalLibraryStore"),
        QStringLiteral("bookmark"),
        QStringLiteral("allBookmarkTweetIDs"),
        QStringLiteral("tweetIDs"),
        QStringLiteral("listBookmarks"),
        QStringLiteral("allBookmarkIDs"),
        QStringLiteral("libraryCounts"),
        QStringLiteral("searchAllBookmarks"),
        QStringLiteral("matchingBookmarkIDs"),
        QStringLiteral("countBookmarks"),
        QStringLiteral("searchBookmarks"),
        QStringLiteral("searchBookmarksPage"),
        QStringLiteral("indexSize"),
        QStringLiteral("tags"),
        QStringLiteral("tagSummaries"),
        QStringLiteral("folders"),
        QStringLiteral("folderSummaries"),
        QStringLiteral("rules"),
        QStringLiteral("previewRule"),
        QStringLiteral("highlights"),
        QStringLiteral("authorSummaries"),
        QStringLiteral("preferences"),
        QStringLiteral("syncRun"),
        QStringLiteral("syncRuns"),
        QStringLiteral("syncLogEntries"),
        QStringLiteral("prepareSearch"),
    };
    return operations;
}

const std::vector<LibraryEdit>& foreignEdits()
{
    static const std::vector<LibraryEdit> edits{
        {"another process writes the state of a bookmark", 5,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().run("UPDATE bookmarks SET note = ?, is_favorite = 1 - is_favorite, "
                                    "is_archived = 1 - is_archived WHERE id = ?",
                                    {note(bench), bench.idIn("bookmarks")});
         }},
        {"another process moves a post in time", 3,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().run("UPDATE bookmarks SET post_created_at = ? WHERE id = ?",
                                    {bench.posts().date(), bench.idIn("bookmarks")});
         }},
        {"another process writes bytes that the store would not", 2,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().run("UPDATE bookmarks SET note = CAST(x'4E6F746500456E64EDA0BDFF' AS TEXT), "
                                    "content_title = CAST(x'C3' AS TEXT) WHERE id = ?",
                                    {bench.idIn("bookmarks")});
         }},
        {"another process renames an author", 3,
         [](LocalLibraryStore&, EditBench& bench) {
             const SyncedAuthor author = bench.posts().author();
             bench.connection().run("UPDATE authors SET name = ?, username = ? WHERE id = ?",
                                    {author.name, author.username, bench.idIn("authors")});
         }},
        {"another process erases a bookmark", 2,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().run("DELETE FROM bookmarks WHERE id = ?", {bench.idIn("bookmarks")});
         }},
        {"another process brings a deleted bookmark back", 3,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().run("UPDATE bookmarks SET deleted_at = NULL WHERE id = ?",
                                    {bench.idIn("bookmarks")});
         }},
        {"another process erases a label and leaves its links", 2,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().run("DELETE FROM tags WHERE id = ?", {bench.idIn("tags")});
         }},
        {"another process erases a folder and leaves what is in it", 2,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().run("DELETE FROM folders WHERE id = ?", {bench.idIn("folders")});
         }},
        {"another process erases an author and leaves the posts", 1,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().run("DELETE FROM authors WHERE id = ?", {bench.idIn("authors")});
         }},
        {"another process takes all labels off", 1,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().execute("DELETE FROM bookmark_tags");
         }},
        {"another process rolls back", 3, [](LocalLibraryStore&, EditBench& bench) { rollBack(bench); }},
        {"another process damages a bookmark", 2,
         [](LocalLibraryStore&, EditBench& bench) {
             static constexpr std::array statements{
                 "UPDATE bookmarks SET media_json = 'damaged' WHERE id = ?",
                 "UPDATE bookmarks SET quoted_json = '[]' WHERE id = ?",
                 "UPDATE bookmarks SET thread_json = '{' WHERE id = ?",
                 "UPDATE bookmarks SET source_url = '' WHERE id = ?"};
             bench.connection().run(bench.random().oneOf(statements), {bench.idIn("bookmarks")});
         }},
        {"another process repairs what is damaged", 6,
         [](LocalLibraryStore&, EditBench& bench) {
             bench.connection().execute(
                 "UPDATE bookmarks SET media_json = '[]' WHERE media_json = 'damaged';"
                 "UPDATE bookmarks SET quoted_json = 'null' WHERE quoted_json = '[]';"
                 "UPDATE bookmarks SET thread_json = '[]' WHERE thread_json = '{';"
                 "UPDATE bookmarks SET source_url = 'https://x.com/repaired' WHERE source_url = '';");
         }},
    };
    return edits;
}

} // namespace mirel::testing
