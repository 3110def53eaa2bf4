#include "testing/Printing.h"

#include "records/AppPreferences.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

using Appearance = AppPreferences::Appearance;

// Differs from the defaults in every field.
AppPreferences changed()
{
    AIPromptPreferences prompts;
    prompts.summary = QStringLiteral("In one sentence, 一句話.");
    return {Appearance::nightOwl,
            false,
            true,
            false,
            true,
            AppPreferences::ThreadEnrichment::automatic,
            120,
            AppPreferences::LibraryLayout::grid,
            AppPreferences::ReaderSupplementLayout::inlined,
            false,
            6,
            AIProviderKind::ollama,
            QStringLiteral("llama"),
            QStringLiteral("http://127.0.0.1:9"),
            prompts};
}

AppPreferences withNumbers(qint64 pageSize, qint64 hours)
{
    const AppPreferences from = changed();
    return {from.appearance,
            from.automaticLabels,
            from.aiInsights,
            from.deleteFromX,
            from.ignoreXFolders,
            from.threadEnrichment,
            pageSize,
            from.libraryLayout,
            from.readerSupplementLayout,
            from.automaticSync,
            hours,
            from.aiProvider,
            from.aiModel,
            from.aiBaseURL,
            from.aiPrompts};
}

// The key that the error names, empty when decoding succeeds.
QString failingKey(const QByteArray& json)
{
    try {
        (void)decodeJSON<AppPreferences>(json);
    } catch (const JSONCodingError& error) {
        return error.key();
    }
    return {};
}

TEST(AppPreferences, BeginWithTheDefaults)
{
    const AppPreferences preferences;
    EXPECT_EQ(preferences.appearance, Appearance::system);
    EXPECT_TRUE(preferences.automaticLabels);
    EXPECT_FALSE(preferences.aiInsights);
    EXPECT_TRUE(preferences.deleteFromX);
    EXPECT_FALSE(preferences.ignoreXFolders);
    EXPECT_EQ(preferences.threadEnrichment, AppPreferences::ThreadEnrichment::onDemand);
    EXPECT_EQ(preferences.pageSize, 50);
    EXPECT_EQ(preferences.libraryLayout, AppPreferences::LibraryLayout::list);
    EXPECT_EQ(preferences.readerSupplementLayout, AppPreferences::ReaderSupplementLayout::sidebar);
    EXPECT_TRUE(preferences.automaticSync);
    EXPECT_EQ(preferences.automaticSyncIntervalHours, 24);
    EXPECT_EQ(preferences.aiProvider, AIProviderKind::openAI);
    EXPECT_EQ(preferences.aiModel, u"gpt-5.6-terra");
    EXPECT_EQ(preferences.aiBaseURL, u"https://api.openai.com/v1");
    EXPECT_EQ(preferences.aiPrompts, AIPromptPreferences());
}

TEST(AppPreferences, WriteAllFifteenKeys)
{
    QJsonObject json = toJSON(changed()).toObject();
    EXPECT_EQ(json.take(QStringLiteral("aiPrompts")), toJSON(changed().aiPrompts));
    EXPECT_EQ(
        writeJSON(json),
        R"({"aiBaseURL":"http://127.0.0.1:9","aiInsights":true,"aiModel":"llama","aiProvider":"ollama",)"
        R"("appearance":"night_owl","automaticLabels":false,"automaticSync":false,)"
        R"("automaticSyncIntervalHours":6,"deleteFromX":false,"ignoreXFolders":true,)"
        R"("libraryLayout":"grid","pageSize":120,"readerSupplementLayout":"inline",)"
        R"("threadEnrichment":"automatic"})");
    EXPECT_EQ(toJSON(AppPreferences()).toObject().size(), 15);
}

TEST(AppPreferences, SurviveTheirJSON)
{
    EXPECT_EQ(decodeJSON<AppPreferences>(encodeJSON(changed())), changed());
    EXPECT_EQ(decodeJSON<AppPreferences>(encodeJSON(AppPreferences())), AppPreferences());
}

