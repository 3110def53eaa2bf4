#pragma once

#include <QtGlobal>

#include <sqlite3.h>

#include <atomic>
#include <thread>

namespace mirel::testing {

// Counts the connections that are opened while it lives, and those of them that are closed; refuses them on
// request.
class ConnectionWatcher
{
public:
    ConnectionWatcher()
    {
        opened = 0;
        closed = 0;
        refuses = false;
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(watch));
    }
    ~ConnectionWatcher() { sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(watch)); }
    Q_DISABLE_COPY_MOVE(ConnectionWatcher)

    // Returns once that many were closed.
    static void waitUntilClosed(int connections)
    {
        while (closed < connections)
            std::this_thread::yield();
    }

    static inline std::atomic<int> opened = 0;
    static inline std::atomic<int> closed = 0;
    static inline std::atomic<bool> refuses = false;

private:
    static int watch(sqlite3* connection, const char**, const sqlite3_api_routines*)
    {
        ++opened;
        const auto noteClosing = [](unsigned, void*, void*, void*) {
            ++closed;
            return 0;
        };
        sqlite3_trace_v2(connection, SQLITE_TRACE_CLOSE, noteClosing, nullptr);
        return refuses ? SQLITE_ERROR : SQLITE_OK;
    }
};

} // namespace mirel::testing
