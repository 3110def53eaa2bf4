#pragma once

#include "library/LibraryContentFacts.h"
#include "library/LibraryFilter.h"
#include "records/Bookmark.h"

#include <exception>
#include <memory>

namespace mirel {

// A label on a bookmark.
struct SearchLabel
{
    // The rowid in `bookmark_tags`.
    qint64 link = 0;
    // As searchKey() makes them. Shared by all bookmarks with that label.
    struct Names
    {
        qint64 id = 0;
        QString slug;
        QString name;

        friend bool operator==(const Names&, const Names&) = default;
    };
    std::shared_ptr<const Names> names;
};

// What a search needs of a live bookmark, in memory.
struct SearchEntry
{
    qint64 id = 0;
    qint64 authorID = 0;
    Instant createdAt;
    std::optional<qint64> folderID;
    std::vector<SearchLabel> labels;
    bool isRead = false;
    bool isFavorite = false;
    bool isArchived = false;
    bool hasNotes = false;
    // Media of the post, of its quoted post or of what is shown of that one.
    bool hasPresentedMedia = false;

    // The presentation was read, without which the two below are not complete.
    bool isPresentationKnown = false;
    bool hasPresentedLinks = false;
    LibraryContentFacts content;

    // As searchableText() makes it; null when it is too long to be kept.
    QByteArray text;
    // Where in `text` the address of the post is.
    qsizetype addressBegin = 0;
    qsizetype addressLength = 0;

    // Why the bookmark cannot be loaded; every search that comes to it fails with it.
    std::exception_ptr failure;

    [[nodiscard]] bool isIn(LibraryFilter mailbox) const;
};

// The same for all bookmarks of one author.
struct SearchAuthor
{
    // As searchKey() makes them.
    QString username;
    QString name;
    // Orders as the library does, without regard to the case of ASCII letters.
    QByteArray sortKey;
};

struct SearchFolder
{
    // As searchKey() makes them.
    QString slug;
    QString name;
};

} // namespace mirel
