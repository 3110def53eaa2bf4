#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace mirel {

// The user's directory for the data of applications, an absolute path. May not exist yet.
[[nodiscard]] QString userApplicationSupportDirectory(const QProcessEnvironment& environment);

// The user's directory for caches, an absolute path, or empty when there is none.
[[nodiscard]] QString userCachesDirectory(const QProcessEnvironment& environment);

} // namespace mirel