TEST(AppPreferences, OfAnEmptyObjectAreExactlyTheDefaults)
{
    EXPECT_EQ(decodeJSON<AppPreferences>("{}"), AppPreferences());
    EXPECT_EQ(decodeJSON<AppPreferences>(R"({"from a later version":[1]})"), AppPreferences());
}

TEST(AppPreferences, TakeTheDefaultOfEachMissingOrNullKeyAlone)
{
    const QJsonObject whole = toJSON(changed()).toObject();
    const QJsonObject defaults = toJSON(AppPreferences()).toObject();
    for (const QString& key : whole.keys()) {
        QJsonObject expected = whole;
        expected.insert(key, defaults.value(key));
        EXPECT_NE(expected, whole) << qPrintable(key);
        QJsonObject json = whole;
        json.remove(key);
        EXPECT_EQ(toJSON(fromJSON<AppPreferences>(json)), expected) << qPrintable(key);
        json.insert(key, QJsonValue());
        EXPECT_EQ(toJSON(fromJSON<AppPreferences>(json)), expected) << qPrintable(key);
    }
}

TEST(AppPreferences, RefuseAValueOfTheWrongTypeUnderEachKey)
{
    const QJsonObject whole = toJSON(changed()).toObject();
    for (const QString& key : whole.keys()) {
        QJsonObject json = whole;
        json.insert(key, QJsonArray{1});
        EXPECT_EQ(failingKey(writeJSON(json)), key);
    }
    EXPECT_EQ(failingKey(R"({"pageSize":"50"})"), u"pageSize");
    EXPECT_EQ(failingKey(R"({"pageSize":50.5})"), u"pageSize");
    EXPECT_EQ(failingKey(R"({"automaticSync":1})"), u"automaticSync");
    EXPECT_THROW((void)decodeJSON<AppPreferences>("[]"), JSONCodingError);
    EXPECT_THROW((void)decodeJSON<AppPreferences>("null"), JSONCodingError);
    EXPECT_THROW((void)decodeJSON<AppPreferences>(""), JSONCodingError);
}

TEST(AppPreferences, RefuseAnUnknownText)
{
    EXPECT_EQ(failingKey(R"({"appearance":"neon"})"), u"appearance");
    EXPECT_EQ(failingKey(R"({"appearance":"nightOwl"})"), u"appearance");
    EXPECT_EQ(failingKey(R"({"threadEnrichment":"onDemand"})"), u"threadEnrichment");
    EXPECT_EQ(failingKey(R"({"libraryLayout":""})"), u"libraryLayout");
    EXPECT_EQ(failingKey(R"({"readerSupplementLayout":"inlined"})"), u"readerSupplementLayout");
    try {
        (void)decodeJSON<AppPreferences>(R"({"aiProvider":"abacus"})");
        FAIL() << "nothing was thrown";
    } catch (const JSONCodingError& error) {
        EXPECT_EQ(error.description(), u"Unknown AI provider: abacus");
    }
}

TEST(AppPreferences, NeedWholePromptsOrNone)
{
    EXPECT_EQ(failingKey(R"({"aiPrompts":{"summary":"s"}})"), u"aiPrompts.sharedGuardrails");
    EXPECT_EQ(decodeJSON<AppPreferences>("{}").aiPrompts, AIPromptPreferences());
}

TEST(AppPreferences, ComeWithTheirRawValues)
{
    QStringList appearances;
    for (const auto& row : rawValues(Appearance{}))
        appearances.append(row.text);
    EXPECT_EQ(appearances.join(u' '),
              u"system light dark codex midnight sepia dracula solarized catppuccin night_owl monokai");
    EXPECT_EQ(rawValue(Appearance::nightOwl), u"night_owl");
    EXPECT_EQ(rawValue(AppPreferences::ThreadEnrichment::automatic), u"automatic");
    EXPECT_EQ(rawValue(AppPreferences::ThreadEnrichment::onDemand), u"on_demand");
    EXPECT_EQ(rawValue(AppPreferences::LibraryLayout::list), u"list");
    EXPECT_EQ(rawValue(AppPreferences::LibraryLayout::grid), u"grid");
    EXPECT_EQ(rawValue(AppPreferences::ReaderSupplementLayout::sidebar), u"sidebar");
    EXPECT_EQ(rawValue(AppPreferences::ReaderSupplementLayout::inlined), u"inline");
}

