#pragma once

#include "testing/TemporaryLibrary.h"

namespace mirel::testing {

// Posts of every kind that a row has to show, invented and always the same. `pictures` is the address below
// which their pictures lie; without one they have none.
[[nodiscard]] QList<SyncedBookmark> inventedPosts(const QUrl& pictures = {});

} // namespace mirel::testing
