#pragma once

#include "library/SQLiteRow.h"
#include "records/Bookmark.h"
#include "records/BookmarkHighlight.h"
#include "records/BookmarkRule.h"
#include "records/LibrarySummaries.h"
#include "records/SyncRun.h"

namespace mirel {

// How rows become records. Only decodeBookmark has required columns; the others take defaults and never
// fail.

// Throws SQLiteStoreError::execute when a required column is missing or of the wrong type, and
// JSONCodingError when a JSON column cannot be read.
[[nodiscard]] Bookmark decodeBookmark(const SQLiteRow& row, QList<Tag> tags, std::optional<Folder> folder);

[[nodiscard]] Tag decodeTag(const SQLiteRow& row);
[[nodiscard]] Folder decodeFolder(const SQLiteRow& row);
[[nodiscard]] TagSummary decodeTagSummary(const SQLiteRow& row);
[[nodiscard]] FolderSummary decodeFolderSummary(const SQLiteRow& row);
[[nodiscard]] AuthorSummary decodeAuthorSummary(const SQLiteRow& row);
[[nodiscard]] BookmarkRule decodeRule(const SQLiteRow& row);
[[nodiscard]] BookmarkHighlight decodeHighlight(const SQLiteRow& row);
[[nodiscard]] SyncRun decodeSyncRun(const SQLiteRow& row);
[[nodiscard]] SyncLogEntry decodeSyncLogEntry(const SQLiteRow& row);

} // namespace mirel
