#pragma once

#include "library/LibraryFilter.h"
#include "library/LibraryIndex.h"
#include "library/LibraryRefinements.h"
#include "library/SQLiteConnection.h"
#include "records/AppPreferences.h"
#include "records/Bookmark.h"
#include "records/BookmarkHighlight.h"
#include "records/BookmarkRule.h"
#include "records/LibrarySummaries.h"
#include "records/SyncRun.h"
#include "records/SyncedBookmark.h"
#include "support/Instant.h"

#include <QHash>
#include <QSet>

namespace mirel {

// When the bookmarks are read for searching.
enum class SearchPreparation {
    // At the first search, or when prepareSearch() is called.
    onDemand,
    // On another processor while the library is being opened, which takes a while itself: the first search
    // finds all of it done, or most.
    whileOpening
};

// The library on disk: the only road to the database. An ordinary synchronous class, used on one thread at
// a time. Every operation throws SQLiteStoreError, and where it reads a JSON column, JSONCodingError.
//
// A live bookmark is one that was not deleted; a deleted one keeps its row, hidden from every operation
// here but the upsert.
class LocalLibraryStore
{
public:
    // Opens or creates the library and brings its schema up to date. Throws what the opening or the failing
    // step throws; there is no store then. `now` stamps what the store itself dates.
    explicit LocalLibraryStore(const QString& databasePath, Clock now = Instant::now,
                               const FileManager& fileManager = FileManager::standard(),
                               SearchPreparation preparation = SearchPreparation::onDemand);

    // Deletes every row of every table. The file stays.
    void purgeAllLocalData();

    // Stores what a sync brought: the columns that belong to X are written, those of the user (note, read,
    // favorite and archive state, labels, folder, thread) stay. Returns the stored bookmark; for one that
    // was deleted here, its columns are written all the same and SQLiteStoreError::notFound is thrown.
    Bookmark upsertFromX(const SyncedBookmark& synced, Instant syncedAt);

    // Throws SQLiteStoreError::notFound when there is no live bookmark with that id.
    [[nodiscard]] Bookmark bookmark(qint64 id);

    // Absent when there is no live bookmark of that post.
    [[nodiscard]] std::optional<Bookmark> bookmark(const QString& tweetID);

    // X's ids of all live bookmarks.
    [[nodiscard]] QSet<QString> allBookmarkTweetIDs();

    // X's ids of all live bookmarks, by the bookmark's own.
    [[nodiscard]] QHash<qint64, QString> tweetIDs();

    // Writes the user's own state. The first marking as read is remembered as `reviewedAt`. A bookmark that
    // does not exist is no error.
    void updateLocalState(qint64 id, const std::optional<QString>& note, bool isRead, bool isFavorite,
                          bool isArchived);

    // Stores a thread, earliest post first, and marks the bookmark enriched now.
    void replaceThread(qint64 bookmarkID, QList<ThreadPost> posts);

    // Records that the thread was asked for at `instant` and nothing was found.
    void markThreadEnriched(qint64 bookmarkID, Instant instant);

    void updateMetrics(qint64 bookmarkID, const PostMetrics& metrics);

    // Hides the bookmark for good.
    void deleteBookmarkLocally(qint64 id);

    // One page of a mailbox. `limit` is clamped to 1 to 500, `offset` to at least 0.
    [[nodiscard]] QList<Bookmark> listBookmarks(LibraryFilter filter, qint64 limit, qint64 offset,
                                                LibrarySort sort);

    // The ids of a whole mailbox, in order.
    [[nodiscard]] QList<qint64> allBookmarkIDs(LibraryFilter filter, LibrarySort sort);

    [[nodiscard]] LibraryCounts libraryCounts();

