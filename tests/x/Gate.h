#pragma once

#include <coroutine>
#include <utility>

namespace mirel {

// Where one coroutine waits until the test lets it on: `co_await gate.opened()`.
class Gate
{
public:
    Gate() = default;
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    // Lets on whoever waits, or will wait; it runs before this returns.
    void open()
    {
        m_isOpen = true;
        if (const auto waiting = std::exchange(m_waiting, nullptr))
            waiting.resume();
    }

    // Refers to the gate, since what is awaited may be copied.
    [[nodiscard]] auto opened()
    {
        struct Opening
        {
            Gate* gate;
            [[nodiscard]] bool await_ready() const noexcept { return gate->m_isOpen; }
            void await_suspend(std::coroutine_handle<> caller) const noexcept { gate->m_waiting = caller; }
            void await_resume() const noexcept {}
        };
        return Opening{this};
    }

private:
    bool m_isOpen = false;
    std::coroutine_handle<> m_waiting;
};

} // namespace mirel
