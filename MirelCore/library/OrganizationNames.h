#pragma once

#include <QString>

namespace mirel {

// The name as it is stored: trimmed, and cut to its first 100 characters. Empty when nothing is left.
[[nodiscard]] QString storedName(const QString& name);

// The stored name. Throws OrganizationError::invalidName when nothing is left of it.
[[nodiscard]] QString cleanName(const QString& name);

// The LIKE pattern of what holds `search`, trimmed and without regard to case; an empty search is in
// everything. "%" and "_" of the user are wildcards.
[[nodiscard]] QString searchPattern(const QString& search);

} // namespace mirel
