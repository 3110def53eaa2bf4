#pragma once

#include "support/Instant.h"

#include <QString>
#include <QStringList>

namespace mirel {

// Who the simulated account belongs to, and what opens it. The same in every run.
struct SimulatedIdentity
{
    QString userID = QStringLiteral("1471900000000000001");
    QString name = QStringLiteral("Mirel Demo");
    QString username = QStringLiteral("mirel_demo");
    QString clientID = QStringLiteral("simulated-client");
    // Valid from the start, until tokens are expired.
    QString accessToken = QStringLiteral("simulated-access-token");
    QString refreshToken = QStringLiteral("simulated-refresh-token");
};

struct SimulatorOptions
{
    static constexpr int largestAccount = 50'000;
    static constexpr int mostFolders = 1'000;

    // From 0 to largestAccount.
    int posts = 1000;
    quint64 seed = 1;
    // From 0 to mostFolders.
    int folders = 6;
    // 0 picks a free one.
    quint16 port = 0;
    // When not empty, the token endpoint asks for it.
    QString clientSecret;
    // The exact addresses that an authorization may return to.
    QStringList redirectURIs{QStringLiteral("mirel://oauth/x"),
                             QStringLiteral("https://mirel.example/mac/oauth/x/callback")};
    Clock clock = &Instant::now;
};

} // namespace mirel
