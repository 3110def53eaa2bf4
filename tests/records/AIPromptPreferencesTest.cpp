#include "testing/Printing.h"

#include "records/AIPromptPreferences.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

AIPromptPreferences shortTexts()
{
    AIPromptPreferences preferences;
    preferences.sharedGuardrails = QStringLiteral(" G\n");
    preferences.automaticLabel = QStringLiteral("\tL");
    preferences.summary = QStringLiteral("S ");
    preferences.askSystem = QStringLiteral("A");
    return preferences;
}

TEST(AIPromptPreferences, BeginWithTheDefaults)
{
    const AIPromptPreferences preferences;
    EXPECT_EQ(
        preferences.sharedGuardrails,
        u"Use only the supplied bookmark content and local context. Be accurate, concise, and transparent "
        u"when information is missing. Never invent facts.");
    EXPECT_EQ(preferences.automaticLabel,
              u"Suggest a short list of useful, specific labels. Prefer exact names from the supplied "
              u"existing-label list when they fit, and propose concise new labels when needed.");
    EXPECT_EQ(
        preferences.summary,
        u"Summarize the bookmark accurately and concisely, then identify its single most useful key idea.");
    EXPECT_EQ(
        preferences.askSystem,
        u"Answer the question only from the supplied local sources. If the sources are insufficient, say "
        u"so. Cite only source IDs that directly support the answer.");
}

TEST(AIPromptPreferences, JoinTheTextsOfAPurpose)
{
    EXPECT_EQ(shortTexts().insightInstructions(AIInsightPurpose::summary), u"G\n\nS");
    EXPECT_EQ(shortTexts().insightInstructions(AIInsightPurpose::automaticLabel), u"G\n\nL");
    EXPECT_EQ(shortTexts().insightInstructions(AIInsightPurpose::combined), u"G\n\nS\n\nL");
    EXPECT_EQ(shortTexts().askInstructions(), u"G\n\nA");
}

TEST(AIPromptPreferences, LeaveBlankTextsOutWithoutATrace)
{
    AIPromptPreferences preferences = shortTexts();
    preferences.automaticLabel = QStringLiteral(" \n ");
    EXPECT_EQ(preferences.insightInstructions(AIInsightPurpose::combined), u"G\n\nS");
    EXPECT_EQ(preferences.insightInstructions(AIInsightPurpose::automaticLabel), u"G");
    preferences.sharedGuardrails.clear();
    EXPECT_EQ(preferences.insightInstructions(AIInsightPurpose::combined), u"S");
    EXPECT_EQ(preferences.insightInstructions(AIInsightPurpose::automaticLabel), u"");
    preferences.askSystem = QStringLiteral("\n");
    EXPECT_EQ(preferences.askInstructions(), u"");
}

TEST(AIPromptPreferences, NeedEveryTextInTheirJSON)
{
    EXPECT_EQ(encodeJSON(shortTexts()),
              R"({"askSystem":"A","automaticLabel":"\tL","sharedGuardrails":" G\n","summary":"S "})");
    EXPECT_EQ(decodeJSON<AIPromptPreferences>(encodeJSON(shortTexts())), shortTexts());
    for (const char* key : {"sharedGuardrails", "automaticLabel", "summary", "askSystem"}) {
        QJsonObject json = toJSON(shortTexts()).toObject();
        json.remove(QLatin1StringView(key));
        EXPECT_THROW((void)fromJSON<AIPromptPreferences>(json), JSONCodingError) << key;
    }
}

TEST(AIInsightPurpose, HasItsRawValues)
{
    EXPECT_EQ(rawValue(AIInsightPurpose::summary), u"summary");
    EXPECT_EQ(rawValue(AIInsightPurpose::automaticLabel), u"automatic_label");
    EXPECT_EQ(rawValue(AIInsightPurpose::combined), u"combined");
}

} // namespace
} // namespace mirel
