#include "credentials/CredentialImportError.h"
#include "credentials/CredentialImportService.h"
#include "credentials/InMemoryCredentialVault.h"
#include "support/BlockOn.h"

#include <QCoreApplication>

#include <cstdlib>

// Any bytes as the document of a credential import: either it is refused with its own error and nothing is
// saved, or the result tells exactly what was saved, and that survives its way through JSON and UTF-8.

namespace {

using namespace mirel;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

bool isTrimmedText(const QString& text)
{
    return !text.isEmpty() && text == text.trimmed() && text.isValidUtf16();
}

void requireRoundTrip(XCredentials credentials)
{
    auto decoded = decodeJSON<XCredentials>(encodeJSON(credentials));
    require(decoded.expiresAt.has_value() == credentials.expiresAt.has_value());
    // In distant millennia the two time scales differ in the last digit.
    decoded.expiresAt.reset();
    credentials.expiresAt.reset();
    require(decoded == credentials);
}

void check(InMemoryCredentialVault& vault, const CredentialImportResult& result)
{
    const auto credentials = blockOn(vault.loadXCredentials());
    const auto key = blockOn(vault.loadOpenAIKey());
    require(result.x == credentials.has_value());
    require(result.openAI == key.has_value());
    require(result.ok == (result.x || result.openAI));
    if (key) {
        require(isTrimmedText(*key));
        require(QString::fromUtf8(key->toUtf8()) == *key);
    }
    if (credentials) {
        require(isTrimmedText(credentials->clientID));
        require(isTrimmedText(credentials->accessToken));
        require(isTrimmedText(credentials->userID));
        requireRoundTrip(*credentials);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    static int argumentCount = 0;
    static const QCoreApplication application(argumentCount, nullptr);
    InMemoryCredentialVault vault;
    const QByteArray document(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        CredentialImportService service(vault);
        check(vault, blockOn(service.importCredentials(document, QProcessEnvironment())));
    } catch (const CredentialImportError&) {
        require(!blockOn(vault.loadXCredentials()));
        require(!blockOn(vault.loadOpenAIKey()));
    }
    return 0;
}
