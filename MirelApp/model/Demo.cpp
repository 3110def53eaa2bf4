#include "model/Demo.h"

#include "credentials/InMemoryCredentialVault.h"

namespace mirel {

QString DemoError::description() const
{
    return QStringLiteral("The demo needs a running mirel-simulator and its address in MIREL_X_API_URL.");
}

XCredentials Demo::account()
{
    return {
        .clientID = QStringLiteral("simulated-client"),
        .accessToken = QStringLiteral("simulated-access-token"),
        .userID = QStringLiteral("1471900000000000001"),
        .username = QStringLiteral("mirel_demo"),
    };
}

LiveOptions Demo::liveOptions(const QProcessEnvironment& environment)
{
    if (environment.value(QStringLiteral("MIREL_X_API_URL")).isEmpty())
        throw DemoError();
    return {
        .environment = environment,
        .makeVault = [] { return std::make_unique<InMemoryCredentialVault>(account()); },
    };
}

} // namespace mirel
