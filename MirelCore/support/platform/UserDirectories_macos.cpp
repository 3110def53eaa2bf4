#include "support/platform/UserDirectories.h"

#include <QDir>
#include <QStandardPaths>

namespace mirel {

QString userApplicationSupportDirectory(const QProcessEnvironment&)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QString userCachesDirectory(const QProcessEnvironment&)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
}

// Each user has a temporary directory that is closed to others.
QString userRuntimeDirectory(const QProcessEnvironment&)
{
    return QDir::tempPath();
}

} // namespace mirel
