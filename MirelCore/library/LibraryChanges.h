#pragma once

#include "library/SQLiteConnection.h"

#include <QByteArrayView>
#include <QSet>

namespace mirel {

// Rows that were written through a connection, by table and rowid.
struct ChangedRows
{
    QSet<qint64> bookmarks;
    QSet<qint64> authors;
    QSet<qint64> tags;
    QSet<qint64> bookmarkTags;
    QSet<qint64> folders;
    // By their bookmarks, which are the rowids.
    QSet<qint64> bookmarkFolders;

    [[nodiscard]] bool isEmpty() const;
};

// Watches who writes to a library: this connection, row by row, or another one. What a transaction wrote
// counts also when it was rolled back. Emptying a whole table ("DELETE FROM table") is not seen.
//
// Used on the connection's thread. The connection outlives this object and has no other update hook.
class LibraryChanges
{
public:
    explicit LibraryChanges(SQLiteConnection& connection);
    ~LibraryChanges();

    Q_DISABLE_COPY_MOVE(LibraryChanges)

    // The rows written since the last call.
    [[nodiscard]] ChangedRows take();

    // A number that changes whenever another connection, of this process or any other, commits. Throws
    // SQLiteStoreError.
    [[nodiscard]] qint64 version();

private:
    void add(QByteArrayView table, qint64 rowID);

    SQLiteConnection& m_connection;
    ChangedRows m_rows;
};

} // namespace mirel
