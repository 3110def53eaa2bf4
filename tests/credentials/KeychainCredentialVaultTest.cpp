#include "testing/Printing.h"

#include "FakeSecretStore.h"
#include "credentials/KeychainCredentialVault.h"
#include "support/BlockOn.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

class KeychainCredentialVaultTest : public ::testing::Test
{
protected:
    // What the task fails with.
    template <typename Result>
    static KeychainError failure(QCoro::Task<Result> task)
    {
        try {
            if constexpr (std::is_void_v<Result>)
                blockOn(std::move(task));
            else
                (void)blockOn(std::move(task));
        } catch (const KeychainError& error) {
            return error;
        }
        throw std::logic_error("the call did not fail");
    }

    FakeSecrets m_secrets;
    KeychainCredentialVault m_vault{QStringLiteral("svc"), std::make_unique<FakeSecretStore>(m_secrets)};
    const XCredentials m_whole{
        .clientID = QStringLiteral("client"),
        .clientSecret = QStringLiteral("sécret"),
        .accessToken = QStringLiteral("access"),
        .refreshToken = QStringLiteral("refresh"),
        .expiresAt = Instant::fromSecondsSince2001(800'000'000.25),
        .userID = QStringLiteral("42"),
        .username = QStringLiteral("ada"),
    };
};

TEST_F(KeychainCredentialVaultTest, FindsNothingInAnEmptyStore)
{
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), std::nullopt);
    for (const auto& row : rawValues(AIProviderKind{}))
        EXPECT_EQ(blockOn(m_vault.loadAIKey(row.value)), std::nullopt);
}

TEST_F(KeychainCredentialVaultTest, KeepsXCredentialsAsJSONWithTheFieldNames)
{
    blockOn(m_vault.saveXCredentials(m_whole));
    ASSERT_EQ(m_secrets.items.size(), 1U);
    EXPECT_EQ(m_secrets.items.at(QStringLiteral("svc/x-oauth-credentials")),
              "{\"accessToken\":\"access\",\"clientID\":\"client\",\"clientSecret\":\"sécret\","
              "\"expiresAt\":800000000.25,\"refreshToken\":\"refresh\",\"userID\":\"42\","
              "\"username\":\"ada\"}");
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), m_whole);
}

TEST_F(KeychainCredentialVaultTest, LeavesAbsentFieldsOutOfTheJSON)
{
    const XCredentials bare{.clientID = QStringLiteral("c"),
                            .clientSecret = {},
                            .accessToken = QStringLiteral("a"),
                            .refreshToken = {},
                            .expiresAt = {},
                            .userID = QStringLiteral("1"),
                            .username = {}};
    blockOn(m_vault.saveXCredentials(bare));
    EXPECT_EQ(m_secrets.items.at(QStringLiteral("svc/x-oauth-credentials")),
              "{\"accessToken\":\"a\",\"clientID\":\"c\",\"userID\":\"1\"}");
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), bare);
}

TEST_F(KeychainCredentialVaultTest, SavesTwiceIntoOneItem)
{
    blockOn(m_vault.saveXCredentials(m_whole));
    XCredentials newer = m_whole;
    newer.accessToken = QStringLiteral("newer");
    blockOn(m_vault.saveXCredentials(newer));
    EXPECT_EQ(m_secrets.items.size(), 1U);
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), newer);
}

TEST_F(KeychainCredentialVaultTest, KeepsEachKindsKeyUnderAnAccountOfItsOwn)
{
    const std::map<AIProviderKind, QString> accounts{
        {AIProviderKind::openAI, QStringLiteral("svc/openai-api-key")},
        {AIProviderKind::openRouter, QStringLiteral("svc/ai-api-key-openrouter")},
        {AIProviderKind::xAI, QStringLiteral("svc/ai-api-key-xai")},
        {AIProviderKind::ollama, QStringLiteral("svc/ai-api-key-ollama")},
        {AIProviderKind::openAICompatible, QStringLiteral("svc/ai-api-key-openai_compatible")},
        {AIProviderKind::codexSubscription, QStringLiteral("svc/ai-api-key-codex_subscription")},
        {AIProviderKind::grokSubscription, QStringLiteral("svc/ai-api-key-grok_subscription")},
        {AIProviderKind::kimiCodingSubscription, QStringLiteral("svc/ai-api-key-kimi_coding_subscription")},
        {AIProviderKind::nousResearchAPI, QStringLiteral("svc/ai-api-key-nous_research_api")},
    };
    for (const auto& [kind, account] : accounts) {
        blockOn(m_vault.saveAIKey(account + QStringLiteral(" é"), kind));
        EXPECT_EQ(m_secrets.items.at(account), (account + QStringLiteral(" é")).toUtf8());
    }
    EXPECT_EQ(m_secrets.items.size(), accounts.size());
    for (const auto& [kind, account] : accounts)
        EXPECT_EQ(blockOn(m_vault.loadAIKey(kind)), account + QStringLiteral(" é"));
}

