#pragma once

#include <QProcessEnvironment>
#include <QUrl>

namespace mirel {

// Opens a page in the user's browser, which gets `environment` without the secrets that Mirel may find there.
// Returns whether that was begun.
[[nodiscard]] bool openInDefaultBrowser(const QUrl& page, QProcessEnvironment environment);

} // namespace mirel
