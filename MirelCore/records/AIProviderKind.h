#pragma once

#include "support/JSONCoding.h"

#include <QStringList>

#include <array>

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

// Texts that older versions wrote, and what they mean now.
[[nodiscard]] constexpr auto retiredRawValues(AIProviderKind)
{
    return std::array{
        RawValue{AIProviderKind::nousResearchAPI, QLatin1StringView("nous_portal_subscription")},
    };
}

// What the error says about a text that is no kind.
[[nodiscard]] QString unknownRawValueText(AIProviderKind, const QString& text);

// The name that the user sees.
[[nodiscard]] QString label(AIProviderKind kind);

// The model to begin with; empty when there is none to suggest.
[[nodiscard]] QString suggestedModel(AIProviderKind kind);

// The default base URL of the service; empty for the subscriptions, which have none.
[[nodiscard]] QString suggestedBaseURL(AIProviderKind kind);

[[nodiscard]] bool requiresAPIKey(AIProviderKind kind);

// The kind is a subscription, used through its maker's command-line tool.
[[nodiscard]] bool usesSubscription(AIProviderKind kind);

// The only models that a subscription offers; empty for every other kind.
[[nodiscard]] QStringList subscriptionModels(AIProviderKind kind);

// The model to ask for when the user's setting is `rawModel`: a subscription falls back to its suggested
// model when it does not offer the one set, Nous Research when none is set; for every other kind it is the
// trimmed setting, empty or not.
[[nodiscard]] QString resolvedModel(AIProviderKind kind, const QString& rawModel);

} // namespace mirel
