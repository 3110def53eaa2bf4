#include "records/AIProviderKind.h"

#include "support/Text.h"

namespace mirel {

namespace {

struct ProviderTraits
{
    AIProviderKind kind;
    QLatin1StringView label;
    QLatin1StringView suggestedModel;
    QLatin1StringView suggestedBaseURL;
    bool requiresAPIKey;
    bool usesSubscription;
};

constexpr std::array providers{
    ProviderTraits{AIProviderKind::openAI, QLatin1StringView("OpenAI API"),
                   QLatin1StringView("gpt-5.6-terra"), QLatin1StringView("https://api.openai.com/v1"), true,
                   false},
    ProviderTraits{AIProviderKind::openRouter, QLatin1StringView("OpenRouter"),
                   QLatin1StringView("openai/gpt-5.6-terra"),
                   QLatin1StringView("https://openrouter.ai/api/v1"), true, false},
    ProviderTraits{AIProviderKind::xAI, QLatin1StringView("xAI API"), QLatin1StringView("grok-4.5"),
                   QLatin1StringView("https://api.x.ai/v1"), true, false},
    ProviderTraits{AIProviderKind::ollama, QLatin1StringView("Ollama (local)"),
                   QLatin1StringView("gpt-oss:20b"), QLatin1StringView("http://127.0.0.1:11434"), false,
                   false},
    ProviderTraits{AIProviderKind::openAICompatible, QLatin1StringView("OpenAI-compatible"),
                   QLatin1StringView(""), QLatin1StringView("http://127.0.0.1:1234/v1"), true, false},
    ProviderTraits{AIProviderKind::codexSubscription, QLatin1StringView("Codex / ChatGPT subscription"),
                   QLatin1StringView("gpt-5.6-sol"), QLatin1StringView(""), false, true},
    ProviderTraits{AIProviderKind::grokSubscription, QLatin1StringView("Grok / X Premium+ subscription"),
                   QLatin1StringView("grok-4.5"), QLatin1StringView(""), false, true},
    ProviderTraits{AIProviderKind::kimiCodingSubscription, QLatin1StringView("Kimi Coding subscription"),
                   QLatin1StringView("kimi-code/k3"), QLatin1StringView(""), false, true},
    ProviderTraits{AIProviderKind::nousResearchAPI, QLatin1StringView("Nous Research API"),
                   QLatin1StringView("anthropic/claude-sonnet-4.6"),
                   QLatin1StringView("https://inference-api.nousresearch.com/v1"), true, false},
};

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < providers.size(); ++i) {
        if (static_cast<std::size_t>(providers[i].kind) != i)
            return false;
    }
    return providers.size() == rawValues(AIProviderKind{}).size();
}
static_assert(isInOrder(), "one row for each kind, in the order of the kinds");

const ProviderTraits& traits(AIProviderKind kind)
{
    return providers[static_cast<std::size_t>(kind)];
}

} // namespace

QString unknownRawValueText(AIProviderKind, const QString& text)
{
    return QStringLiteral("Unknown AI provider: ") + text;
}

QString label(AIProviderKind kind)
{
    return traits(kind).label;
}

QString suggestedModel(AIProviderKind kind)
{
    return traits(kind).suggestedModel;
}

QString suggestedBaseURL(AIProviderKind kind)
{
    return traits(kind).suggestedBaseURL;
}

bool requiresAPIKey(AIProviderKind kind)
{
    return traits(kind).requiresAPIKey;
}

bool usesSubscription(AIProviderKind kind)
{
    return traits(kind).usesSubscription;
}

QStringList subscriptionModels(AIProviderKind kind)
{
    switch (kind) {
    case AIProviderKind::codexSubscription:
        return {QStringLiteral("gpt-5.6-sol"), QStringLiteral("gpt-5.6-terra"),
                QStringLiteral("gpt-5.6-luna")};
    case AIProviderKind::grokSubscription:
        return {QStringLiteral("grok-4.6"), QStringLiteral("grok-4.5")};
    case AIProviderKind::kimiCodingSubscription:
        return {QStringLiteral("kimi-code/k3"), QStringLiteral("kimi-code/k3-256k"),
                QStringLiteral("kimi-code/kimi-for-coding"),
                QStringLiteral("kimi-code/kimi-for-coding-highspeed")};
    default:
        return {};
    }
}

QString resolvedModel(AIProviderKind kind, const QString& rawModel)
{
    const QString model = trimmed(rawModel);
    if (usesSubscription(kind))
        return subscriptionModels(kind).contains(model) ? model : suggestedModel(kind);
    if (kind == AIProviderKind::nousResearchAPI && model.isEmpty())
        return suggestedModel(kind);
    return model;
}

} // namespace mirel
