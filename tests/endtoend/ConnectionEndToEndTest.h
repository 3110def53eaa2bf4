#pragma once

#include "KeyringEndToEndTest.h"
#include "PlantedSecret.h"

#include <QDir>

namespace mirel::testing {

// An account that is connected by the program itself, with a real keyring.
class ConnectionEndToEndTest : public KeyringEndToEndTest
{
protected:
    static QStringList connecting()
    {
        return {QStringLiteral("connect"), QStringLiteral("--client-id"), QStringLiteral("simulated-client")};
    }

    static QStringList connectingWithSecret()
    {
        return connecting() + QStringList{QStringLiteral("--client-secret-stdin")};
    }

    // The window program without a screen.
    [[nodiscard]] QProcessEnvironment windowEnvironment() const
    {
        QProcessEnvironment result = environment();
        result.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        result.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        return result;
    }

    [[nodiscard]] QString libraryPath() const { return directory.filePath(QStringLiteral("mirel.sqlite3")); }

    static QString socketPath()
    {
        return QDir(qEnvironmentVariable("XDG_RUNTIME_DIR")).filePath(QStringLiteral("mirel.sock"));
    }
};

} // namespace mirel::testing