TEST_F(KeychainCredentialVaultTest, SavesAnEmptyKeyToo)
{
    blockOn(m_vault.saveOpenAIKey(QString()));
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), QString());
}

TEST_F(KeychainCredentialVaultTest, TakesAKeyThatIsNotUTF8ForAbsent)
{
    m_secrets.items[QStringLiteral("svc/openai-api-key")] = "\xff\xfe";
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), std::nullopt);
}

TEST_F(KeychainCredentialVaultTest, FailsForCredentialsThatDoNotDecodeAndLeavesThem)
{
    const QString item = QStringLiteral("svc/x-oauth-credentials");
    for (const QByteArray json : {"", "secret-text", "{\"clientID\":\"secret-text\"}"}) {
        m_secrets.items[item] = json;
        try {
            (void)blockOn(m_vault.loadXCredentials());
            ADD_FAILURE() << json.constData();
        } catch (const JSONCodingError& error) {
            EXPECT_FALSE(error.description().contains(QStringLiteral("secret-text")));
        }
        EXPECT_EQ(m_secrets.items.at(item), json);
    }
}

TEST_F(KeychainCredentialVaultTest, ClearsXFirstAndThenTheKindsInTheirOrder)
{
    blockOn(m_vault.clearAll());
    EXPECT_EQ(m_secrets.calls, QStringList({QStringLiteral("remove svc/x-oauth-credentials"),
                                            QStringLiteral("remove svc/openai-api-key"),
                                            QStringLiteral("remove svc/ai-api-key-openrouter"),
                                            QStringLiteral("remove svc/ai-api-key-xai"),
                                            QStringLiteral("remove svc/ai-api-key-ollama"),
                                            QStringLiteral("remove svc/ai-api-key-openai_compatible"),
                                            QStringLiteral("remove svc/ai-api-key-codex_subscription"),
                                            QStringLiteral("remove svc/ai-api-key-grok_subscription"),
                                            QStringLiteral("remove svc/ai-api-key-kimi_coding_subscription"),
                                            QStringLiteral("remove svc/ai-api-key-nous_research_api")}));
}

TEST_F(KeychainCredentialVaultTest, StopsClearingAtTheFirstFailureWithTheRestInPlace)
{
    for (qsizetype failing = 0; failing < 10; ++failing) {
        blockOn(m_vault.saveXCredentials(m_whole));
        for (const auto& row : rawValues(AIProviderKind{}))
            blockOn(m_vault.saveAIKey(QStringLiteral("k"), row.value));
        m_secrets.failures = {
            {m_secrets.calls.size() + failing, {KeychainError::interactionNotAllowed, {}, {}}}};
        EXPECT_EQ(failure(m_vault.clearAll()).status(), KeychainError::interactionNotAllowed);
        EXPECT_EQ(m_secrets.items.size(), static_cast<std::size_t>(10 - failing));
    }
}

TEST_F(KeychainCredentialVaultTest, PassesOnTheStatusOfEachFailingCall)
{
    const SecretOutcome locked{KeychainError::interactionNotAllowed, {}, QStringLiteral("Locked.")};
    for (qsizetype i = 0; i < 5; ++i)
        m_secrets.failures[i] = locked;
    EXPECT_EQ(failure(m_vault.loadXCredentials()).status(), -25308);
    EXPECT_EQ(failure(m_vault.loadOpenAIKey()).status(), -25308);
    EXPECT_EQ(failure(m_vault.saveXCredentials(m_whole)).description(), u"Locked.");
    EXPECT_EQ(failure(m_vault.saveOpenAIKey(QStringLiteral("k"))).description(), u"Locked.");
    EXPECT_EQ(failure(m_vault.clearAll()).description(), u"Locked.");
    EXPECT_EQ(m_secrets.calls.size(), 5);
}

TEST_F(KeychainCredentialVaultTest, FailsWhenAReadSucceedsWithoutData)
{
    m_secrets.failures[0] = SecretOutcome{};
    const KeychainError error = failure(m_vault.loadXCredentials());
    EXPECT_EQ(error.status(), 0);
    EXPECT_EQ(error.description(), u"Keychain error 0");
}

TEST(KeychainError, HasTheStoresOwnMessageElseTheNumber)
{
    EXPECT_EQ(KeychainError(-25293, QStringLiteral("Wrong password.")).description(), u"Wrong password.");
    EXPECT_EQ(KeychainError(-25293).description(), u"Keychain error -25293");
}

} // namespace
} // namespace mirel
