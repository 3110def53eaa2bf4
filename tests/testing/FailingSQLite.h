#pragma once

#include <atomic>

namespace mirel::testing {

// Makes the n-th event of a kind fail, once.
class FailureCountdown
{
public:
    // Lets `skipped` events pass and fails the one after them.
    void arm(int skipped)
    {
        m_fired = false;
        m_remaining = skipped;
        m_armed = true;
    }
    void disarm() { m_armed = false; }
    // Whether the failure has come since arm().
    [[nodiscard]] bool fired() const { return m_fired; }

    // Called at each event: whether it fails.
    bool failsNow()
    {
        if (!m_armed || m_remaining-- > 0)
            return false;
        m_armed = false;
        m_fired = true;
        return true;
    }

private:
    std::atomic<bool> m_armed = false;
    std::atomic<bool> m_fired = false;
    std::atomic<int> m_remaining = 0;
};

// The statements that SQLite prepares, its own included and rollbacks excepted, on every connection opened
// after the first call.
FailureCountdown& failingStatements();

// The file operations of SQLite (open, read, write, truncate, sync, delete, size, shared memory), on every
// connection opened after the first call.
FailureCountdown& failingFileOperations();

} // namespace mirel::testing