    // What of a mailbox passes the refinements, in order. Every bookmark of the mailbox counts as loaded: one
    // that cannot be fails the whole search, wherever it stands and whatever is looked for.
    [[nodiscard]] QList<Bookmark> searchAllBookmarks(LibraryFilter filter,
                                                     const LibraryRefinements& refinements, LibrarySort sort);
    [[nodiscard]] QList<qint64> matchingBookmarkIDs(LibraryFilter filter,
                                                    const LibraryRefinements& refinements, LibrarySort sort);
    [[nodiscard]] qint64 countBookmarks(LibraryFilter filter, const LibraryRefinements& refinements);
    // One page of it. `limit` is clamped to 1 to 500, `offset` to at least 0.
    [[nodiscard]] QList<Bookmark> searchBookmarks(LibraryFilter filter, const LibraryRefinements& refinements,
                                                  qint64 limit, qint64 offset, LibrarySort sort);
    [[nodiscard]] BookmarkSearchPage searchBookmarksPage(LibraryFilter filter,
                                                         const LibraryRefinements& refinements, qint64 limit,
                                                         qint64 offset, LibrarySort sort);

    // Does a part of what the first search would have to do, of some milliseconds. Returns whether nothing is
    // left.
    bool prepareSearch();

    // What listing and searching keep in memory.
    [[nodiscard]] LibraryIndex::Size indexSize() const;

    // Labels. Names are trimmed and cut to 100 characters. A name that another label has, and one that
    // folds to the slug of another, is SQLiteStoreError::execute. A search looks for a part of the name or
    // of the slug, with "%" and "_" as wildcards; an empty one returns everything, by name.

    // The label of that name, new or, in whatever case its name is, given the new color. An empty name is
    // stored too.
    Tag createTag(const QString& name, const QString& colorHex, Tag::Source source);
    [[nodiscard]] QList<Tag> tags(const QString& search = {});
    // Deleted bookmarks count as well. Unread is what is neither read nor archived.
    [[nodiscard]] QList<TagSummary> tagSummaries(const QString& search = {});
    // Throws OrganizationError::invalidName for a blank name and SQLiteStoreError::notFound for an unknown
    // label.
    Tag renameTag(qint64 id, const QString& name, const QString& colorHex);
    // A link that is there already, and one that is not there to be removed, is no error.
    void addTag(qint64 tagID, qint64 bookmarkID);
    void removeTag(qint64 tagID, qint64 bookmarkID);
    // Gives the target the bookmarks of the sources and deletes those, all or nothing. The target may be
    // among them. Rules are not repointed.
    void mergeTags(const QList<qint64>& sourceIDs, qint64 targetID);
    // One after the other: a failure leaves those deleted that were.
    void deleteTags(const QList<qint64>& ids);

    // Folders. Names and searches are as with labels.

    // The folder of that name, new or with what the call gives replaced; an absent value erases nothing,
    // and the source stays. Nothing is checked for cycles. An empty name is stored too.
    Folder createFolder(const QString& name, const std::optional<QString>& description,
                        std::optional<qint64> parentID, Folder::Source source,
                        const std::optional<QString>& xFolderID);
    [[nodiscard]] QList<Folder> folders(const QString& search = {});
    // Counted as with labels.
    [[nodiscard]] QList<FolderSummary> folderSummaries(const QString& search = {});
    // Replaces the description and the parent, absent ones too. Throws OrganizationError::folderCycle when
    // the parent is the folder or stands below it, OrganizationError::invalidName for a blank name and
    // SQLiteStoreError::notFound for an unknown folder.
    Folder updateFolder(qint64 id, const QString& name, const std::optional<QString>& description,
                        std::optional<qint64> parentID);
    // Its bookmarks stay, without a folder, and the folders in it move to the top.
    void deleteFolder(qint64 id);
    // Takes the bookmark out of the folder it was in.
    void assignFolder(qint64 folderID, qint64 bookmarkID);
    void unassignFolder(qint64 bookmarkID);

    // Rules. A search looks for a part of the name or of the query, as with labels.

    // The query is stored unchanged, and the target is not looked for. Throws OrganizationError::invalidName
    // for a blank name, and SQLiteStoreError::execute when another rule has it.
    BookmarkRule createRule(const QString& name, const QString& query, BookmarkRule::Action action,
                            qint64 targetID, bool isEnabled);
    [[nodiscard]] QList<BookmarkRule> rules(const QString& search = {});
    void setRuleEnabled(qint64 id, bool enabled);
    // What the rule filed stays so.
    void deleteRule(qint64 id);
    // The 500 newest bookmarks that the rule matches. Throws SQLiteStoreError::notFound for an unknown rule.
    [[nodiscard]] QList<Bookmark> previewRule(qint64 id);
    // Files what previewRule() returns and notes the run in the rule. Returns the number of matches, changed
    // by the run or not. A failure on the way leaves filed what was, and nothing noted. Throws
    // OrganizationError::missingTarget when the label or the folder is gone, and as previewRule() does.
    qint64 runRule(qint64 id);
    // Runs the enabled rules by name up to the first that fails. Returns the sum of their matches.
    qint64 runEnabledRules();

