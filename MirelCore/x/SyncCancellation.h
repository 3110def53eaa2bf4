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
// another. May be used on any thread.
class SyncCancellation
{
public:
    void request() const { m_isRequested->store(true); }
    [[nodiscard]] bool isRequested() const { return m_isRequested->load(); }
    // Throws SyncCanceled once the end was requested.
    void throwIfRequested() const
    {
        if (isRequested())
            throw SyncCanceled();
    }

private:
    std::shared_ptr<std::atomic_bool> m_isRequested = std::make_shared<std::atomic_bool>(false);
};

} // namespace mirel
