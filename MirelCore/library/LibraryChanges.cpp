#include "library/LibraryChanges.h"

#include <sqlite3.h>

#include <array>

namespace mirel {

bool ChangedRows::isEmpty() const
{
    return bookmarks.isEmpty() && authors.isEmpty() && tags.isEmpty() && bookmarkTags.isEmpty() &&
           folders.isEmpty() && bookmarkFolders.isEmpty();
}

LibraryChanges::LibraryChanges(SQLiteConnection& connection)
    : m_connection(connection)
{
    const auto note = [](void* changes, int, const char*, const char* table, sqlite3_int64 rowID) {
        static_cast<LibraryChanges*>(changes)->add(table, rowID);
    };
    sqlite3_update_hook(m_connection.handle(), note, this);
}

LibraryChanges::~LibraryChanges()
{
    sqlite3_update_hook(m_connection.handle(), nullptr, nullptr);
}

ChangedRows LibraryChanges::take()
{
    return std::exchange(m_rows, {});
}

qint64 LibraryChanges::version()
{
    const auto row = m_connection.firstRow("PRAGMA data_version");
    return row ? row->integer("data_version").value_or(0) : 0;
}

void LibraryChanges::add(QByteArrayView table, qint64 rowID)
{
    struct Watched
    {
        QByteArrayView table;
        QSet<qint64> ChangedRows::*rows;
    };
    static constexpr std::array watched{
        Watched{"bookmarks", &ChangedRows::bookmarks},
        Watched{"authors", &ChangedRows::authors},
        Watched{"tags", &ChangedRows::tags},
        Watched{"bookmark_tags", &ChangedRows::bookmarkTags},
        Watched{"folders", &ChangedRows::folders},
        Watched{"bookmark_folders", &ChangedRows::bookmarkFolders},
    };
    for (const Watched& candidate : watched) {
        if (candidate.table == table)
            (m_rows.*candidate.rows).insert(rowID);
    }
}

} // namespace mirel
