#pragma once

#include "support/Error.h"

#include <atomic>
#include <memory>

namespace mirel {

// The end of a sync that the user no longer wants.
class SyncCanceled : public Error
{
public:
    [[nodiscard]] QString description() const override { return QStringLiteral("Sync canceled."); }
};

// The wish to end one sync, shared by all copies: whoever started the sync keeps one and the sync has
// another. The first wish holds. May be used on any thread.
class SyncCancellation
{
public:
    // The user wants the end: the run is recorded as failed.
    void request() const { wish(Wish::cancel); }
    // The process ends: the run stays `running` in the history, and so counts as no attempt.
    void abandon() const { wish(Wish::abandon); }
    [[nodiscard]] bool isRequested() const { return *m_wish != Wish::none; }
    [[nodiscard]] bool isAbandoned() const { return *m_wish == Wish::abandon; }
    // Both belong to the same sync.
    friend bool operator==(const SyncCancellation&, const SyncCancellation&) = default;

    // Throws SyncCanceled once the end was requested.
    void throwIfRequested() const
    {
        if (isRequested())
            throw SyncCanceled();
    }

private:
    enum class Wish { none, cancel, abandon };

    void wish(Wish wish) const
    {
        Wish none = Wish::none;
        m_wish->compare_exchange_strong(none, wish);
    }

    std::shared_ptr<std::atomic<Wish>> m_wish = std::make_shared<std::atomic<Wish>>(Wish::none);
};

} // namespace mirel
