#include "library/OrganizationError.h"

namespace mirel {

OrganizationError::OrganizationError(Case errorCase)
    : m_case(errorCase)
{
}

QString OrganizationError::description() const
{
    switch (m_case) {
    case Case::invalidName:
        return QStringLiteral("A non-empty name is required.");
    case Case::folderCycle:
        return QStringLiteral("A folder cannot be nested inside itself or one of its descendants.");
    case Case::missingTarget:
        return QStringLiteral("The rule target no longer exists.");
    }
    Q_UNREACHABLE();
}

} // namespace mirel
