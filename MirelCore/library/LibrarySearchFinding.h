#pragma once

#include "library/LibrarySearchExpression.h"
#include "support/JSONCoding.h"

#include <QStringList>

namespace mirel {

class LibrarySearchContext;

// What one condition of a search found in one bookmark.
struct LibrarySearchFinding
{
    // As it was typed, without quotes.
    QString condition;
    bool matches = false;
    // Where it matched, such as "author.name" or "isRead". A text that runs from one field into the next is
    // in both. Empty when it did not match, and when it matches every bookmark.
    QStringList fields;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("condition", &LibrarySearchFinding::condition),
            jsonField("matches", &LibrarySearchFinding::matches),
            jsonField("fields", &LibrarySearchFinding::fields),
        };
    }

    friend bool operator==(const LibrarySearchFinding&, const LibrarySearchFinding&) = default;
};

// One finding per condition from left to right, also for those that the evaluation would not ask.
[[nodiscard]] QList<LibrarySearchFinding> explain(const LibrarySearchExpression& expression,
                                                  const LibrarySearchContext& bookmark);

} // namespace mirel
