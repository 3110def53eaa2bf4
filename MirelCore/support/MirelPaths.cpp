#include "support/MirelPaths.h"

#include "support/platform/UserDirectories.h"

#include <QDir>

namespace mirel {

namespace {

QString standardDirectory(const QProcessEnvironment& environment)
{
    return QDir(userApplicationSupportDirectory(environment)).filePath(QStringLiteral("Mirel"));
}

} // namespace

QString MirelPaths::applicationSupportDirectory(const QProcessEnvironment& environment,
                                                const FileManager& fileManager)
{
    const QString chosen = environment.value(QStringLiteral("MIREL_LOCAL_DATA_DIR"));
    const QString directory = chosen.isEmpty() ? standardDirectory(environment) : chosen;
    fileManager.createDirectory(directory);
    return directory;
}

QString MirelPaths::databasePath(const QProcessEnvironment& environment)
{
    const QDir directory(applicationSupportDirectory(environment));
    return directory.filePath(QStringLiteral("mirel.sqlite3"));
}

QString MirelPaths::cacheDirectory(const QProcessEnvironment& environment)
{
    const QString caches = userCachesDirectory(environment);
    return QDir(caches.isEmpty() ? QDir::tempPath() : caches).filePath(QStringLiteral("Mirel"));
}

QString MirelPaths::runtimeDirectory(const QProcessEnvironment& environment)
{
    const QString runtime = userRuntimeDirectory(environment);
    if (!runtime.isEmpty())
        return runtime;
    const QString directory = standardDirectory(environment);
    FileManager::standard().createDirectory(directory);
    return directory;
}

} // namespace mirel
