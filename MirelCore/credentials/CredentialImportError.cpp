#include "credentials/CredentialImportError.h"

namespace mirel {

CredentialImportError::CredentialImportError(Case errorCase)
    : m_case(errorCase)
{
}

QString CredentialImportError::description() const
{
    switch (m_case) {
    case Case::invalidInput:
        return QStringLiteral("Credential input is not valid JSON.");
    case Case::incompleteXCredentials:
        return QStringLiteral("X credentials are incomplete.");
    }
    Q_UNREACHABLE();
}

} // namespace mirel
