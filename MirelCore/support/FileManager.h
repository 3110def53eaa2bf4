#pragma once

#include <QString>

namespace mirel {

// The few file operations that opening a library needs, so that a test can make each of them fail.
class FileManager
{
public:
    virtual ~FileManager();

    // Creates the directory and its missing parents, readable by the user alone. One that exists stays as
    // it is. Throws FileError.
    virtual void createDirectory(const QString& path) const;

    // Creates an empty file, readable and writable by the user alone. One that exists stays as it is.
    // Throws FileError.
    virtual void createPrivateFile(const QString& path) const;

    // Removes a directory with all that it holds. Returns whether it is gone.
    virtual bool removeDirectory(const QString& path) const;

    // The one that works on the real file system.
    [[nodiscard]] static const FileManager& standard();
};

} // namespace mirel
