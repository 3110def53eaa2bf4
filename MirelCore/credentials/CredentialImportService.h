#pragma once

#include "credentials/CredentialImportPayload.h"
#include "credentials/CredentialImportResult.h"
#include "credentials/CredentialVault.h"

#include <QProcessEnvironment>

namespace mirel {

// Fills a vault from a document, with fallbacks from the environment.
class CredentialImportService
{
public:
    // `vault` outlives the service.
    explicit CredentialImportService(CredentialVault& vault);

    // The variables of the environment that hold secrets.
    [[nodiscard]] static QStringList secretVariables();

    // Returns the environment of this process and takes those variables out of it: what the process starts
    // does not inherit them, and their text is overwritten, since other programs of the user can read what a
    // process was started with for as long as it runs. To be called before there is another thread.
    [[nodiscard]] static QProcessEnvironment takeEnvironment();

    // Saves what `document`, a CredentialImportPayload in JSON, holds. X_CLIENT_ID, X_CLIENT_SECRET and
    // OPENAI_API_KEY stand in for what it leaves out or blank. Throws CredentialImportError before anything
    // is saved, or what the vault throws; X credentials that were saved by then stay.
    QCoro::Task<CredentialImportResult> importCredentials(QByteArray document,
                                                          QProcessEnvironment environment);

private:
    CredentialVault& m_vault;
};

} // namespace mirel
