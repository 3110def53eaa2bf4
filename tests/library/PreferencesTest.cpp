#include "library/OrganizationBench.h"

namespace mirel {
namespace {

class Preferences : public testing::OrganizationBench
{
protected:
    void storeJSON(const QByteArray& json)
    {
        connection->run("INSERT OR REPLACE INTO app_state (key, value_json) VALUES ('preferences', ?)",
                        {json});
    }
};

AppPreferences changed()
{
    AppPreferences preferences;
    preferences.appearance = AppPreferences::Appearance::nightOwl;
    preferences.pageSize = 120;
    preferences.aiModel = QStringLiteral("modèle 模型");
    preferences.aiPrompts.summary = QStringLiteral("one\nline \"quoted\" 😀");
    return preferences;
}

TEST_F(Preferences, AreTheDefaultsInANewLibrary)
{
    EXPECT_EQ(store->preferences(), AppPreferences());
}

TEST_F(Preferences, AreReadAsSaved)
{
    store->savePreferences(changed());
    EXPECT_EQ(store->preferences(), changed());
    store->savePreferences(AppPreferences());
    EXPECT_EQ(store->preferences(), AppPreferences());
    EXPECT_EQ(count("app_state"), 1);
    EXPECT_EQ(library.open()->preferences(), AppPreferences()) << "after the library was opened again";
}

TEST_F(Preferences, AreOneJSONTextUnderTheirKey)
{
    store->savePreferences(changed());
    const auto row = connection->firstRow("SELECT key, value_json FROM app_state");
    EXPECT_EQ(row->text("key"), QStringLiteral("preferences"));
    EXPECT_EQ(row->utf8("value_json"), encodeJSON(changed()));
}

TEST_F(Preferences, OfAnEmptyObjectAreTheDefaults)
{
    storeJSON("{}");
    EXPECT_EQ(store->preferences(), AppPreferences());
}

TEST_F(Preferences, OfAColumnThatIsNoTextAreTheDefaults)
{
    connection->execute("INSERT INTO app_state (key, value_json) VALUES ('preferences', x'7b7d')");
    EXPECT_EQ(store->preferences(), AppPreferences());
}

TEST_F(Preferences, ThatCannotBeReadAreAnErrorAndStay)
{
    for (const char* json : {"", "{", "[]", R"({"appearance":"neon"})", R"({"pageSize":"many"})"}) {
        storeJSON(json);
        EXPECT_THROW((void)store->preferences(), JSONCodingError) << json;
        EXPECT_EQ(connection->firstRow("SELECT value_json FROM app_state")->utf8("value_json"),
                  QByteArray(json));
    }
    store->savePreferences(changed());
    EXPECT_EQ(store->preferences(), changed()) << "saving replaces them";
}

TEST_F(Preferences, AreTheDefaultsAgainAfterAllDataIsDeleted)
{
    store->savePreferences(changed());
    store->purgeAllLocalData();
    EXPECT_EQ(store->preferences(), AppPreferences());
}

} // namespace
} // namespace mirel
