#pragma once

#include "screens/DesktopSettings.h"

namespace mirel {

// What the application's palette and font tell of the desktop, in its present state.
[[nodiscard]] DesktopSettings::Values toolkitSettings();

} // namespace mirel
