#include "library/SQLiteConnection.h"

#include "library/SQLiteStoreError.h"
#include "support/RawJSON.h"

#include <QFileInfo>

#include <sqlite3.h>

namespace mirel {

namespace {

constexpr int busyTimeoutInMilliseconds = 5000;
constexpr int smallestEnvelope = 1000;

SQLiteColumn readColumn(sqlite3_stmt* statement, int index)
{
    switch (sqlite3_column_type(statement, index)) {
    case SQLITE_INTEGER:
        return static_cast<qint64>(sqlite3_column_int64(statement, index));
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, index);
    case SQLITE_TEXT: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, index));
        const int size = sqlite3_column_bytes(statement, index);
        QByteArray bytes;
        // An envelope is parsed where it stands.
        bytes.reserve(size < smallestEnvelope ? size : size + RawJSON::padding);
        bytes.append(text, size);
        return bytes;
    }
    default:
        return {};
    }
}

// Without this SQLite takes a lock of the whole process whenever it allocates or frees, to count what nobody
// asks for; preparing a statement, which happens on each call, takes a third longer then. Has no effect once
// something else in the process has used SQLite.
void leaveMemoryUncounted()
{
    [[maybe_unused]] static const int result = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

} // namespace

// A prepared statement with its values bound; `values` outlive it.
class SQLiteConnection::Statement
{
public:
    Statement(const SQLiteConnection& connection, const char* sql, SQLiteValues values)
        : m_connection(connection)
    {
        const int result = sqlite3_prepare_v2(connection.m_handle, sql, -1, &m_statement, nullptr);
        if (result != SQLITE_OK || !m_statement)
            throw SQLiteStoreError(SQLiteStoreError::Case::prepare, connection.errorMessage());
        try {
            bindAll(values);
        } catch (...) {
            sqlite3_finalize(m_statement);
            throw;
        }
    }

    ~Statement() { sqlite3_finalize(m_statement); }

    Q_DISABLE_COPY_MOVE(Statement)

    // Whether there is a row. Throws SQLiteStoreError::execute.
    bool step()
    {
        const int result = sqlite3_step(m_statement);
        if (result != SQLITE_ROW && result != SQLITE_DONE)
            throw SQLiteStoreError(SQLiteStoreError::Case::execute, m_connection.errorMessage());
        return result == SQLITE_ROW;
    }

    [[nodiscard]] SQLiteRow row()
    {
        if (m_names.empty())
            nameColumns();
        SQLiteRow row;
        int index = 0;
        for (const QByteArray& name : m_names)
            row.append(name, readColumn(m_statement, index++));
        return row;
    }

private:
    // Rows share the names.
    void nameColumns()
    {
        const int count = sqlite3_column_count(m_statement);
        for (int index = 0; index < count; ++index)
            m_names.emplace_back(sqlite3_column_name(m_statement, index));
    }

    void bindAll(SQLiteValues values)
    {
        int position = 1;
        for (const SQLiteValue& value : values) {
            if (bind(position++, value.storage()) != SQLITE_OK)
                throw SQLiteStoreError(SQLiteStoreError::Case::bind, m_connection.errorMessage());
        }
    }

    int bind(int position, const SQLiteValue::Storage& value)
    {
        if (const auto* integer = std::get_if<qint64>(&value))
            return sqlite3_bind_int64(m_statement, position, *integer);
        if (const auto* number = std::get_if<double>(&value))
            return sqlite3_bind_double(m_statement, position, *number);
        if (const auto* utf8 = std::get_if<QByteArray>(&value))
            return bindText(position, *utf8);
        return sqlite3_bind_null(m_statement, position);
    }

    // Not copied: the values outlive the statement, and an envelope has 90 KB.
    int bindText(int position, const QByteArray& utf8)
    {
        return sqlite3_bind_text64(m_statement, position, utf8.constData(),
                                   static_cast<sqlite3_uint64>(utf8.size()), SQLITE_STATIC, SQLITE_UTF8);
    }

    const SQLiteConnection& m_connection;
    sqlite3_stmt* m_statement = nullptr;
    std::vector<QByteArray> m_names;
};

SQLiteConnection::SQLiteConnection(const QString& path, const FileManager& fileManager)
{
    fileManager.createDirectory(QFileInfo(path).absolutePath());
    // SQLite would create the file readable by others.
    fileManager.createPrivateFile(path);
    leaveMemoryUncounted();
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
    const int result = sqlite3_open_v2(path.toUtf8().constData(), &m_handle, flags, nullptr);
    if (result == SQLITE_OK) {
        sqlite3_busy_timeout(m_handle, busyTimeoutInMilliseconds);
        return;
    }
    const QString message = errorMessage();
    sqlite3_close(m_handle);
    m_handle = nullptr;
    throw SQLiteStoreError(SQLiteStoreError::Case::open, message);
}

SQLiteConnection::~SQLiteConnection()
{
    sqlite3_close(m_handle);
}

QString SQLiteConnection::errorMessage() const
{
    if (!m_handle)
        return QStringLiteral("unknown SQLite error");
    return QString::fromUtf8(sqlite3_errmsg(m_handle));
}

void SQLiteConnection::execute(const char* sql)
{
    if (sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw SQLiteStoreError(SQLiteStoreError::Case::execute, errorMessage());
}

void SQLiteConnection::rollBack() noexcept
{
    sqlite3_exec(m_handle, "ROLLBACK", nullptr, nullptr, nullptr);
}

void SQLiteConnection::run(const char* sql, SQLiteValues values)
{
    Statement statement(*this, sql, values);
    if (statement.step())
        throw SQLiteStoreError(SQLiteStoreError::Case::execute, errorMessage());
}

std::optional<SQLiteRow> SQLiteConnection::firstRow(const QByteArray& sql, SQLiteValues values)
{
    Statement statement(*this, sql.constData(), values);
    if (!statement.step())
        return std::nullopt;
    return statement.row();
}

std::vector<SQLiteRow> SQLiteConnection::rows(const QByteArray& sql, SQLiteValues values)
{
    Statement statement(*this, sql.constData(), values);
    std::vector<SQLiteRow> rows;
    while (statement.step())
        rows.push_back(statement.row());
    return rows;
}

void SQLiteConnection::forEachRow(const QByteArray& sql, SQLiteValues values,
                                  const std::function<void(const SQLiteRow&)>& visit)
{
    Statement statement(*this, sql.constData(), values);
    while (statement.step())
        visit(statement.row());
}

qint64 SQLiteConnection::lastInsertedRowID() const
{
    return sqlite3_last_insert_rowid(m_handle);
}

QString SQLiteConnection::path() const
{
    return QString::fromUtf8(sqlite3_db_filename(m_handle, "main"));
}

SQLiteTransaction::SQLiteTransaction(SQLiteConnection& connection)
    : m_connection(connection)
{
    m_connection.execute("BEGIN IMMEDIATE");
}

SQLiteTransaction::~SQLiteTransaction()
{
    if (!m_isCommitted)
        m_connection.rollBack();
}

void SQLiteTransaction::commit()
{
    m_connection.execute("COMMIT");
    m_isCommitted = true;
}

} // namespace mirel
