#pragma once

#include "library/SQLiteConnection.h"

namespace mirel::testing {

// Adds bookmarks with the ids 1 to `count` by one author to an empty library. Their texts begin with "Post"
// and the id, their articles are `article` and the id.
inline void addBookmarks(SQLiteConnection& connection, int count, const QString& article = {})
{
    connection.execute("INSERT INTO authors (id, x_id, name, username) VALUES (1, '42', 'Ada', 'ada')");
    connection.run("WITH RECURSIVE numbers (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM numbers WHERE n < ?) "
                   "INSERT INTO bookmarks (id, tweet_id, author_id, text, content_text, source_url, "
                   "post_created_at, synced_at) "
                   "SELECT n, 'post-' || n, 1, 'Post ' || n || ' ', NULLIF(?, '') || n, "
                   "'https://x.com/' || n, n, 0 FROM numbers",
                   {count, article});
}

} // namespace mirel::testing
