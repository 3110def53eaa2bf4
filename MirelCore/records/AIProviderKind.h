#pragma once

#include "support/JSONCoding.h"

#include <array>
#include <optional>

namespace mirel {

// The kinds of AI provider that a user can choose.
enum class AIProviderKind {
    openAI,
    openRouter,
    xAI,
    ollama,
    openAICompatible,
    codexSubscription,
    grokSubscription,
    kimiCodingSubscription,
    nousResearchAPI
};

// In the order of the cases.
[[nodiscard]] constexpr auto rawValues(AIProviderKind)
{
    using enum AIProviderKind;
    return std::array{
        RawValue{openAI, QLatin1StringView("openai")},
        RawValue{openRouter, QLatin1StringView("openrouter")},
        RawValue{xAI, QLatin1StringView("xai")},
        RawValue{ollama, QLatin1StringView("ollama")},
        RawValue{openAICompatible, QLatin1StringView("openai_compatible")},
        RawValue{codexSubscription, QLatin1StringView("codex_subscription")},
        RawValue{grokSubscription, QLatin1StringView("grok_subscription")},
        RawValue{kimiCodingSubscription, QLatin1StringView("kimi_coding_subscription")},
        RawValue{nousResearchAPI, QLatin1StringView("nous_research_api")},
    };
}

} // namespace mirel
