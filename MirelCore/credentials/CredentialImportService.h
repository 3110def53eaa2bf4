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

    // Saves what `document`, a CredentialImportPayload in JSON, holds. X_CLIENT_ID, X_CLIENT_SECRET and
    // OPENAI_API_KEY stand in for what it leaves out or blank. Throws CredentialImportError before anything
    // is saved, or what the vault throws; X credentials that were saved by then stay.
    QCoro::Task<CredentialImportResult> importCredentials(QByteArray document,
                                                          QProcessEnvironment environment);

private:
    CredentialVault& m_vault;
};

} // namespace mirel
