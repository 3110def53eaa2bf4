#pragma once

#include "library/LibraryFilter.h"
#include "library/LibraryRefinements.h"
#include "library/SQLiteConnection.h"
#include "records/AppPreferences.h"
#include "records/Bookmark.h"
#include "records/LibrarySummaries.h"
#include "records/SyncRun.h"
#include "records/SyncedBookmark.h"
#include "support/Instant.h"

#include <QSet>

namespace mirel {

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
                               const FileManager& fileManager = FileManager::standard());

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

    // What of a mailbox passes the refinements, in order.
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

    // The user's settings, or the defaults when none were saved. Settings that cannot be read are an error.
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

    // Newest first.
    [[nodiscard]] QList<SyncRun> syncRuns(qint64 limit);

    // The entries of one run, oldest first, or of all runs, newest first. `limit` is clamped to 1 to 5,000.
    [[nodiscard]] QList<SyncLogEntry> syncLogEntries(std::optional<qint64> runID, qint64 limit);

private:
    void migrate();
    [[nodiscard]] QSet<QString> columnsOf(const QByteArray& tableInfoQuery);

    qint64 upsertAuthor(const SyncedAuthor& author);
    [[nodiscard]] Bookmark storedBookmark(qint64 id, const QByteArray& rawJSON);
    [[nodiscard]] Bookmark decodeOne(const std::optional<SQLiteRow>& row, qint64 id);
    // In that order. Throws SQLiteStoreError::notFound when one of them is not live.
    [[nodiscard]] QList<Bookmark> bookmarks(const QList<qint64>& ids);
    [[nodiscard]] SyncRun syncRun(qint64 id);
    [[nodiscard]] SyncLogEntry syncLogEntry(qint64 id);

    SQLiteConnection m_database;
    Clock m_now;
};

} // namespace mirel
