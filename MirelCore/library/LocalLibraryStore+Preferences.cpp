#include "library/LocalLibraryStore.h"

namespace mirel {

AppPreferences LocalLibraryStore::preferences()
{
    return {};
}

void LocalLibraryStore::savePreferences(const AppPreferences&) {}

} // namespace mirel
