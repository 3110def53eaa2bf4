#pragma once

#include "support/FileManager.h"

#include <QProcessEnvironment>
#include <QString>

namespace mirel {

// Where Mirel keeps its files.
struct MirelPaths
{
    MirelPaths() = delete;

    // The directory of the library: MIREL_LOCAL_DATA_DIR when it is set and not empty, else "Mirel" in the
    // user's application support directory. Creates it. Throws FileError.
    [[nodiscard]] static QString
    applicationSupportDirectory(const QProcessEnvironment& environment,
                                const FileManager& fileManager = FileManager::standard());

    // The library's file in applicationSupportDirectory(). Throws FileError.
    [[nodiscard]] static QString
    databasePath(const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());

    // "Mirel" in the user's caches directory, or in the temporary one when there is none. Creates nothing.
    [[nodiscard]] static QString cacheDirectory(const QProcessEnvironment& environment);

    // Where the programs of one user meet: the user's runtime directory, or, when there is none, "Mirel" in
    // the application support directory, which is then created. Throws FileError.
    [[nodiscard]] static QString runtimeDirectory(const QProcessEnvironment& environment);
};

} // namespace mirel
