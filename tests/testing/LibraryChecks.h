#pragma once

#include "library/SQLiteConnection.h"

#include <gtest/gtest.h>

namespace mirel::testing {

// The file at `path` is a sound database whose references and full-text index are right.
inline void expectWhole(const QString& path)
{
    SQLiteConnection connection(path);
    const auto row = connection.firstRow("PRAGMA integrity_check");
    EXPECT_EQ(row->text("integrity_check"), QStringLiteral("ok"));
    EXPECT_TRUE(connection.rows("PRAGMA foreign_key_check").empty());
    EXPECT_NO_THROW(
        connection.execute("INSERT INTO bookmark_search (bookmark_search) VALUES ('integrity-check')"));
}

} // namespace mirel::testing
