#include "testing/Printing.h"

#include "SilentSecretService.h"
#include "credentials/KeychainCredentialVault.h"
#include "credentials/KeychainError.h"
#include "credentials/QtKeychainSecretStore.h"
#include "support/BlockOn.h"
#include "support/Serial.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

// Against a real keyring. with-private-keyring.sh runs them, each suite in the state that it is named after.

namespace mirel {
namespace {

const QString service = QStringLiteral("io.mirel.tests");

class KeyringTest : public ::testing::Test
{
protected:
    explicit KeyringTest(const char* state)
        : m_state(state)
    {
    }

    // So that a run by hand never touches the keyring of its user.
    void SetUp() override
    {
        ASSERT_EQ(qgetenv("MIREL_TEST_KEYRING"), m_state) << "Run this through with-private-keyring.sh.";
    }

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

    // Expects every operation of a vault to fail alike.
    static void expectFailures(CredentialVault& vault, qint32 status, const QString& description)
    {
        const QList<KeychainError> errors{failure(vault.loadXCredentials()),
                                          failure(vault.saveXCredentials({})), failure(vault.loadOpenAIKey()),
                                          failure(vault.saveOpenAIKey(QStringLiteral("k"))),
                                          failure(vault.clearAll())};
        for (const KeychainError& error : errors) {
            EXPECT_EQ(error.status(), status);
            EXPECT_EQ(error.description(), description);
        }
    }

    QByteArray m_state;
};

XCredentials credentials()
{
    return {.clientID = QStringLiteral("client"),
            .clientSecret = {},
            .accessToken = QStringLiteral("accéss 😀"),
            .refreshToken = QStringLiteral("refresh"),
            .expiresAt = Instant::fromSecondsSince2001(1.5),
            .userID = QStringLiteral("42"),
            .username = {}};
}

// The number of items of the tests' service, as another program sees them.
qsizetype itemCount()
{
    auto search = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
        QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("SearchItems"));
    search.setArguments({QVariant::fromValue(QMap<QString, QString>{{QStringLiteral("server"), service}})});
    const QDBusMessage found = QDBusConnection::sessionBus().call(search);
    EXPECT_EQ(found.arguments().size(), 2) << qPrintable(found.errorMessage());
    return qdbus_cast<QList<QDBusObjectPath>>(found.arguments().value(0)).size();
}

class UnlockedKeyring : public KeyringTest
{
protected:
    UnlockedKeyring()
        : KeyringTest("unlocked")
    {
    }
    KeychainCredentialVault m_vault{service};
};

TEST_F(UnlockedKeyring, SavesUpdatesLoadsAndClears)
{
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), std::nullopt);
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), std::nullopt);
    blockOn(m_vault.clearAll());

    blockOn(m_vault.saveXCredentials(credentials()));
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), credentials());
    EXPECT_EQ(itemCount(), 1);

    XCredentials newer = credentials();
    newer.accessToken = QStringLiteral("newer");
    blockOn(m_vault.saveXCredentials(newer));
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), newer);
    EXPECT_EQ(itemCount(), 1);

    for (const auto& row : rawValues(AIProviderKind{}))
        blockOn(m_vault.saveAIKey(row.text, row.value));
    EXPECT_EQ(itemCount(), 10);
    for (const auto& row : rawValues(AIProviderKind{}))
        EXPECT_EQ(blockOn(m_vault.loadAIKey(row.value)), QString(row.text));

    blockOn(m_vault.clearAll());
    EXPECT_EQ(itemCount(), 0);
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), std::nullopt);
    EXPECT_EQ(blockOn(m_vault.loadAIKey(AIProviderKind::xAI)), std::nullopt);
}

TEST_F(UnlockedKeyring, KeepsAnEmptyKey)
{
    blockOn(m_vault.saveOpenAIKey(QString()));
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), QString());
    blockOn(m_vault.clearAll());
}

TEST_F(UnlockedKeyring, KeepsALongSecretWhole)
{
    const QString key(100'000, u'é');
    blockOn(m_vault.saveOpenAIKey(key));
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), key);
    blockOn(m_vault.clearAll());
}

