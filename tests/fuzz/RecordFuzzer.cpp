#include "records/Bookmark.h"
#include "records/BookmarkHighlight.h"
#include "records/BookmarkRule.h"
#include "records/LibrarySummaries.h"
#include "records/SyncRun.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace mirel {
namespace {

// What decodes must survive the way back and forth; what does not decode must say so with its own error.
template <typename Record>
void decodeAndReturn(const QByteArray& text)
{
    std::optional<Record> record;
    try {
        record = decodeJSON<Record>(text);
    } catch (const JSONCodingError& error) {
        if (error.description().isEmpty())
            std::abort();
        return;
    }
    if (decodeJSON<Record>(encodeJSON(*record)) != *record)
        std::abort();
}

} // namespace
} // namespace mirel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace mirel;
    const auto text = QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    decodeAndReturn<Bookmark>(text);
    decodeAndReturn<BookmarkHighlight>(text);
    decodeAndReturn<BookmarkRule>(text);
    decodeAndReturn<LibraryCounts>(text);
    decodeAndReturn<SyncRun>(text);
    decodeAndReturn<SyncLogEntry>(text);
    return 0;
}
