#pragma once

#include <QString>
#include <QVariantMap>

namespace mirel {

// The name under which Mirel's items stand in the credential store.
struct MirelKeychainConfiguration
{
    MirelKeychainConfiguration() = delete;

    static const QString productionService;
    // The key under which an application's information can name another service.
    static const QString infoPlistKey;

    // The service of the running program. Needs a QCoreApplication.
    [[nodiscard]] static QString currentService();

    // The service that the main bundle's information names; else, when the executable lies two folders
    // below the "Contents" of an application, the one that this application's Info.plist names; else
    // `productionService`. `executablePath` is empty when it is not known. A name of white space alone
    // counts as none.
    [[nodiscard]] static QString service(const QVariantMap& information, const QString& executablePath);
};

} // namespace mirel