    // Stores the first 500 characters of the trimmed selection and the first 1,200 of the context. A
    // negative start becomes 0; the end is at least the start that was passed. Throws
    // OrganizationError::invalidName for a blank selection.
    BookmarkHighlight createHighlight(qint64 bookmarkID, const QString& selectedText,
                                      const std::optional<QString>& contextText, qint64 startOffset,
                                      qint64 endOffset, const QString& colorHex, Instant createdAt);
    // Those of one bookmark or all, newest first.
    [[nodiscard]] QList<BookmarkHighlight> highlights(std::optional<qint64> bookmarkID = {});
    void deleteHighlight(qint64 id);

    // The authors of live bookmarks whose name or username holds `search`, as with labels. Those with the
    // most bookmarks first, then by username.
    [[nodiscard]] QList<AuthorSummary> authorSummaries(const QString& search = {});

    // The user's settings, or the defaults when none were saved. Throws JSONCodingError when those saved
    // cannot be read.
    [[nodiscard]] AppPreferences preferences();
    void savePreferences(const AppPreferences& preferences);

    // A new run in the state `queued`.
    SyncRun createSyncRun(SyncRun::Kind kind);

    // Replaces the status, the counters, the message and the reset instant of a run. The first `running`
    // sets `startedAt`, a final status `completedAt`.
    void updateSyncRun(qint64 id, SyncRun::Status status, qint64 pages, qint64 fetched, qint64 created,
                       qint64 updated, const std::optional<QString>& errorMessage = {},
                       std::optional<Instant> rateLimitResetAt = {});

    // The numbers of a `page` entry; other entries have none.
    struct PageNumbers
    {
        std::optional<qint64> page;
        std::optional<qint64> requested;
        std::optional<qint64> received;
        std::optional<qint64> reported;
        std::optional<qint64> cumulative;
        std::optional<bool> hasNextPage;
    };
    SyncLogEntry appendSyncLogEntry(qint64 runID, SyncLogEntry::Event event, const QString& message,
                                    const PageNumbers& numbers = {});

    // Throws SQLiteStoreError::notFound when there is no run with that id.
    [[nodiscard]] SyncRun syncRun(qint64 id);

    // Newest first.
    [[nodiscard]] QList<SyncRun> syncRuns(qint64 limit);

    // The entries of one run, oldest first, or of all runs, newest first. `limit` is clamped to 1 to 5,000.
    [[nodiscard]] QList<SyncLogEntry> syncLogEntries(std::optional<qint64> runID, qint64 limit);

private:
    void migrate();
    [[nodiscard]] QSet<QString> columnsOf(const QByteArray& tableInfoQuery);

    qint64 upsertAuthor(SQLiteValues columns);
    qint64 upsertBookmark(const QString& tweetID, SQLiteValues columns);
    [[nodiscard]] Bookmark storedBookmark(qint64 id, qint64 authorID, SQLiteValues authorColumns,
                                          SQLiteValues bookmarkColumns);
    [[nodiscard]] QList<Tag> tagsOf(qint64 bookmarkID);
    [[nodiscard]] std::optional<Folder> folderOf(qint64 bookmarkID);
    // In that order. Throws SQLiteStoreError::notFound when one of them is not live.
    [[nodiscard]] QList<Bookmark> bookmarks(const QList<qint64>& ids);
    [[nodiscard]] bool folderWouldCycle(qint64 folderID, qint64 parentID);
    [[nodiscard]] BookmarkRule rule(qint64 id);
    [[nodiscard]] bool ruleTargetExists(const BookmarkRule& rule);
    [[nodiscard]] SyncLogEntry syncLogEntry(qint64 id);

    SQLiteConnection m_database;
    Clock m_now;
    LibraryIndex m_index;
};

} // namespace mirel
