#include "testing/Printing.h"

#include "FakeSecretStore.h"
#include "MirelEntryPoint.h"
#include "credentials/InMemoryCredentialVault.h"
#include "credentials/KeychainCredentialVault.h"
#include "support/BlockOn.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace mirel {
namespace {

// A device that counts the writes and can refuse them, or reading.
class Stream : public QIODevice
{
public:
    Stream() { open(QIODevice::ReadWrite | QIODevice::Unbuffered); }

    QByteArray content;
    int writes = 0;
    bool isBroken = false;

protected:
    qint64 readData(char*, qint64) override
    {
        setErrorString(QStringLiteral("Input/output error"));
        return -1;
    }
    qint64 writeData(const char* data, qint64 size) override
    {
        if (isBroken) {
            setErrorString(QStringLiteral("No space left on device"));
            return -1;
        }
        ++writes;
        content.append(data, size);
        return size;
    }
};

class ImportCredentialsTest : public ::testing::Test
{
protected:
    int import(const QByteArray& document, CredentialVault& vault)
    {
        QBuffer input;
        input.setData(document);
        input.open(QIODevice::ReadOnly);
        return blockOn(MirelEntryPoint::importCredentials(vault, input, m_environment, m_output, m_errors));
    }
    int import(const QByteArray& document) { return import(document, m_vault); }

    InMemoryCredentialVault m_vault;
    QProcessEnvironment m_environment;
    Stream m_output;
    Stream m_errors;
};

TEST_F(ImportCredentialsTest, WritesTheResultAsOneLineWithSortedKeysInOneWrite)
{
    EXPECT_EQ(import(R"({"client_id":"a","access_token":"t","user_id":"1"})"), 0);
    EXPECT_EQ(m_output.content, "{\"ok\":true,\"openAI\":false,\"x\":true}\n");
    EXPECT_EQ(m_output.writes, 1);
    EXPECT_EQ(m_errors.content, "");
    EXPECT_EQ(blockOn(m_vault.loadXCredentials())->accessToken, u"t");
}

TEST_F(ImportCredentialsTest, TakesTheEnvironmentIntoAccount)
{
    m_environment.insert(QStringLiteral("OPENAI_API_KEY"), QStringLiteral("k"));
    EXPECT_EQ(import("{}"), 0);
    EXPECT_EQ(m_output.content, "{\"ok\":true,\"openAI\":true,\"x\":false}\n");
}

TEST_F(ImportCredentialsTest, ReadsALongDocumentToItsEnd)
{
    const QByteArray padding(1'000'000, ' ');
    EXPECT_EQ(import('{' + padding + R"("openai_api_key":"k")" + padding + '}'), 0);
    EXPECT_EQ(m_output.content, "{\"ok\":true,\"openAI\":true,\"x\":false}\n");
}

TEST_F(ImportCredentialsTest, ReportsWhatIsNoDocumentInOneWriteAndStatus1)
{
    EXPECT_EQ(import("not json"), 1);
    EXPECT_EQ(m_errors.content, "Credential import failed: Credential input is not valid JSON.\n");
    EXPECT_EQ(m_errors.writes, 1);
    EXPECT_EQ(m_output.content, "");
}

TEST_F(ImportCredentialsTest, ReportsIncompleteCredentials)
{
    EXPECT_EQ(import(R"({"client_id":"a"})"), 1);
    EXPECT_EQ(m_errors.content, "Credential import failed: X credentials are incomplete.\n");
}

TEST_F(ImportCredentialsTest, ReportsAFailingVault)
{
    FakeSecrets secrets;
    secrets.failures[0] = {-25291, {}, {}};
    KeychainCredentialVault vault(QStringLiteral("svc"), std::make_unique<FakeSecretStore>(secrets));
    EXPECT_EQ(import(R"({"openai_api_key":"k"})", vault), 1);
    EXPECT_EQ(m_errors.content, "Credential import failed: Keychain error -25291\n");
    EXPECT_EQ(m_output.content, "");
}

TEST_F(ImportCredentialsTest, ReportsAnOutputThatTakesNothing)
{
    m_output.isBroken = true;
    EXPECT_EQ(import("{}"), 1);
    EXPECT_EQ(m_errors.content,
              "Credential import failed: Standard output could not be written: No space left on device.\n");
}

TEST_F(ImportCredentialsTest, ReportsAnInputThatCannotBeRead)
{
    Stream broken;
    EXPECT_EQ(blockOn(MirelEntryPoint::importCredentials(m_vault, broken, m_environment, m_output, m_errors)),
              1);
    EXPECT_EQ(m_errors.content,
              "Credential import failed: Standard input could not be read: Input/output error.\n");
}

// The status of a run with those arguments, whose application ends with 7.
int runWith(std::vector<QByteArray> arguments)
{
    std::vector<char*> pointers;
    for (QByteArray& argument : arguments)
        pointers.push_back(argument.data());
    int received = 0;
    const int status = MirelEntryPoint::main(static_cast<int>(pointers.size()), pointers.data(),
                                             [&received](int count, char**) {
                                                 received = count;
                                                 return 7;
                                             });
    EXPECT_EQ(received, static_cast<int>(pointers.size()));
    return status;
}

TEST(MirelEntryPoint, RunsTheApplicationUnlessArgument1IsExactlyTheSwitch)
{
    EXPECT_EQ(runWith({"mirel"}), 7);
    EXPECT_EQ(runWith({"mirel", ""}), 7);
    EXPECT_EQ(runWith({"mirel", "--import-credentials"}), 7);
    EXPECT_EQ(runWith({"mirel", "--IMPORT-CREDENTIALS-STDIN"}), 7);
    EXPECT_EQ(runWith({"mirel", "--import-credentials-stdin=1"}), 7);
    EXPECT_EQ(runWith({"mirel", "other", "--import-credentials-stdin"}), 7);
    EXPECT_EQ(runWith({"--import-credentials-stdin"}), 7);
}

TEST(MirelEntryPoint, KeepsTheSecretsOfTheEnvironmentFromWhatTheApplicationStarts)
{
    qputenv("X_CLIENT_SECRET", "planted");
    qputenv("OPENAI_API_KEY", "planted");
    QByteArray program = "Mirel";
    std::array<char*, 2> arguments{program.data(), nullptr};
    QProcessEnvironment inherited;
    MirelEntryPoint::main(1, arguments.data(), [&inherited](int, char**) {
        inherited = QProcessEnvironment::systemEnvironment();
        return 0;
    });
    EXPECT_FALSE(inherited.isEmpty());
    EXPECT_FALSE(inherited.toStringList().join(u' ').contains(QStringLiteral("planted")));
}

} // namespace
} // namespace mirel
