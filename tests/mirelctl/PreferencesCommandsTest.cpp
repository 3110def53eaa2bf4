#include "CommandBench.h"

namespace mirel {
namespace {

class PreferencesCommands : public testing::CommandBench
{
protected:
    AppPreferences stored()
    {
        return inLibrary([](LocalLibraryStore& library) { return library.preferences(); });
    }
};

constexpr auto allKeys =
    "aiBaseURL, aiInsights, aiModel, aiPrompts.askSystem, aiPrompts.automaticLabel, "
    "aiPrompts.sharedGuardrails, aiPrompts.summary, aiProvider, appearance, "
    "automaticLabels, automaticSync, automaticSyncIntervalHours, deleteFromX, "
    "ignoreXFolders, libraryLayout, pageSize, readerSupplementLayout or threadEnrichment";

TEST_F(PreferencesCommands, PrintEverySettingByItsKey)
{
    const QByteArray all = text("preferences get");
    EXPECT_EQ(all.count('\n') + 1, 18);
    EXPECT_TRUE(all.contains("\npageSize                    50\n"));
    EXPECT_TRUE(all.contains("\naiInsights                  false\n"));
    EXPECT_TRUE(all.contains("\nthreadEnrichment            on_demand"));
    EXPECT_TRUE(all.contains("\naiPrompts.summary           Summarize the bookmark"));
    EXPECT_TRUE(json<AppPreferences>("preferences get") == AppPreferences());
}

TEST_F(PreferencesCommands, PrintOneSetting)
{
    EXPECT_EQ(text("preferences get pageSize"), "50");
    EXPECT_EQ(text("preferences get appearance"), "system");
    EXPECT_EQ(text("preferences get deleteFromX"), "true");
    EXPECT_EQ(output("preferences get pageSize", forMachines), "50\n");
    EXPECT_EQ(output("preferences get appearance", forMachines), "\"system\"\n");
    EXPECT_EQ(output("preferences get aiPrompts.summary", forMachines),
              '"' + AIPromptPreferences::defaultSummary.toUtf8() + "\"\n");
    EXPECT_EQ(text("preferences get aiPrompts").count('\n') + 1, 4);
    EXPECT_TRUE(json<AIPromptPreferences>("preferences get aiPrompts") == AIPromptPreferences());
}

TEST_F(PreferencesCommands, SetSettingsAndLeaveTheOthers)
{
    EXPECT_EQ(text("preferences set pageSize 75 appearance night_owl aiInsights true"),
              "aiInsights  true\n"
              "appearance  night_owl\n"
              "pageSize    75");
    AppPreferences expected;
    expected.pageSize = 75;
    expected.appearance = AppPreferences::Appearance::nightOwl;
    expected.aiInsights = true;
    EXPECT_TRUE(stored() == expected);
    EXPECT_TRUE(remarks.isEmpty());
    expected.aiPrompts.summary = QStringLiteral("two words");
    expected.aiModel = QString();
    EXPECT_TRUE(json<AppPreferences>("preferences set aiPrompts.summary \"two words\" aiModel \"\"") ==
                expected);
    EXPECT_TRUE(stored() == expected);
}

TEST_F(PreferencesCommands, TellWhenANumberWasClamped)
{
    EXPECT_EQ(text("preferences set pageSize 500 automaticSyncIntervalHours 0"),
              "automaticSyncIntervalHours  1\n"
              "pageSize                    200");
    EXPECT_EQ(remarks,
              QStringList(
                  {QStringLiteral("The preference \"automaticSyncIntervalHours\" cannot be 0 and is now 1."),
                   QStringLiteral("The preference \"pageSize\" cannot be 500 and is now 200.")}));
    EXPECT_EQ(json<AppPreferences>("preferences set pageSize -- -7").pageSize, 10);
    EXPECT_EQ(
        json<AppPreferences>("preferences set automaticSyncIntervalHours 48").automaticSyncIntervalHours, 24);
    EXPECT_EQ(remarks.size(), 4);
}

TEST_F(PreferencesCommands, TellWhatTheProviderMakesOfTheAddress)
{
    text("preferences set aiProvider nous_research_api");
    EXPECT_EQ(stored().aiBaseURL, suggestedBaseURL(AIProviderKind::nousResearchAPI));
    EXPECT_TRUE(remarks.value(0).startsWith(u"The preference \"aiBaseURL\" cannot be ")) << remarks.size();
}

TEST_F(PreferencesCommands, RefuseUnknownKeysAndNameThoseThatThereAre)
{
    for (const QByteArray key : {"pagesize", "aiPrompts.", "aiPrompts.x", "x"}) {
        const QByteArray sentence = "There is no preference \"" + key + "\": use " + allKeys + '.';
        EXPECT_EQ(failure("preferences get " + key), sentence);
        EXPECT_EQ(failure("preferences set pageSize 75 " + key + " 1"), sentence);
    }
    EXPECT_EQ(failure("preferences set aiPrompts x"),
              QByteArray("There is no preference \"aiPrompts\": use ") + allKeys + '.');
    EXPECT_TRUE(stored() == AppPreferences());
}

TEST_F(PreferencesCommands, RefuseWrongValuesAndNameWhatIsAllowed)
{
    EXPECT_EQ(failure("preferences set pageSize 75 appearance neon"),
              "The preference \"appearance\" takes system, light, dark, codex, midnight, sepia, dracula, "
              "solarized, catppuccin, night_owl or monokai, not \"neon\".");
    EXPECT_EQ(failure("preferences set threadEnrichment never"),
              "The preference \"threadEnrichment\" takes automatic or on_demand, not \"never\".");
    EXPECT_EQ(failure("preferences set libraryLayout \"\""),
              "The preference \"libraryLayout\" takes list or grid, not \"\".");
    EXPECT_EQ(failure("preferences set readerSupplementLayout left"),
              "The preference \"readerSupplementLayout\" takes sidebar or inline, not \"left\".");
    EXPECT_EQ(
        failure("preferences set aiProvider x"),
        "The preference \"aiProvider\" takes openai, openrouter, xai, ollama, openai_compatible, "
        "codex_subscription, grok_subscription, kimi_coding_subscription or nous_research_api, not \"x\".");
    EXPECT_EQ(failure("preferences set deleteFromX yes"),
              "The preference \"deleteFromX\" takes true or false, not \"yes\".");
    EXPECT_EQ(failure("preferences set pageSize many"),
              "The preference \"pageSize\" takes a whole number, not \"many\".");
    EXPECT_EQ(failure("preferences set pageSize 7.5"),
              "The preference \"pageSize\" takes a whole number, not \"7.5\".");
    EXPECT_TRUE(stored() == AppPreferences());
}

TEST_F(PreferencesCommands, FailOnSettingsThatCannotBeRead)
{
    test.library.connect()->run(
        "INSERT INTO app_state (key, value_json) VALUES ('preferences', '{\"appearance\":\"neon\"}')");
    for (const QByteArray line : {"preferences get", "preferences set appearance dark"})
        EXPECT_EQ(failure(line), "The JSON value “appearance” has the unknown value “neon”.");
}

} // namespace
} // namespace mirel
