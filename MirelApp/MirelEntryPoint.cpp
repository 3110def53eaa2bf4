#include "MirelEntryPoint.h"

#include "StandardStreamError.h"
#include "credentials/CredentialImportService.h"
#include "credentials/KeychainCredentialVault.h"
#include "credentials/MirelKeychainConfiguration.h"
#include "support/BlockOn.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <cstring>

namespace mirel {

namespace {

int importFromStandardInput(int argumentCount, char** arguments, const QProcessEnvironment& environment)
{
    QCoreApplication application(argumentCount, arguments);
    QFile input;
    QFile output;
    QFile errors;
    // The descriptors themselves, unbuffered, so that a line goes out as one write and a full disk is
    // noticed: a stream of C would take the line and lose it at the exit.
    const bool isOpen = input.open(fileno(stdin), QIODevice::ReadOnly) &&
                        output.open(fileno(stdout), QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                        errors.open(fileno(stderr), QIODevice::WriteOnly | QIODevice::Unbuffered);
    if (!isOpen)
        return 1;
    KeychainCredentialVault vault(MirelKeychainConfiguration::currentService());
    return blockOn(MirelEntryPoint::importCredentials(vault, input, environment, output, errors));
}

QByteArray readToEnd(QIODevice& input)
{
    QByteArray bytes;
    QByteArray piece(65'536, Qt::Uninitialized);
    for (;;) {
        const qint64 size = input.read(piece.data(), piece.size());
        if (size < 0)
            throw StandardStreamError(StandardStreamError::Case::unreadableInput, input.errorString());
        if (size == 0)
            return bytes;
        bytes.append(piece.constData(), size);
    }
}

void writeLine(QIODevice& output, const QByteArray& line)
{
    if (output.write(line + '\n') != line.size() + 1)
        throw StandardStreamError(StandardStreamError::Case::unwritableOutput, output.errorString());
}

} // namespace

int MirelEntryPoint::main(int argumentCount, char** arguments,
                          const std::function<int(int, char**)>& runApplication)
{
    const QProcessEnvironment environment = CredentialImportService::takeEnvironment();
    if (argumentCount >= 2 && std::strcmp(arguments[1], "--import-credentials-stdin") == 0)
        return importFromStandardInput(argumentCount, arguments, environment);
    return runApplication(argumentCount, arguments);
}

QCoro::Task<int> MirelEntryPoint::importCredentials(CredentialVault& vault, QIODevice& input,
                                                    QProcessEnvironment environment, QIODevice& output,
                                                    QIODevice& errors)
{
    try {
        CredentialImportService service(vault);
        const QByteArray document = readToEnd(input);
        const CredentialImportResult result = co_await service.importCredentials(document, environment);
        writeLine(output, encodeJSON(result));
        co_return 0;
    } catch (const std::exception& error) {
        errors.write("Credential import failed: " + describe(error).toUtf8() + '\n');
        co_return 1;
    }
}

} // namespace mirel
