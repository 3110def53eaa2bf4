#include "LibraryFile.h"

#include <memory>
#include <sqlite3.h>
#include <stdexcept>

namespace mirel::testing {

namespace {

QString textOf(sqlite3_stmt* statement, int column)
{
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text ? QString::fromUtf8(text) : QStringLiteral("NULL");
}

} // namespace

QList<QStringList> LibraryFile::rows(const char* query) const
{
    sqlite3* opened = nullptr;
    const int openResult =
        sqlite3_open_v2(m_path.toUtf8().constData(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(opened, sqlite3_close);
    if (openResult != SQLITE_OK)
        throw std::runtime_error("the library cannot be opened");
    sqlite3_busy_timeout(opened, 10'000);
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(opened, query, -1, &prepared, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(opened));
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(prepared, sqlite3_finalize);
    QList<QStringList> result;
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW) {
        QStringList row;
        for (int column = 0; column < sqlite3_column_count(prepared); ++column)
            row.append(textOf(prepared, column));
        result.append(row);
    }
    if (step != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(opened));
    return result;
}

QStringList LibraryFile::column(const char* query) const
{
    QStringList result;
    for (const QStringList& row : rows(query))
        result.append(row.first());
    return result;
}

QSet<QString> LibraryFile::postIDs() const
{
    const QStringList ids = column("SELECT tweet_id FROM bookmarks WHERE deleted_at IS NULL");
    return {ids.begin(), ids.end()};
}

QStringList LibraryFile::damage() const
{
    QStringList found = column("PRAGMA integrity_check");
    found.removeAll(QStringLiteral("ok"));
    for (const QStringList& row : rows("PRAGMA foreign_key_check"))
        found.append(QStringLiteral("foreign key: ") + row.join(u' '));
    return found;
}

} // namespace mirel::testing
