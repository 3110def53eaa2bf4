#pragma once

#include "EndToEndTest.h"

#include "credentials/KeychainCredentialVault.h"
#include "support/BlockOn.h"

namespace mirel::testing {

// With a real keyring, in a session that with-private-keyring.sh makes.
class KeyringEndToEndTest : public EndToEndTest
{
protected:
    KeyringEndToEndTest()
        : EndToEndTest(120, true)
    {
    }

    // So that a run by hand never touches the keyring of its user.
    void SetUp() override
    {
        if (qgetenv("MIREL_TEST_KEYRING") != "unlocked")
            FAIL() << "Run this through with-private-keyring.sh.";
        blockOn(m_vault.clearAll());
    }

    void TearDown() override
    {
        if (!HasFatalFailure())
            blockOn(m_vault.clearAll());
    }

    std::optional<XCredentials> storedCredentials() { return blockOn(m_vault.loadXCredentials()); }

private:
    KeychainCredentialVault m_vault{QStringLiteral("io.mirel.mac.credentials.v2")};
};

} // namespace mirel::testing
