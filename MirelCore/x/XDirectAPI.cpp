#include "x/XDirectAPI.h"

namespace mirel {

XBookmarksFetching::~XBookmarksFetching() = default;
XDirectAPI::~XDirectAPI() = default;

} // namespace mirel
