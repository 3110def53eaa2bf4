#include "support/FileManager.h"

#include "support/FileError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mirel {

FileManager::~FileManager() = default;

void FileManager::createDirectory(const QString& path) const
{
    const QString cleanPath = QDir::cleanPath(path);
    if (QFileInfo(cleanPath).isDir())
        return;
    const QString parent = QFileInfo(cleanPath).path();
    if (parent != cleanPath)
        createDirectory(parent);
    if (::mkdir(QFile::encodeName(cleanPath).constData(), S_IRWXU) == 0)
        return;
    const int error = errno;
    // Another process may have made it in the meantime.
    if (error != EEXIST || !QFileInfo(cleanPath).isDir())
        throw FileError(cleanPath, error);
}

void FileManager::createPrivateFile(const QString& path) const
{
    const int file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                            S_IRUSR | S_IWUSR);
    if (file >= 0) {
        ::close(file);
        return;
    }
    if (errno != EEXIST)
        throw FileError(path, errno);
}

bool FileManager::removeDirectory(const QString& path) const
{
    return QDir(path).removeRecursively();
}

const FileManager& FileManager::standard()
{
    static const FileManager manager;
    return manager;
}

} // namespace mirel
