#include "records/AppPreferences.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// Any bytes as stored settings: they are refused with their own error, or are within their bounds and survive
// being written and read.

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace mirel;
    const auto text = QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    std::optional<AppPreferences> preferences;
    try {
        preferences = decodeJSON<AppPreferences>(text);
    } catch (const JSONCodingError& error) {
        require(!error.description().isEmpty());
        return 0;
    }
    require(preferences->pageSize >= 10 && preferences->pageSize <= 200);
    require(preferences->automaticSyncIntervalHours >= 1 && preferences->automaticSyncIntervalHours <= 24);
    require(preferences->aiProvider != AIProviderKind::nousResearchAPI ||
            preferences->aiBaseURL == suggestedBaseURL(AIProviderKind::nousResearchAPI));
    const QByteArray written = encodeJSON(*preferences);
    require(parseJSON(written).toObject().size() == 15);
    require(decodeJSON<AppPreferences>(written) == *preferences);
    return 0;
}