struct ClampRow
{
    const char* name;
    qint64 pageSize;
    qint64 clampedPageSize;
    qint64 hours;
    qint64 clampedHours;
};

class AppPreferencesClampTest : public ::testing::TestWithParam<ClampRow>
{
};

TEST_P(AppPreferencesClampTest, KeepsTheNumbersInBounds)
{
    const ClampRow& row = GetParam();
    const AppPreferences built = withNumbers(row.pageSize, row.hours);
    EXPECT_EQ(built.pageSize, row.clampedPageSize);
    EXPECT_EQ(built.automaticSyncIntervalHours, row.clampedHours);
    const auto decoded =
        fromJSON<AppPreferences>(QJsonObject{{QStringLiteral("pageSize"), row.pageSize},
                                             {QStringLiteral("automaticSyncIntervalHours"), row.hours}});
    EXPECT_EQ(decoded.pageSize, row.clampedPageSize);
    EXPECT_EQ(decoded.automaticSyncIntervalHours, row.clampedHours);
}

INSTANTIATE_TEST_SUITE_P(Numbers, AppPreferencesClampTest,
                         ::testing::Values(ClampRow{"Below", 5, 10, 0, 1},
                                           ClampRow{"Above", 500, 200, 48, 24},
                                           ClampRow{"AtTheLowerBounds", 10, 10, 1, 1},
                                           ClampRow{"AtTheUpperBounds", 200, 200, 24, 24},
                                           ClampRow{"Within", 75, 75, 12, 12},
                                           ClampRow{"Negative", -1, 10, -24, 1},
                                           ClampRow{"Extreme", std::numeric_limits<qint64>::min(), 10,
                                                    std::numeric_limits<qint64>::max(), 24}),
                         [](const auto& row) { return std::string(row.param.name); });

struct NousRow
{
    const char* name;
    QByteArray json;
    const char16_t* model;
};

class AppPreferencesNousTest : public ::testing::TestWithParam<NousRow>
{
};

TEST_P(AppPreferencesNousTest, HasTheOneAddressAndAResolvedModel)
{
    const auto preferences = decodeJSON<AppPreferences>(GetParam().json);
    EXPECT_EQ(preferences.aiProvider, AIProviderKind::nousResearchAPI);
    EXPECT_EQ(preferences.aiBaseURL, u"https://inference-api.nousresearch.com/v1");
    EXPECT_EQ(preferences.aiModel, QString::fromUtf16(GetParam().model));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, AppPreferencesNousTest,
    ::testing::Values(
        NousRow{"AnotherAddress",
                R"({"aiProvider":"nous_research_api","aiBaseURL":"https://a.example/v1","aiModel":" m "})",
                u"m"},
        NousRow{"BlankModel", R"({"aiProvider":"nous_research_api","aiModel":" "})",
                u"anthropic/claude-sonnet-4.6"},
        NousRow{"NothingElse", R"({"aiProvider":"nous_research_api"})", u"gpt-5.6-terra"},
        NousRow{"RetiredText", R"({"aiProvider":"nous_portal_subscription","aiModel":"m"})", u"m"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(AppPreferences, RefuseAnAddressOfTheWrongTypeThoughItWouldBeReplaced)
{
    EXPECT_EQ(failingKey(R"({"aiProvider":"nous_research_api","aiBaseURL":1})"), u"aiBaseURL");
}

TEST(AppPreferences, LeaveAddressAndModelOfOtherProvidersAsTheyStand)
{
    const auto preferences = decodeJSON<AppPreferences>(
        R"({"aiProvider":"codex_subscription","aiBaseURL":" a ","aiModel":" m "})");
    EXPECT_EQ(preferences.aiBaseURL, u" a ");
    EXPECT_EQ(preferences.aiModel, u" m ");
}

} // namespace
} // namespace mirel
