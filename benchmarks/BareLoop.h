#pragma once

#include "StatementTimes.h"
#include "records/SyncedBookmark.h"
#include "support/Instant.h"

#include <vector>

namespace mirel {

// The least that storing posts durably can take: one INSERT a post in a transaction of its own, every
// statement prepared once and every value made beforehand.
class BareLoop
{
public:
    // `insertSQL` is the library's own statement. The library at `path` exists and is empty; the authors of
    // `posts` are added to it here. Throws SQLiteStoreError.
    BareLoop(const QString& path, QByteArray insertSQL, const QList<SyncedBookmark>& posts);

    // Stores all posts. Throws std::runtime_error with SQLite's message.
    Duration run();

private:
    struct Post
    {
        std::vector<std::optional<QByteArray>> texts;
        qint64 author = 0;
        Instant createdAt;
        PostMetrics metrics;
    };

    [[nodiscard]] static Post prepared(const SyncedBookmark& post, qint64 author);

    QString m_path;
    QByteArray m_insertSQL;
    std::vector<Post> m_posts;
};

} // namespace mirel
