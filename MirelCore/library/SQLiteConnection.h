#pragma once

#include "library/SQLiteRow.h"
#include "library/SQLiteValue.h"
#include "support/FileManager.h"

#include <QList>

#include <functional>
#include <initializer_list>
#include <optional>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace mirel {

using SQLiteValues = std::initializer_list<SQLiteValue>;

// One connection to a database file, closed when destroyed. Statements are prepared anew on each call and
// finalized on every path. Used on one thread at a time.
class SQLiteConnection
{
public:
    // Opens the file, which is created, with its directory, readable by the user alone. Throws
    // SQLiteStoreError::open, or FileError when the directory or the file cannot be created.
    explicit SQLiteConnection(const QString& path, const FileManager& fileManager = FileManager::standard());
    ~SQLiteConnection();

    Q_DISABLE_COPY_MOVE(SQLiteConnection)

    // Runs one or more statements without bound values. Throws SQLiteStoreError::execute.
    void execute(const char* sql);

    // Rolls the open transaction back, if there is one. A failure is dropped: an earlier error brought us
    // here, and that is the one to report.
    void rollBack() noexcept;

    // Runs one statement that returns no row; one that does is an error. `values` are those of the
    // positional "?" parameters. Throws SQLiteStoreError.
    void run(const char* sql, SQLiteValues values = {});

    // The first row, or absent if there is none. Throws SQLiteStoreError.
    [[nodiscard]] std::optional<SQLiteRow> firstRow(const QByteArray& sql, SQLiteValues values = {});

    // All rows. Throws SQLiteStoreError.
    [[nodiscard]] std::vector<SQLiteRow> rows(const QByteArray& sql, SQLiteValues values = {});

    // Hands over one row after the other, none of which is kept. Throws SQLiteStoreError, and what `visit`
    // throws.
    void forEachRow(const QByteArray& sql, SQLiteValues values,
                    const std::function<void(const SQLiteRow&)>& visit);

    // The rowid of the last inserted row.
    [[nodiscard]] qint64 lastInsertedRowID() const;

    // The file.
    [[nodiscard]] QString path() const;

    // The open database, for what SQLite offers beyond statements.
    [[nodiscard]] sqlite3* handle() const { return m_handle; }

private:
    class Statement;

    [[nodiscard]] QString errorMessage() const;

    sqlite3* m_handle = nullptr;
};

// A transaction that holds the write lock from its start and is rolled back unless committed.
class SQLiteTransaction
{
public:
    // Throws SQLiteStoreError.
    explicit SQLiteTransaction(SQLiteConnection& connection);
    ~SQLiteTransaction();

    Q_DISABLE_COPY_MOVE(SQLiteTransaction)

    // Throws SQLiteStoreError; the transaction is then rolled back like any other.
    void commit();

private:
    SQLiteConnection& m_connection;
    bool m_isCommitted = false;
};

} // namespace mirel
