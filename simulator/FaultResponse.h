#pragma once

#include "simulator/Fault.h"
#include "simulator/http/HTTPResponse.h"
#include "support/Instant.h"

namespace mirel::simulator {

// A problem document, as X answers errors.
[[nodiscard]] HTTPResponse problem(int status, const QString& title, const QString& detail,
                                   const QString& type = QStringLiteral("about:blank"));

// The answer of a fault whose action is Status or Redirect. `now` dates a rate limit.
[[nodiscard]] HTTPResponse responseOf(const Fault& fault, Instant now);

} // namespace mirel::simulator
