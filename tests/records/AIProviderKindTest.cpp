#include "testing/Printing.h"

#include "records/AIProviderKind.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

struct ProviderRow
{
    const char* name;
    AIProviderKind kind;
    const char* rawValue;
    const char* label;
    const char* suggestedModel;
    const char* suggestedBaseURL;
    bool requiresAPIKey;
    bool usesSubscription;
};

class AIProviderKindTest : public ::testing::TestWithParam<ProviderRow>
{
};

TEST_P(AIProviderKindTest, HasTheTraitsOfItsProvider)
{
    const ProviderRow& row = GetParam();
    EXPECT_EQ(rawValue(row.kind), QString::fromLatin1(row.rawValue));
    EXPECT_EQ(label(row.kind), QString::fromLatin1(row.label));
    EXPECT_EQ(suggestedModel(row.kind), QString::fromLatin1(row.suggestedModel));
    EXPECT_EQ(suggestedBaseURL(row.kind), QString::fromLatin1(row.suggestedBaseURL));
    EXPECT_EQ(requiresAPIKey(row.kind), row.requiresAPIKey);
    EXPECT_EQ(usesSubscription(row.kind), row.usesSubscription);
}

TEST_P(AIProviderKindTest, SurvivesJSON)
{
    const ProviderRow& row = GetParam();
    EXPECT_EQ(encodeJSON(row.kind), '"' + QByteArray(row.rawValue) + '"');
    EXPECT_EQ(decodeJSON<AIProviderKind>(encodeJSON(row.kind)), row.kind);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, AIProviderKindTest,
    ::testing::Values(ProviderRow{"OpenAI", AIProviderKind::openAI, "openai", "OpenAI API", "gpt-5.6-terra",
                                  "https://api.openai.com/v1", true, false},
                      ProviderRow{"OpenRouter", AIProviderKind::openRouter, "openrouter", "OpenRouter",
                                  "openai/gpt-5.6-terra", "https://openrouter.ai/api/v1", true, false},
                      ProviderRow{"XAI", AIProviderKind::xAI, "xai", "xAI API", "grok-4.5",
                                  "https://api.x.ai/v1", true, false},
                      ProviderRow{"Ollama", AIProviderKind::ollama, "ollama", "Ollama (local)", "gpt-oss:20b",
                                  "http://127.0.0.1:11434", false, false},
                      ProviderRow{"OpenAICompatible", AIProviderKind::openAICompatible, "openai_compatible",
                                  "OpenAI-compatible", "", "http://127.0.0.1:1234/v1", true, false},
                      ProviderRow{"Codex", AIProviderKind::codexSubscription, "codex_subscription",
                                  "Codex / ChatGPT subscription", "gpt-5.6-sol", "", false, true},
                      ProviderRow{"Grok", AIProviderKind::grokSubscription, "grok_subscription",
                                  "Grok / X Premium+ subscription", "grok-4.5", "", false, true},
                      ProviderRow{"Kimi", AIProviderKind::kimiCodingSubscription, "kimi_coding_subscription",
                                  "Kimi Coding subscription", "kimi-code/k3", "", false, true},
                      ProviderRow{"Nous", AIProviderKind::nousResearchAPI, "nous_research_api",
                                  "Nous Research API", "anthropic/claude-sonnet-4.6",
                                  "https://inference-api.nousresearch.com/v1", true, false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(AIProviderKind, HasNineCasesInTheirOrder)
{
    QStringList order;
    for (const auto& row : rawValues(AIProviderKind{}))
        order.append(row.text);
    EXPECT_EQ(order.join(u' '), u"openai openrouter xai ollama openai_compatible codex_subscription "
                                u"grok_subscription kimi_coding_subscription nous_research_api");
}

TEST(AIProviderKind, ReadsTheRetiredValueAndNeverWritesIt)
{
    const auto kind = decodeJSON<AIProviderKind>("\"nous_portal_subscription\"");
    EXPECT_EQ(kind, AIProviderKind::nousResearchAPI);
    EXPECT_EQ(encodeJSON(kind), "\"nous_research_api\"");
}

struct Setting
{
    AIProviderKind provider = AIProviderKind::openAI;

    static constexpr auto jsonFields() { return std::tuple{jsonField("provider", &Setting::provider)}; }
};

TEST(AIProviderKind, SaysWhichProviderIsUnknown)
{
    for (const QByteArray text : {"claude", "", "OpenAI", "openAI", " openai"}) {
        try {
            (void)decodeJSON<Setting>("{\"provider\":\"" + text + "\"}");
            ADD_FAILURE() << text.constData();
        } catch (const JSONCodingError& error) {
            EXPECT_EQ(error.description(),
                      QStringLiteral("Unknown AI provider: ") + QString::fromLatin1(text));
            EXPECT_EQ(error.key(), u"provider");
        }
    }
    EXPECT_THROW((void)decodeJSON<AIProviderKind>("7"), JSONCodingError);
}

TEST(AIProviderKind, ListsTheModelsOfSubscriptionsAlone)
{
    EXPECT_EQ(subscriptionModels(AIProviderKind::codexSubscription).join(u' '),
              u"gpt-5.6-sol gpt-5.6-terra gpt-5.6-luna");
    EXPECT_EQ(subscriptionModels(AIProviderKind::grokSubscription).join(u' '), u"grok-4.6 grok-4.5");
    EXPECT_EQ(
        subscriptionModels(AIProviderKind::kimiCodingSubscription).join(u' '),
        u"kimi-code/k3 kimi-code/k3-256k kimi-code/kimi-for-coding kimi-code/kimi-for-coding-highspeed");
    for (const auto& row : rawValues(AIProviderKind{})) {
        EXPECT_EQ(subscriptionModels(row.value).isEmpty(), !usesSubscription(row.value));
        EXPECT_EQ(subscriptionModels(row.value).contains(suggestedModel(row.value)),
                  usesSubscription(row.value));
    }
}

struct ModelRow
{
    const char* name;
    AIProviderKind kind;
    const char* rawModel;
    const char* resolved;
};

class ResolvedModelTest : public ::testing::TestWithParam<ModelRow>
{
};

TEST_P(ResolvedModelTest, FollowsTheKind)
{
    EXPECT_EQ(resolvedModel(GetParam().kind, QString::fromLatin1(GetParam().rawModel)),
              QString::fromLatin1(GetParam().resolved));
}

INSTANTIATE_TEST_SUITE_P(
    Models, ResolvedModelTest,
    ::testing::Values(
        ModelRow{"CodexOnTheList", AIProviderKind::codexSubscription, " gpt-5.6-luna\n", "gpt-5.6-luna"},
        ModelRow{"CodexNotOnTheList", AIProviderKind::codexSubscription, "grok-4.5", "gpt-5.6-sol"},
        ModelRow{"CodexOtherCase", AIProviderKind::codexSubscription, "GPT-5.6-luna", "gpt-5.6-sol"},
        ModelRow{"GrokEmpty", AIProviderKind::grokSubscription, "", "grok-4.5"},
        ModelRow{"GrokOnTheList", AIProviderKind::grokSubscription, "grok-4.6", "grok-4.6"},
        ModelRow{"KimiBlank", AIProviderKind::kimiCodingSubscription, "  ", "kimi-code/k3"},
        ModelRow{"NousEmpty", AIProviderKind::nousResearchAPI, " \n", "anthropic/claude-sonnet-4.6"},
        ModelRow{"NousAny", AIProviderKind::nousResearchAPI, " hermes ", "hermes"},
        ModelRow{"OpenAIEmpty", AIProviderKind::openAI, " ", ""},
        ModelRow{"OpenAIAny", AIProviderKind::openAI, "\tmy model ", "my model"},
        ModelRow{"OllamaEmpty", AIProviderKind::ollama, "", ""}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace mirel