TEST_F(UnlockedKeyring, RefusesASecretThatItCannotHoldAndKeepsTheOldOne)
{
    blockOn(m_vault.saveOpenAIKey(QStringLiteral("old")));
    const KeychainError error = failure(m_vault.saveOpenAIKey(QStringLiteral("a") + QChar(u'\0') + u'b'));
    EXPECT_EQ(error.status(), KeychainError::invalidParameter);
    EXPECT_EQ(error.description(), u"The secret holds characters that the credential store cannot keep.");
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), QStringLiteral("old"));
    blockOn(m_vault.clearAll());
}

TEST_F(UnlockedKeyring, KeepsServicesApart)
{
    KeychainCredentialVault other(QStringLiteral("io.mirel.tests.other"));
    blockOn(m_vault.saveOpenAIKey(QStringLiteral("k")));
    EXPECT_EQ(blockOn(other.loadOpenAIKey()), std::nullopt);
    blockOn(other.clearAll());
    EXPECT_EQ(blockOn(m_vault.loadOpenAIKey()), QStringLiteral("k"));
    blockOn(m_vault.clearAll());
}

// The destructor of Serial blocks the main thread until the call has ended.
TEST_F(UnlockedKeyring, WorksWhileTheMainThreadIsBlocked)
{
    const auto services = std::make_shared<ServiceThread>(QStringLiteral("services"));
    auto vault = std::make_unique<Serial<KeychainCredentialVault>>(
        services, [] { return std::make_unique<KeychainCredentialVault>(service); });
    auto saving = vault->call([](KeychainCredentialVault& it) { return it.saveXCredentials(credentials()); });
    auto loading = vault->call([](KeychainCredentialVault& it) { return it.loadXCredentials(); });
    vault.reset();
    blockOn(std::move(saving));
    EXPECT_EQ(blockOn(std::move(loading)), credentials());
    blockOn(m_vault.clearAll());
}

TEST_F(UnlockedKeyring, TakesWhatTheHeadlessImportSaves)
{
    QProcess import;
    import.start(QStringLiteral(MIREL_IMPORT_TOOL), {QStringLiteral("--import-credentials-stdin")});
    import.write(R"({"client_id":"c","access_token":"t","user_id":"1","openai_api_key":"k"})");
    import.closeWriteChannel();
    ASSERT_TRUE(import.waitForFinished());
    EXPECT_EQ(import.readAllStandardError(), "");
    EXPECT_EQ(import.readAllStandardOutput(), "{\"ok\":true,\"openAI\":true,\"x\":true}\n");
    EXPECT_EQ(import.exitCode(), 0);
    KeychainCredentialVault production(QStringLiteral("io.mirel.mac.credentials.v2"));
    EXPECT_EQ(blockOn(production.loadXCredentials())->accessToken, u"t");
    EXPECT_EQ(blockOn(production.loadOpenAIKey()), QStringLiteral("k"));
    blockOn(production.clearAll());
}

class LockedKeyring : public KeyringTest
{
protected:
    LockedKeyring()
        : KeyringTest("locked")
    {
    }
    KeychainCredentialVault m_vault{service};
};

// Runs before the keyring is locked, in a process of its own.
using KeyringSeed = LockedKeyring;
TEST_F(KeyringSeed, IsSaved)
{
    blockOn(m_vault.saveXCredentials(credentials()));
    blockOn(m_vault.saveOpenAIKey(QStringLiteral("k")));
    EXPECT_EQ(blockOn(m_vault.loadXCredentials()), credentials());
}

TEST_F(LockedKeyring, IsAnErrorAndNeverAnAbsentItem)
{
    const KeychainError reading = failure(m_vault.loadXCredentials());
    EXPECT_EQ(reading.status(), KeychainError::interactionNotAllowed);
    EXPECT_EQ(reading.description(), u"The keyring is locked. Unlock it and try again.");
    EXPECT_EQ(failure(m_vault.loadOpenAIKey()).status(), KeychainError::interactionNotAllowed);
}

TEST_F(LockedKeyring, TakesNothing)
{
    EXPECT_EQ(failure(m_vault.saveXCredentials(credentials())).status(),
              KeychainError::interactionNotAllowed);
}

