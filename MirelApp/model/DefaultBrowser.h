#pragma once

#include <QProcessEnvironment>
#include <QUrl>

#include <functional>

namespace mirel {

// Opens a page in the user's browser, which gets `environment` without the secrets that Mirel may find there
// and outlives Mirel. Returns whether that was begun; if so and no page comes of it, as on a machine without
// a browser, `failed` (which may be empty) is called later. On the main thread.
[[nodiscard]] bool openInDefaultBrowser(const QUrl& page, QProcessEnvironment environment,
                                        std::function<void()> failed = {});

} // namespace mirel
