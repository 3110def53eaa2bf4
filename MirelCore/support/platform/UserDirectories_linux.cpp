#include "support/platform/UserDirectories.h"

#include <QDir>
#include <QFileInfo>

#include <unistd.h>

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

// One that belongs to another user is no place for secrets, such as the one that su(1) leaves behind.
QString userRuntimeDirectory(const QProcessEnvironment& environment)
{
    const QString path = environment.value(QStringLiteral("XDG_RUNTIME_DIR"));
    const QFileInfo directory(path);
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    const bool isUsable = QDir::isAbsolutePath(path) && directory.isDir() &&
                          directory.ownerId() == ::geteuid() && !(directory.permissions() & others);
    return isUsable ? path : QString();
}

} // namespace mirel
