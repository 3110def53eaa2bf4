#include "model/SettingsValidationError.h"

namespace mirel {

QString SettingsValidationError::description() const
{
    switch (m_case) {
    case Case::incompleteXCredentials:
        return QStringLiteral(
            "X client ID, user access token, and X user ID are required for a manual connection.");
    case Case::missingXClientID:
        return QStringLiteral("Enter an X OAuth client ID before connecting.");
    case Case::invalidXRedirectURI:
        return QStringLiteral("Enter a valid X OAuth redirect URI.");
    case Case::xAuthenticationSessionDidNotStart:
        return QStringLiteral("The secure X authorization session could not be started.");
    }
    Q_UNREACHABLE();
}

} // namespace mirel
