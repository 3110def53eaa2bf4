#include "testing/Printing.h"

#include "FakeSecretStore.h"
#include "credentials/CredentialImportError.h"
#include "credentials/CredentialImportService.h"
#include "credentials/InMemoryCredentialVault.h"
#include "credentials/KeychainCredentialVault.h"
#include "support/BlockOn.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

using Case = CredentialImportError::Case;

class CredentialImportServiceTest : public ::testing::Test
{
protected:
    CredentialImportResult import(const QByteArray& document)
    {
        return blockOn(CredentialImportService(m_vault).importCredentials(document, m_environment));
    }

    Case failure(const QByteArray& document)
    {
        try {
            import(document);
        } catch (const CredentialImportError& error) {
            EXPECT_EQ(blockOn(m_vault.loadXCredentials()), std::nullopt);
            EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), std::nullopt);
            return error.errorCase();
        }
        throw std::logic_error("the import did not fail");
    }

    std::optional<XCredentials> saved() { return blockOn(m_vault.loadXCredentials()); }

    void set(const char* variable, const char* value)
    {
        m_environment.insert(QString::fromLatin1(variable), QString::fromLatin1(value));
    }

    InMemoryCredentialVault m_vault;
    QProcessEnvironment m_environment;
};

TEST_F(CredentialImportServiceTest, SavesAWholeDocument)
{
    const auto result = import(R"({"client_id":" c ","client_secret":"s\n","access_token":"\ta",
        "refresh_token":" r","expires_at":" 2026-08-19T17:17:56.500Z ","user_id":"42 ","username":" ada ",
        "openai_api_key":" k ","unknown":7})");
    EXPECT_EQ(result, (CredentialImportResult{.ok = true, .x = true, .openAI = true}));
    const XCredentials expected{.clientID = QStringLiteral("c"),
                                .clientSecret = QStringLiteral("s"),
                                .accessToken = QStringLiteral("a"),
                                .refreshToken = QStringLiteral("r"),
                                .expiresAt = Instant::fromSecondsSince1970(1'787'159'876.5),
                                .userID = QStringLiteral("42"),
                                .username = QStringLiteral("ada")};
    EXPECT_EQ(saved(), expected);
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), QStringLiteral("k"));
}

TEST_F(CredentialImportServiceTest, SavesNothingForAnEmptyDocument)
{
    EXPECT_EQ(import("{}"), CredentialImportResult{});
    EXPECT_EQ(import(R"({"client_id":null,"access_token":" ","user_id":"","openai_api_key":"\n"})"),
              CredentialImportResult{});
    EXPECT_EQ(saved(), std::nullopt);
}

TEST_F(CredentialImportServiceTest, SavesAnOpenAIKeyAlone)
{
    EXPECT_EQ(import(R"({"openai_api_key":" k "})"),
              (CredentialImportResult{.ok = true, .x = false, .openAI = true}));
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), QStringLiteral("k"));
    EXPECT_EQ(saved(), std::nullopt);
}

TEST_F(CredentialImportServiceTest, SavesXCredentialsAlone)
{
    EXPECT_EQ(import(R"({"client_id":"a","access_token":"t","user_id":"1"})"),
              (CredentialImportResult{.ok = true, .x = true, .openAI = false}));
    EXPECT_EQ(saved()->clientSecret, std::nullopt);
    EXPECT_EQ(saved()->refreshToken, std::nullopt);
    EXPECT_EQ(saved()->expiresAt, std::nullopt);
    EXPECT_EQ(saved()->username, std::nullopt);
}

TEST_F(CredentialImportServiceTest, RefusesSomeOfTheThreeThatBelongTogether)
{
    for (const QByteArray document :
         {R"({"client_id":"a"})", R"({"access_token":"t"})", R"({"user_id":"1"})",
          R"({"client_id":"a","access_token":"t"})", R"({"client_id":"a","user_id":"1"})",
          R"({"access_token":"t","user_id":"1"})", R"({"client_id":" ","access_token":"t","user_id":"1"})",
          R"({"client_id":"a","openai_api_key":"k"})"})
        EXPECT_EQ(failure(document), Case::incompleteXCredentials) << document.constData();
}

TEST_F(CredentialImportServiceTest, TakesWhatIsMissingFromTheEnvironment)
{
    set("X_CLIENT_ID", " env-id ");
    set("X_CLIENT_SECRET", "env-secret");
    set("OPENAI_API_KEY", "env-key");
    import(R"({"access_token":"t","user_id":"1","client_secret":"  "})");
    EXPECT_EQ(saved()->clientID, u"env-id");
    EXPECT_EQ(saved()->clientSecret, QStringLiteral("env-secret"));
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), QStringLiteral("env-key"));
}

TEST_F(CredentialImportServiceTest, PrefersTheDocumentToTheEnvironment)
{
    set("X_CLIENT_ID", "env-id");
    set("X_CLIENT_SECRET", "env-secret");
    set("OPENAI_API_KEY", "env-key");
    import(R"({"client_id":"a","client_secret":"s","access_token":"t","user_id":"1","openai_api_key":"k"})");
    EXPECT_EQ(saved()->clientID, u"a");
    EXPECT_EQ(saved()->clientSecret, QStringLiteral("s"));
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), QStringLiteral("k"));
}

TEST_F(CredentialImportServiceTest, RefusesAClientIdentifierFromTheEnvironmentAlone)
{
    set("X_CLIENT_ID", "env-id");
    EXPECT_EQ(failure("{}"), Case::incompleteXCredentials);
    EXPECT_EQ(failure(R"({"openai_api_key":"k"})"), Case::incompleteXCredentials);
}

