#include "x/XAPIError.h"

#include <QLocale>

namespace mirel {

XAPIError XAPIError::http(int status, QString message)
{
    XAPIError error(Case::http);
    error.m_status = status;
    error.m_message = std::move(message);
    return error;
}

XAPIError XAPIError::rateLimited(std::optional<Instant> resetAt)
{
    XAPIError error(Case::rateLimited);
    error.m_resetAt = resetAt;
    return error;
}

XAPIError XAPIError::credentialsMissing()
{
    return XAPIError(Case::credentialsMissing);
}

XAPIError XAPIError::reconnectRequired()
{
    return XAPIError(Case::reconnectRequired);
}

XAPIError XAPIError::invalidResponse()
{
    return XAPIError(Case::invalidResponse);
}

QString XAPIError::description() const
{
    switch (m_case) {
    case Case::http:
        return QStringLiteral("X returned HTTP %1: ").arg(m_status) + m_message;
    case Case::rateLimited:
        if (!m_resetAt)
            return QStringLiteral("X rate limit reached.");
        return QStringLiteral("X rate limit reached until %1.")
            .arg(QLocale().toString(m_resetAt->toDateTime().toLocalTime(), QLocale::ShortFormat));
    case Case::credentialsMissing:
        return QStringLiteral("X credentials are not configured.");
    case Case::reconnectRequired:
        return QStringLiteral("The X connection must be renewed.");
    case Case::invalidResponse:
        return QStringLiteral("X returned an unreadable response.");
    }
    Q_UNREACHABLE();
}

bool operator==(const XAPIError& a, const XAPIError& b)
{
    return a.m_case == b.m_case && a.m_status == b.m_status && a.m_message == b.m_message &&
           a.m_resetAt == b.m_resetAt;
}

} // namespace mirel
