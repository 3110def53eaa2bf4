#include "support/platform/UserDirectories.h"

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

} // namespace mirel