TEST_F(CredentialImportServiceTest, TakesNoTokenFromTheEnvironment)
{
    set("X_ACCESS_TOKEN", "t");
    set("X_USER_ID", "1");
    EXPECT_EQ(failure(R"({"client_id":"a"})"), Case::incompleteXCredentials);
}

TEST_F(CredentialImportServiceTest, CountsBlankVariablesAsUnset)
{
    set("X_CLIENT_ID", "  ");
    set("OPENAI_API_KEY", "");
    EXPECT_EQ(import("{}"), CredentialImportResult{});
}

struct ExpiryRow
{
    const char* name;
    QByteArray json;
    std::optional<double> secondsSince1970;
};

class CredentialExpiryTest : public CredentialImportServiceTest,
                             public ::testing::WithParamInterface<ExpiryRow>
{
};

TEST_P(CredentialExpiryTest, IsReadOrLeftOut)
{
    import(R"({"client_id":"a","access_token":"t","user_id":"1","expires_at":)" + GetParam().json + '}');
    ASSERT_TRUE(saved());
    std::optional<Instant> expected;
    if (GetParam().secondsSince1970)
        expected = Instant::fromSecondsSince1970(*GetParam().secondsSince1970);
    EXPECT_EQ(saved()->expiresAt, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CredentialExpiryTest,
    ::testing::Values(ExpiryRow{"WithFraction", R"("2001-01-01T00:00:00.250Z")", 978'307'200.25},
                      ExpiryRow{"WithoutFraction", R"("2001-01-01T00:00:00Z")", 978'307'200},
                      ExpiryRow{"WithOffset", R"("2001-01-01T01:00:00+01:00")", 978'307'200},
                      ExpiryRow{"WithBlanks", R"(" 2001-01-01T00:00:00Z\n")", 978'307'200},
                      ExpiryRow{"Word", R"("soon")", {}}, ExpiryRow{"DateAlone", R"("2001-01-01")", {}},
                      ExpiryRow{"NoZone", R"("2001-01-01T00:00:00")", {}},
                      ExpiryRow{"NoSuchDay", R"("2001-02-30T00:00:00Z")", {}},
                      ExpiryRow{"Empty", R"("")", {}}, ExpiryRow{"Blank", R"("  ")", {}},
                      ExpiryRow{"Null", "null", {}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(CredentialImportServiceTest, RefusesWhatIsNotTheDocument)
{
    for (const QByteArray document :
         {"", "not json", "{", "[]", "null", "\"text\"", "7", "{} {}", R"({"client_id":7})",
          R"({"openai_api_key":["k"]})", R"({"expires_at":800000000})", "{\"client_id\":\"\xff\"}"})
        EXPECT_EQ(failure(document), Case::invalidInput) << document.constData();
}

TEST_F(CredentialImportServiceTest, RefusesTextThatCannotBeKept)
{
    EXPECT_EQ(failure(R"({"openai_api_key":"half \ud800"})"), Case::invalidInput);
}

TEST(CredentialImportError, HasADescriptionForTheUser)
{
    EXPECT_EQ(CredentialImportError(Case::invalidInput).description(),
              u"Credential input is not valid JSON.");
    EXPECT_EQ(CredentialImportError(Case::incompleteXCredentials).description(),
              u"X credentials are incomplete.");
    EXPECT_EQ(CredentialImportError(Case::invalidInput), CredentialImportError(Case::invalidInput));
    EXPECT_FALSE(CredentialImportError(Case::invalidInput) ==
                 CredentialImportError(Case::incompleteXCredentials));
}

TEST(CredentialImportResult, HasTheFieldNamesAsKeys)
{
    EXPECT_EQ(encodeJSON(CredentialImportResult{.ok = true, .x = false, .openAI = true}),
              R"({"ok":true,"openAI":true,"x":false})");
}

TEST(CredentialImportIntoAFailingStore, KeepsTheXCredentialsThatWereSavedBefore)
{
    FakeSecrets secrets;
    secrets.failures[1] = {KeychainError::inputOutput, {}, QStringLiteral("The disk is full.")};
    KeychainCredentialVault vault(QStringLiteral("svc"), std::make_unique<FakeSecretStore>(secrets));
    try {
        blockOn(CredentialImportService(vault).importCredentials(
            R"({"client_id":"a","access_token":"t","user_id":"1","openai_api_key":"k"})", {}));
        ADD_FAILURE();
    } catch (const KeychainError& error) {
        EXPECT_EQ(error.description(), u"The disk is full.");
    }
    EXPECT_TRUE(secrets.items.contains(QStringLiteral("svc/x-oauth-credentials")));
    EXPECT_EQ(secrets.calls.size(), 2);
}

TEST(CredentialImportIntoAFailingStore, EndsWithTheFirstFailure)
{
    FakeSecrets secrets;
    secrets.failures[0] = {KeychainError::notAvailable, {}, {}};
    KeychainCredentialVault vault(QStringLiteral("svc"), std::make_unique<FakeSecretStore>(secrets));
    EXPECT_THROW(blockOn(CredentialImportService(vault).importCredentials(
                     R"({"client_id":"a","access_token":"t","user_id":"1","openai_api_key":"k"})", {})),
                 KeychainError);
    EXPECT_EQ(secrets.calls.size(), 1);
    EXPECT_TRUE(secrets.items.empty());
}

} // namespace
} // namespace mirel
