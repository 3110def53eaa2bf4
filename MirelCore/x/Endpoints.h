#pragma once

#include "x/EndpointsError.h"

#include <QProcessEnvironment>
#include <QUrl>

namespace mirel {

// Where X is found: constants of the build, which only a simulator on this computer may replace.
struct Endpoints
{
    // The root of the API.
    QUrl xAPI = QUrl(QStringLiteral("https://api.x.com/2"));
    // The page on which the user allows Mirel to read the account.
    QUrl xAuthorize = QUrl(QStringLiteral("https://x.com/i/oauth2/authorize"));

    // The endpoints with MIREL_X_API_URL and MIREL_X_AUTHORIZE_URL of `environment` applied; an empty one
    // counts as not set. Throws EndpointsError unless each names a loopback host (127.0.0.0/8, ::1,
    // localhost) over HTTP or HTTPS.
    [[nodiscard]] static Endpoints fromEnvironment(const QProcessEnvironment& environment);

    friend bool operator==(const Endpoints&, const Endpoints&) = default;
};

} // namespace mirel
