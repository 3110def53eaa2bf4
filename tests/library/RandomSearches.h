#pragma once

#include "library/LibraryRefinements.h"
#include "records/Bookmark.h"
#include "testing/RandomChoices.h"

namespace mirel::testing {

// Searches of every kind, from a seed, with needles from the texts of a library.
class RandomSearches
{
public:
    explicit RandomSearches(unsigned int seed);

    // What the next searches are for.
    void lookFor(const QList<Bookmark>& bookmarks);

    // An expression, garbage at times, and now and then other refinements.
    [[nodiscard]] LibraryRefinements refinements();
    [[nodiscard]] QString expression();

private:
    [[nodiscard]] QString term(int depth);
    [[nodiscard]] QString condition();
    [[nodiscard]] QString value(const QString& key);
    [[nodiscard]] QString garbage();
    // A piece of the searchable text of a bookmark, also across the ends of its parts.
    [[nodiscard]] QString needle();
    [[nodiscard]] QString inSomeCase(const QString& text);
    [[nodiscard]] std::optional<qint64> rowID();
    [[nodiscard]] std::optional<Instant> date();

    RandomChoices m_random;
    QList<Bookmark> m_bookmarks;
};

} // namespace mirel::testing
