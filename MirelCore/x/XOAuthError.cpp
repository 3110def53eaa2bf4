#include "x/XOAuthError.h"

namespace mirel {

XOAuthError::XOAuthError(Case errorCase, int status, QString text)
    : m_case(errorCase)
    , m_status(status)
    , m_text(std::move(text))
{
}

XOAuthError XOAuthError::authorizationDenied(QString reason)
{
    return XOAuthError(Case::authorizationDenied, 0, std::move(reason));
}

XOAuthError XOAuthError::http(int status, QString message)
{
    return XOAuthError(Case::http, status, std::move(message));
}

XOAuthError XOAuthError::invalidConfiguration()
{
    return XOAuthError(Case::invalidConfiguration);
}

XOAuthError XOAuthError::noPendingAuthorization()
{
    return XOAuthError(Case::noPendingAuthorization);
}

XOAuthError XOAuthError::stateMismatch()
{
    return XOAuthError(Case::stateMismatch);
}

XOAuthError XOAuthError::invalidCallback()
{
    return XOAuthError(Case::invalidCallback);
}

XOAuthError XOAuthError::invalidResponse()
{
    return XOAuthError(Case::invalidResponse);
}

QString XOAuthError::description() const
{
    switch (m_case) {
    case Case::authorizationDenied:
        return QStringLiteral("X authorization was not completed: ") + m_text;
    case Case::http:
        return QStringLiteral("X OAuth returned HTTP %1: ").arg(m_status) + m_text;
    case Case::invalidConfiguration:
        return QStringLiteral("Enter an X OAuth client ID and redirect URI.");
    case Case::noPendingAuthorization:
        return QStringLiteral("Start the X connection again before opening this callback.");
    case Case::stateMismatch:
        return QStringLiteral("The X authorization callback did not match this connection attempt.");
    case Case::invalidCallback:
        return QStringLiteral("The X authorization callback is missing its code.");
    case Case::invalidResponse:
        return QStringLiteral("X returned an unreadable OAuth response.");
    }
    Q_UNREACHABLE();
}

bool operator==(const XOAuthError& a, const XOAuthError& b)
{
    return a.m_case == b.m_case && a.m_status == b.m_status && a.m_text == b.m_text;
}

} // namespace mirel
