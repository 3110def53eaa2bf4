#include "StandardStreamError.h"

namespace mirel {

StandardStreamError::StandardStreamError(Case errorCase, QString reason)
    : m_case(errorCase)
    , m_reason(std::move(reason))
{
}

QString StandardStreamError::description() const
{
    if (m_case == Case::unreadableInput)
        return QStringLiteral("Standard input could not be read: %1.").arg(m_reason);
    return QStringLiteral("Standard output could not be written: %1.").arg(m_reason);
}

} // namespace mirel
