#pragma once

#include <QString>

namespace mirel {

// The program of this system that opens an address, its only argument, in the user's browser.
[[nodiscard]] QString pageOpener();

} // namespace mirel
