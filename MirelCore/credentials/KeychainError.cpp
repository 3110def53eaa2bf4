#include "credentials/KeychainError.h"

namespace mirel {

KeychainError::KeychainError(qint32 status, QString message)
    : m_status(status)
    , m_message(std::move(message))
{
}

QString KeychainError::description() const
{
    if (!m_message.isEmpty())
        return m_message;
    return QStringLiteral("Keychain error %1").arg(m_status);
}

} // namespace mirel
