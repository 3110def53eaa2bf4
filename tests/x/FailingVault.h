#pragma once

#include "x/VaultThatCannotSave.h"

#include <atomic>

namespace mirel::testing {

// A vault whose n-th call (from 0) can be made to fail. May be counted from any thread.
class FailingVault : public InMemoryCredentialVault
{
public:
    using InMemoryCredentialVault::InMemoryCredentialVault;

    // -1: none.
    std::atomic<int> failing = -1;
    std::atomic<int> calls = 0;
    // Whether the removal of all fails when the credentials of X are gone.
    std::atomic<bool> failsHalfWay = false;

    QCoro::Task<std::optional<XCredentials>> loadXCredentials() override
    {
        fail();
        return InMemoryCredentialVault::loadXCredentials();
    }
    QCoro::Task<> saveXCredentials(XCredentials credentials) override
    {
        fail();
        return InMemoryCredentialVault::saveXCredentials(std::move(credentials));
    }
    QCoro::Task<> clearAll() override
    {
        fail();
        const bool isCutOff = failsHalfWay;
        co_await InMemoryCredentialVault::clearAll();
        if (isCutOff)
            throw VaultLocked();
    }

private:
    void fail()
    {
        if (calls++ == failing)
            throw VaultLocked();
    }
};

} // namespace mirel::testing
