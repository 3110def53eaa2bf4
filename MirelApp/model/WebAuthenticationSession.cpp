#include "model/WebAuthenticationSession.h"

namespace mirel {

QString WebAuthenticationCanceled::description() const
{
    return QStringLiteral("The sign-in was canceled.");
}

WebAuthenticationSession::~WebAuthenticationSession() = default;

} // namespace mirel
