#pragma once

#include "presentation/RandomEnvelopes.h"
#include "records/SyncedBookmark.h"

namespace mirel::testing {

// Posts of all shapes with odd texts, from a seed. Few words, authors, names and dates, so that searches find
// something and orders have ties.
class RandomPosts
{
public:
    explicit RandomPosts(unsigned int seed);

    // A post with the number `number`, which decides its id alone.
    [[nodiscard]] SyncedBookmark post(int number);

    // A few words, or many, or one so often that it has thousands of characters.
    [[nodiscard]] QString text();
    // Some words.
    [[nodiscard]] QString phrase();
    // One name among few, so that it often is that of something else already.
    [[nodiscard]] QString name();
    [[nodiscard]] SyncedAuthor author();
    [[nodiscard]] QList<MediaItem> media();
    [[nodiscard]] QList<ThreadPost> thread();
    // One among few.
    [[nodiscard]] Instant date();
    // An envelope of some shape, a bare or a damaged one.
    [[nodiscard]] QByteArray rawJSON();

private:
    void addArticle(SyncedBookmark& post);

    RandomChoices m_random;
    RandomEnvelopes m_envelopes;
};

} // namespace mirel::testing
