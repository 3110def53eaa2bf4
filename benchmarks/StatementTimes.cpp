#include "StatementTimes.h"

#include <QHash>

#include <sqlite3.h>

namespace mirel {

namespace {

using Clock = std::chrono::steady_clock;

// SQLite's default.
constexpr int pagesBeforeCheckpoint = 1000;

struct Measurement
{
    bool isRunning = false;
    QList<StatementTime> times;
    QHash<QByteArray, qsizetype> places;
    // The outermost statement that runs.
    sqlite3_stmt* current = nullptr;
    QByteArray sql;
    Clock::time_point begin;

    void add(const QByteArray& text, Duration duration)
    {
        auto place = places.constFind(text);
        if (place == places.constEnd()) {
            place = places.insert(text, times.size());
            times.append({.sql = text});
        }
        times[*place].total += duration;
        ++times[*place].runs;
    }
};

Measurement& measurement()
{
    static Measurement shared;
    return shared;
}

// SQLite's own hook, with a clock.
int checkpoint(void*, sqlite3* connection, const char* database, int pages)
{
    if (pages < pagesBeforeCheckpoint)
        return SQLITE_OK;
    const auto start = Clock::now();
    sqlite3_wal_checkpoint(connection, database);
    if (measurement().isRunning)
        measurement().add("checkpoint", Clock::now() - start);
    return SQLITE_OK;
}

// On one line, without the comment that may stand before it in a script.
QByteArray statementText(const QByteArray& sql)
{
    const QByteArray text = sql.trimmed();
    if (text.startsWith("--"))
        return statementText(text.mid(text.indexOf('\n')));
    return text.simplified();
}

void begin(sqlite3_stmt* statement, const char* sql)
{
    Measurement& all = measurement();
    if (!all.isRunning || all.current)
        return;
    // Not earlier: opening a connection ends with setting SQLite's own hook.
    sqlite3_wal_hook(sqlite3_db_handle(statement), checkpoint, nullptr);
    all.current = statement;
    all.sql = statementText(sql);
    all.begin = Clock::now();
}

void end(const sqlite3_stmt* statement)
{
    Measurement& all = measurement();
    if (!all.isRunning || all.current != statement)
        return;
    const Duration duration = Clock::now() - all.begin;
    all.current = nullptr;
    all.add(all.sql, duration);
}

int note(unsigned event, void*, void* statement, void* detail)
{
    if (event == SQLITE_TRACE_STMT)
        begin(static_cast<sqlite3_stmt*>(statement), static_cast<const char*>(detail));
    else
        end(static_cast<const sqlite3_stmt*>(statement));
    return 0;
}

int watch(sqlite3* connection, char**, const sqlite3_api_routines*)
{
    return sqlite3_trace_v2(connection, SQLITE_TRACE_STMT | SQLITE_TRACE_PROFILE, note, nullptr);
}

} // namespace

void StatementTimes::install()
{
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(watch));
}

void StatementTimes::start()
{
    measurement() = {};
    measurement().isRunning = true;
}

QList<StatementTime> StatementTimes::stop()
{
    measurement().isRunning = false;
    return std::exchange(measurement().times, {});
}

} // namespace mirel
