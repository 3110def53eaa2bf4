#pragma once

#include "library/RandomPosts.h"
#include "testing/TemporaryLibrary.h"

namespace mirel::testing {

// What random edits of a library draw from.
class EditBench
{
public:
    // `path` is that of the library.
    EditBench(const QString& path, unsigned int seed);

    // The library as another process has it open, where nothing holds references together.
    [[nodiscard]] SQLiteConnection& connection() { return m_connection; }
    [[nodiscard]] RandomChoices& random() { return m_random; }
    [[nodiscard]] RandomPosts& posts() { return m_posts; }

    // Mostly that of a row, of a deleted bookmark too.
    [[nodiscard]] qint64 idIn(const char* table);
    [[nodiscard]] QList<qint64> idsIn(const char* table);
    // A post to store: a new one while there are few, and often one that is there, changed.
    [[nodiscard]] SyncedBookmark nextPost();

private:
    SQLiteConnection m_connection;
    RandomChoices m_random;
    RandomPosts m_posts;
    int m_postCount = 0;
};

struct LibraryEdit
{
    // An operation of LocalLibraryStore, or what another process does.
    const char* name;
    // How often it comes, compared to the others.
    int weight;
    // Throws what the operation does, and asserts nothing.
    void (*run)(LocalLibraryStore& store, EditBench& bench);
};

// All operations of LocalLibraryStore that write.
[[nodiscard]] const std::vector<LibraryEdit>& storeEdits();

// Those that write nothing.
[[nodiscard]] const QStringList& readingOperations();

// What happens to the file without the store.
[[nodiscard]] const std::vector<LibraryEdit>& foreignEdits();

} // namespace mirel::testing
