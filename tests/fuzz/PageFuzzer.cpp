#include "support/RawJSON.h"
#include "x/PostMapping.h"
#include "x/XAPIError.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace mirel {
namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// A canonical text is as long as announced, and canonical itself.
void checkCanonicalText(const QByteArray& text)
{
    try {
        const RawJSON json = RawJSON::parse(text);
        const QByteArray canonical = json.root().canonical();
        require(canonical.size() <= text.size());
        require(RawJSON::parse(canonical).root().canonical() == canonical);
    } catch (const RawJSONError& error) {
        require(!error.description().isEmpty());
    }
}

// What the mapping read from the page is what stands in the envelopes that it leaves.
void checkPage(const QByteArray& text)
{
    ParsedBookmarkPage page;
    try {
        page = postMapping::parseBookmarkPage(text);
    } catch (const XAPIError& error) {
        require(error == XAPIError::invalidResponse());
        return;
    }
    const auto envelopes = postMapping::rawEnvelopes(text);
    require(page.quotedArticleMediaKeys.size() == page.items.size());
    for (qsizetype i = 0; i < page.items.size(); ++i) {
        const SyncedBookmark& item = page.items[i];
        require(item.rawJSON == envelopes.value(item.tweetID));
        require(RawJSON::parse(item.rawJSON).root().canonical() == item.rawJSON);
        require(item.sourceURL.isValid());
        if (item.quotedPost) {
            require(page.quotedArticleMediaKeys[i] ==
                    postMapping::articleMediaKeys(item.quotedPost->tweetID, item.rawJSON));
        }
    }
}

void checkThread(const QByteArray& text)
{
    try {
        const auto posts = postMapping::threadPosts(text, QStringLiteral("10"));
        for (qsizetype i = 1; i < posts.size(); ++i)
            require(!(posts[i].createdAt < posts[i - 1].createdAt));
    } catch (const XAPIError& error) {
        require(error == XAPIError::invalidResponse());
    }
}

} // namespace
} // namespace mirel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text = QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    mirel::checkCanonicalText(text);
    mirel::checkPage(text);
    mirel::checkThread(text);
    return 0;
}