TEST_F(LockedKeyring, IsNotClearedSilently)
{
    EXPECT_EQ(failure(m_vault.clearAll()).status(), KeychainError::interactionNotAllowed);
}

const QString noService =
    QStringLiteral("No secret service is running. Start or install a keyring (for example "
                   "GNOME Keyring or KWallet) and try again.");

class NoSecretService : public KeyringTest
{
protected:
    NoSecretService()
        : KeyringTest("without-service")
    {
    }
};

TEST_F(NoSecretService, IsSaidInWordsThatHelp)
{
    KeychainCredentialVault vault(service);
    expectFailures(vault, KeychainError::notAvailable, noService);
}

TEST_F(NoSecretService, LeavesNothingInPlainText)
{
    KeychainCredentialVault vault(service);
    (void)failure(vault.saveOpenAIKey(QStringLiteral("plain-text-key")));
    QProcess search;
    search.start(QStringLiteral("grep"),
                 {QStringLiteral("-r"), QStringLiteral("plain-text-key"), qEnvironmentVariable("HOME")});
    ASSERT_TRUE(search.waitForFinished());
    EXPECT_EQ(search.exitCode(), 1) << search.readAllStandardOutput().constData();
}

TEST_F(NoSecretService, FailsTheHeadlessImport)
{
    QProcess import;
    import.start(QStringLiteral(MIREL_IMPORT_TOOL), {QStringLiteral("--import-credentials-stdin")});
    import.write(R"({"openai_api_key":"k"})");
    import.closeWriteChannel();
    ASSERT_TRUE(import.waitForFinished());
    EXPECT_EQ(import.readAllStandardError(), "Credential import failed: " + noService.toUtf8() + '\n');
    EXPECT_EQ(import.readAllStandardOutput(), "");
    EXPECT_EQ(import.exitCode(), 1);
}

// A document that saves nothing needs no keyring.
TEST_F(NoSecretService, AFullDiskFailsTheHeadlessImport)
{
    QProcess import;
    import.setStandardOutputFile(QStringLiteral("/dev/full"));
    import.start(QStringLiteral(MIREL_IMPORT_TOOL), {QStringLiteral("--import-credentials-stdin")});
    import.write("{}");
    import.closeWriteChannel();
    ASSERT_TRUE(import.waitForFinished());
    EXPECT_EQ(import.readAllStandardError(),
              "Credential import failed: Standard output could not be written: No space left on device.\n");
    EXPECT_EQ(import.exitCode(), 1);
}

using SilentService = NoSecretService;

TEST_F(SilentService, IsGivenUpAfterTheLimit)
{
    SilentSecretService silent;
    KeychainCredentialVault vault(service,
                                  std::make_unique<QtKeychainSecretStore>(std::chrono::milliseconds(50)));
    const KeychainError error = failure(vault.loadXCredentials());
    EXPECT_EQ(error.status(), KeychainError::serviceNotAvailable);
    EXPECT_EQ(error.description(),
              u"The keyring did not answer in time. Check whether it waits for a password, and try again.");
    EXPECT_EQ(failure(vault.saveOpenAIKey(QStringLiteral("k"))).status(), KeychainError::serviceNotAvailable);
}

TEST_F(SilentService, IsNotWaitedForWhenTheCallsAreCanceledOrTheVaultEnds)
{
    SilentSecretService silent;
    auto vault = std::make_unique<KeychainCredentialVault>(service);
    auto canceled = vault->loadXCredentials();
    auto alsoCanceled = vault->saveOpenAIKey(QStringLiteral("k"));
    vault->cancelAll();
    EXPECT_EQ(failure(std::move(canceled)).status(), KeychainError::userCanceled);
    EXPECT_EQ(failure(std::move(alsoCanceled)).status(), KeychainError::userCanceled);
}

class NoBus : public KeyringTest
{
protected:
    NoBus()
        : KeyringTest("without-bus")
    {
    }
};

TEST_F(NoBus, IsSaidInTheSameWords)
{
    KeychainCredentialVault vault(service);
    expectFailures(vault, KeychainError::notAvailable, noService);
}

} // namespace
} // namespace mirel
