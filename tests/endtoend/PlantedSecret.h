#pragma once

#include <QByteArray>

namespace mirel::testing {

// Nowhere but where a test puts it.
inline const QByteArray plantedSecret = "planted-client-secret";

} // namespace mirel::testing
