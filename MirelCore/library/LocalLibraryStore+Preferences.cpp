#include "library/LocalLibraryStore.h"

namespace mirel {

AppPreferences LocalLibraryStore::preferences()
{
    const auto row = m_database.firstRow("SELECT value_json FROM app_state WHERE key = 'preferences'");
    const auto json = row ? row->utf8("value_json") : std::nullopt;
    return json ? decodeJSON<AppPreferences>(*json) : AppPreferences();
}

void LocalLibraryStore::savePreferences(const AppPreferences& preferences)
{
    m_database.run("INSERT INTO app_state (key, value_json) VALUES ('preferences', ?) "
                   "ON CONFLICT(key) DO UPDATE SET value_json = excluded.value_json",
                   {encodeJSON(preferences)});
}

} // namespace mirel
