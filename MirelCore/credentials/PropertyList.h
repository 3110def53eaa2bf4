#pragma once

#include <QVariantMap>

namespace mirel {

// The texts in the dictionary of a property list in XML, by their keys; values of other types are left out.
// Empty when the file cannot be read or is anything else.
[[nodiscard]] QVariantMap readPropertyList(const QString& path);

} // namespace mirel
