#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace mirel {

// The user's directory for the data of applications, an absolute path. May not exist yet.
[[nodiscard]] QString userApplicationSupportDirectory(const QProcessEnvironment& environment);

// The user's directory for caches, an absolute path, or empty when there is none.
[[nodiscard]] QString userCachesDirectory(const QProcessEnvironment& environment);

// The directory in which programs of one user find each other while the user is logged in, an absolute path
// that exists and is closed to others, or empty when there is none.
[[nodiscard]] QString userRuntimeDirectory(const QProcessEnvironment& environment);

} // namespace mirel
