#include "testing/Printing.h"

#include "credentials/InMemoryCredentialVault.h"
#include "support/BlockOn.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(InMemoryCredentialVault, BeginsEmptyOrWithWhatItIsGiven)
{
    InMemoryCredentialVault empty;
    EXPECT_EQ(blockOn(empty.loadXCredentials()), std::nullopt);
    EXPECT_EQ(blockOn(empty.loadOpenAIKey()), std::nullopt);

    InMemoryCredentialVault filled(
        {}, QStringLiteral("o"),
        {{AIProviderKind::openAI, QStringLiteral("other")}, {AIProviderKind::xAI, QStringLiteral("x")}});
    EXPECT_EQ(blockOn(filled.loadAIKey(AIProviderKind::openAI)), QStringLiteral("o"));
    EXPECT_EQ(blockOn(filled.loadAIKey(AIProviderKind::xAI)), QStringLiteral("x"));
    EXPECT_EQ(blockOn(filled.loadAIKey(AIProviderKind::ollama)), std::nullopt);
}

TEST(InMemoryCredentialVault, KeepsWhatIsSavedForAnyNumberOfLoadsAndClearsAllOfIt)
{
    InMemoryCredentialVault vault;
    XCredentials credentials;
    credentials.userID = QStringLiteral("1");
    blockOn(vault.saveXCredentials(credentials));
    blockOn(vault.saveOpenAIKey(QStringLiteral("k")));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(blockOn(vault.loadXCredentials()), credentials);
        EXPECT_EQ(blockOn(vault.loadOpenAIKey()), QStringLiteral("k"));
    }
    blockOn(vault.clearAll());
    EXPECT_EQ(blockOn(vault.loadXCredentials()), std::nullopt);
    EXPECT_EQ(blockOn(vault.loadOpenAIKey()), std::nullopt);
    blockOn(vault.clearAll());
}

} // namespace
} // namespace mirel
