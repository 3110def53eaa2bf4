#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

enum class BookmarkSyncMode {
    // Stops at the first page that brings nothing new.
    incremental,
    // Walks until X has no more pages.
    full
};

[[nodiscard]] constexpr auto rawValues(BookmarkSyncMode)
{
    return std::array{
        RawValue{BookmarkSyncMode::incremental, QLatin1StringView("incremental")},
        RawValue{BookmarkSyncMode::full, QLatin1StringView("full")},
    };
}

// The report of one page.
struct BookmarkSyncProgress
{
    // Pages done, this one included.
    qint64 pages = 0;
    // Posts received so far in this run.
    qint64 fetched = 0;
    // Bookmarks new to the library so far.
    qint64 created = 0;
    // Bookmarks that were already there so far.
    qint64 updated = 0;
    // The page size asked for.
    qint64 requested = 0;
    // Items in this page.
    qint64 received = 0;
    // What X said of the size of this page.
    qint64 reported = 0;
    // The run goes on to a further page.
    bool hasNextPage = false;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("pages", &BookmarkSyncProgress::pages),
            jsonField("fetched", &BookmarkSyncProgress::fetched),
            jsonField("created", &BookmarkSyncProgress::created),
            jsonField("updated", &BookmarkSyncProgress::updated),
            jsonField("requested", &BookmarkSyncProgress::requested),
            jsonField("received", &BookmarkSyncProgress::received),
            jsonField("reported", &BookmarkSyncProgress::reported),
            jsonField("hasNextPage", &BookmarkSyncProgress::hasNextPage),
        };
    }

    friend bool operator==(const BookmarkSyncProgress&, const BookmarkSyncProgress&) = default;
};

// The end of a walk.
struct BookmarkSyncSummary
{
    qint64 pages = 0;
    qint64 fetched = 0;
    qint64 created = 0;
    qint64 updated = 0;
    // In the order in which they were saved.
    QList<qint64> createdBookmarkIDs;
    Instant completedAt;
    BookmarkSyncMode mode = BookmarkSyncMode::incremental;
    // X had no further page.
    bool reachedRemoteEnd = false;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("pages", &BookmarkSyncSummary::pages),
            jsonField("fetched", &BookmarkSyncSummary::fetched),
            jsonField("created", &BookmarkSyncSummary::created),
            jsonField("updated", &BookmarkSyncSummary::updated),
            jsonField("createdBookmarkIDs", &BookmarkSyncSummary::createdBookmarkIDs),
            jsonField("completedAt", &BookmarkSyncSummary::completedAt),
            jsonField("mode", &BookmarkSyncSummary::mode),
            jsonField("reachedRemoteEnd", &BookmarkSyncSummary::reachedRemoteEnd),
        };
    }

    friend bool operator==(const BookmarkSyncSummary&, const BookmarkSyncSummary&) = default;
};

} // namespace mirel
