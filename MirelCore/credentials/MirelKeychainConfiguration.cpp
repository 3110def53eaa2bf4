#include "credentials/MirelKeychainConfiguration.h"

#include "credentials/PropertyList.h"
#include "support/Text.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace mirel {

namespace {

std::optional<QString> configuredService(const QVariantMap& information)
{
    const QVariant name = information.value(MirelKeychainConfiguration::infoPlistKey);
    if (name.typeId() != QMetaType::QString)
        return std::nullopt;
    return nilIfBlank(QStringView(name.toString()));
}

// The path without its last `count` components.
QString ancestor(const QString& path, int count)
{
    QString rest = path;
    for (int i = 0; i < count; ++i)
        rest = QFileInfo(rest).path();
    return rest;
}

// The path of Info.plist in `directory`, or empty when that is not the "Contents" of an application.
QString propertyListOfApplication(const QString& directory)
{
    const QFileInfo contents(directory);
    const bool isApplication = contents.fileName() == QLatin1StringView("Contents") &&
                               QFileInfo(contents.path()).suffix() == QLatin1StringView("app");
    return isApplication ? directory + QStringLiteral("/Info.plist") : QString();
}

// A program that is no application has none.
QVariantMap mainBundleInformation(const QString& executablePath)
{
    const QString path = propertyListOfApplication(ancestor(executablePath, 2));
    return path.isEmpty() ? QVariantMap() : readPropertyList(path);
}

} // namespace

const QString MirelKeychainConfiguration::productionService = QStringLiteral("io.mirel.mac.credentials.v2");
const QString MirelKeychainConfiguration::infoPlistKey = QStringLiteral("MirelKeychainService");

QString MirelKeychainConfiguration::currentService()
{
    const QString executablePath = QCoreApplication::applicationFilePath();
    return service(mainBundleInformation(executablePath), executablePath);
}

QString MirelKeychainConfiguration::service(const QVariantMap& information, const QString& executablePath)
{
    if (const auto configured = configuredService(information))
        return *configured;
    const QString path = propertyListOfApplication(ancestor(executablePath, 3));
    if (path.isEmpty())
        return productionService;
    return configuredService(readPropertyList(path)).value_or(productionService);
}

} // namespace mirel
