#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

// What an insight is asked for.
enum class AIInsightPurpose { summary, automaticLabel, combined };

[[nodiscard]] constexpr auto rawValues(AIInsightPurpose)
{
    return std::array{
        RawValue{AIInsightPurpose::summary, QLatin1StringView("summary")},
        RawValue{AIInsightPurpose::automaticLabel, QLatin1StringView("automatic_label")},
        RawValue{AIInsightPurpose::combined, QLatin1StringView("combined")},
    };
}

} // namespace mirel
