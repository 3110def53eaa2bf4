#include "transport/HTTPTransportError.h"

namespace mirel {

HTTPTransportError::HTTPTransportError(Case errorCase, const QUrl& url)
    : m_case(errorCase)
    , m_host(url.host().isEmpty() ? QStringLiteral("the server") : url.host())
{
}

QString HTTPTransportError::description() const
{
    switch (m_case) {
    case Case::connection:
        return QStringLiteral("The connection to %1 failed. Check the network and try again.").arg(m_host);
    case Case::timeout:
        return QStringLiteral("The request to %1 timed out.").arg(m_host);
    case Case::tls:
        return QStringLiteral("A secure connection to %1 could not be made.").arg(m_host);
    case Case::tooLarge:
        return QStringLiteral("The response from %1 is too large.").arg(m_host);
    case Case::canceled:
        return QStringLiteral("The request to %1 was canceled.").arg(m_host);
    case Case::badServerResponse:
        return QStringLiteral("The response from %1 could not be understood.").arg(m_host);
    case Case::redirectRefused:
        return QStringLiteral("A redirect from %1 was refused.").arg(m_host);
    }
    Q_UNREACHABLE();
}

} // namespace mirel
