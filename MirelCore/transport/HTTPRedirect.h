#pragma once

#include "transport/HTTPTransport.h"

namespace mirel {

// The request that follows `request` when its answer is `response`, or absent when that is no redirect. A
// redirect to another origin (scheme, host or port) goes on without Authorization and Cookie headers. A 303,
// and a 301 or 302 after POST, goes on as GET without a body. Throws HTTPTransportError::redirectRefused for
// a target that is not HTTP, or not encrypted although `request` was, and for a body that would go to
// another origin.
[[nodiscard]] std::optional<HTTPRequest> redirected(const HTTPRequest& request, const HTTPResponse& response);

} // namespace mirel
