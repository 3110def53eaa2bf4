#pragma once

#include <QString>
#include <QUrl>

namespace mirel {

// What the user's browser is sent out with.
struct PendingXAuthorization
{
    // Where the user allows Mirel to read the account.
    QUrl authorizationURL;
    // What the callback must bring back.
    QString state;

    friend bool operator==(const PendingXAuthorization&, const PendingXAuthorization&) = default;
};

} // namespace mirel
