#include "model/Demo.h"

#include "credentials/InMemoryCredentialVault.h"

namespace mirel {

QString DemoError::description() const
{
    switch (m_case) {
    case Case::noSimulator:
        return QStringLiteral("The demo needs a running mirel-simulator and its address in MIREL_X_API_URL.");
    case Case::noLibrary:
        return QStringLiteral("The demo needs a library of its own, so that simulated posts never mix with "
                              "yours. Name a directory for it in MIREL_LOCAL_DATA_DIR.");
    }
    Q_UNREACHABLE();
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
        throw DemoError(DemoError::Case::noSimulator);
    if (environment.value(QStringLiteral("MIREL_LOCAL_DATA_DIR")).isEmpty())
        throw DemoError(DemoError::Case::noLibrary);
    return {
        .environment = environment,
        .makeVault = [] { return std::make_unique<InMemoryCredentialVault>(account()); },
    };
}

} // namespace mirel
