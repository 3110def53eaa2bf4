#pragma once

#include "records/Author.h"

namespace mirel {

// The totals of the mailboxes.
struct LibraryCounts
{
    qint64 all = 0;
    qint64 inbox = 0;
    qint64 read = 0;
    qint64 favorites = 0;
    qint64 archive = 0;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("all", &LibraryCounts::all),         jsonField("inbox", &LibraryCounts::inbox),
            jsonField("read", &LibraryCounts::read),       jsonField("favorites", &LibraryCounts::favorites),
            jsonField("archive", &LibraryCounts::archive),
        };
    }

    friend bool operator==(const LibraryCounts&, const LibraryCounts&) = default;
};

// An author with the number of bookmarks by them. Its identity is `author.id`.
struct AuthorSummary
{
    Author author;
    qint64 bookmarkCount = 0;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("author", &AuthorSummary::author),
            jsonField("bookmarkCount", &AuthorSummary::bookmarkCount),
        };
    }

    friend bool operator==(const AuthorSummary&, const AuthorSummary&) = default;
};

} // namespace mirel
