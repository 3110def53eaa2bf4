#pragma once

#include "library/IndexedText.h"
#include "library/LibraryContentFacts.h"
#include "library/LibraryFilter.h"

#include <exception>
#include <limits>
#include <memory>
#include <vector>

namespace mirel {

// How much is known of a bookmark, each depth including the one before.
enum class IndexDepth {
    // What listing and counting need, which the library gives without reading a post.
    outline,
    // What most searches need. Of posts that quote another one, the raw JSON is read.
    texts,
    // What searches for kinds of posts and for links need. The raw JSON of every post is read.
    presentations
};

// A label on a bookmark.
struct IndexedLabel
{
    // Shared by all bookmarks with that label. Names are as searchKey() makes them.
    struct Names
    {
        qint64 id = 0;
        QString slug;
        QString name;

        friend bool operator==(const Names&, const Names&) = default;
    };

    // The rowid in `bookmark_tags`.
    qint64 link = 0;
    std::shared_ptr<const Names> names;
};

// Shared by all bookmarks of that author. Names are as searchKey() makes them.
struct IndexedAuthor
{
    QString username;
    QString name;
};

// Names are as searchKey() makes them.
struct IndexedFolder
{
    QString slug;
    QString name;
};

// What is kept in memory of a live bookmark.
struct IndexEntry
{
    // Stands for what is no number, which SQL orders after all numbers.
    static constexpr Instant afterEveryDate =
        Instant::fromSecondsSince1970(std::numeric_limits<double>::infinity());

    IndexDepth depth = IndexDepth::outline;

    qint64 id = 0;
    // Absent when the author's row is missing: such a bookmark is counted and never listed.
    std::optional<qint64> authorID;
    Instant createdAt;
    std::optional<qint64> folderID;
    bool isRead = false;
    bool isFavorite = false;
    bool isArchived = false;

    // From `texts` on.

    // Why the bookmark cannot be loaded, and what follows is missing; every search that comes to it fails
    // with it.
    std::exception_ptr failure;
    std::vector<IndexedLabel> labels;
    bool hasNotes = false;
    // Media of the post, of its quoted post or of what is shown of that one.
    bool hasPresentedMedia = false;
    IndexedText text;

    // From `presentations` on.

    bool hasPresentedLinks = false;
    LibraryContentFacts content;

    [[nodiscard]] bool isIn(LibraryFilter mailbox) const;
};

} // namespace mirel
