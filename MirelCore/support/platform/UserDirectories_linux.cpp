#include "support/platform/UserDirectories.h"

#include <QDir>

namespace mirel {

namespace {

// The XDG base directory rules: a relative path in the variable is invalid and counts as unset.
QString baseDirectory(const QProcessEnvironment& environment, const QString& variable,
                      const QString& belowHome)
{
    const QString path = environment.value(variable);
    if (QDir::isAbsolutePath(path))
        return path;
    const QString home = environment.value(QStringLiteral("HOME"));
    return QDir(home.isEmpty() ? QDir::homePath() : home).filePath(belowHome);
}

} // namespace

QString userApplicationSupportDirectory(const QProcessEnvironment& environment)
{
    return baseDirectory(environment, QStringLiteral("XDG_DATA_HOME"), QStringLiteral(".local/share"));
}

QString userCachesDirectory(const QProcessEnvironment& environment)
{
    return baseDirectory(environment, QStringLiteral("XDG_CACHE_HOME"), QStringLiteral(".cache"));
}

} // namespace mirel
