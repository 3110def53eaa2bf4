#pragma once

#include "library/LibraryIndex.h"
#include "testing/FailingSQLite.h"
#include "testing/TemporaryLibrary.h"

#include <gtest/gtest.h>

namespace mirel::testing {

// An index over a connection, and another connection that writes to the same library.
class IndexBench : public ::testing::Test
{
protected:
    IndexBench()
    {
        static_cast<void>(failingStatements());
        static_cast<void>(library.open());
        connection = library.connect();
        connection->execute("PRAGMA foreign_keys = ON");
        other = library.connect();
        index = std::make_unique<LibraryIndex>(*connection);
    }

    ~IndexBench() override { failingStatements().disarm(); }

    // Newest first, which is by descending id.
    QList<qint64> found(const char* query, LibraryFilter mailbox = LibraryFilter::all)
    {
        return found(LibraryRefinements{.query = QString::fromUtf8(query)}, mailbox);
    }
    QList<qint64> found(const LibraryRefinements& refinements, LibraryFilter mailbox = LibraryFilter::all)
    {
        return index->matchingIDs(mailbox, LibrarySearch(refinements), LibrarySort::newest);
    }

    TemporaryLibrary library;
    std::unique_ptr<SQLiteConnection> connection;
    std::unique_ptr<SQLiteConnection> other;
    std::unique_ptr<LibraryIndex> index;
};

} // namespace mirel::testing
