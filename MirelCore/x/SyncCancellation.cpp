#include "x/SyncCancellation.h"

#include <utility>

namespace mirel {

struct SyncCancellation::State
{
    std::mutex mutex;
    Wish wish = Wish::none;
    std::vector<std::weak_ptr<QPromise<void>>> waiting;
    std::vector<QCoro::Task<>> leftBehind;
};

SyncCancellation::SyncCancellation()
    : m_state(std::make_shared<State>())
{
}

void SyncCancellation::request() const
{
    std::vector<std::weak_ptr<QPromise<void>>> waiting;
    {
        const std::lock_guard lock(m_state->mutex);
        if (m_state->wish != Wish::none)
            return;
        m_state->wish = Wish::cancel;
        waiting.swap(m_state->waiting);
    }
    for (const auto& promise : waiting) {
        if (const auto present = promise.lock())
            present->finish();
    }
}

void SyncCancellation::abandon() const
{
    const std::lock_guard lock(m_state->mutex);
    if (m_state->wish == Wish::none)
        m_state->wish = Wish::abandon;
}

SyncCancellation::Wish SyncCancellation::wish() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->wish;
}

bool SyncCancellation::isRequested() const
{
    return wish() != Wish::none;
}

bool SyncCancellation::isAbandoned() const
{
    return wish() == Wish::abandon;
}

void SyncCancellation::throwIfRequested() const
{
    if (isRequested())
        throw SyncCanceled();
}

void SyncCancellation::finishWhenRequested(const std::shared_ptr<QPromise<void>>& promise) const
{
    {
        const std::lock_guard lock(m_state->mutex);
        std::erase_if(m_state->waiting, [](const auto& waiting) { return waiting.expired(); });
        if (m_state->wish != Wish::cancel) {
            m_state->waiting.push_back(promise);
            return;
        }
    }
    promise->finish();
}

void SyncCancellation::leaveBehind(QCoro::Task<> work) const
{
    m_state->leftBehind.push_back(std::move(work));
}

QCoro::Task<> SyncCancellation::leftBehind() const
{
    // Taken first: this object need not outlive the wait.
    const std::vector<QCoro::Task<>> tasks = std::exchange(m_state->leftBehind, {});
    for (const QCoro::Task<>& task : tasks)
        co_await task;
}

} // namespace mirel
