#pragma once

#include "credentials/InMemoryCredentialVault.h"
#include "support/Error.h"

namespace mirel {

class VaultLocked : public Error
{
public:
    [[nodiscard]] QString description() const override { return QStringLiteral("The vault is locked."); }
};

// A vault that cannot be written to.
class VaultThatCannotSave : public InMemoryCredentialVault
{
public:
    using InMemoryCredentialVault::InMemoryCredentialVault;

    QCoro::Task<> saveXCredentials(XCredentials) override
    {
        throw VaultLocked();
        co_return;
    }
};

} // namespace mirel
