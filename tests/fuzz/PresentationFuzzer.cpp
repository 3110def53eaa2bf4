#include "presentation/PresentationCase.h"
#include "support/RawJSON.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// Any bytes as the raw JSON of a bookmark: the presentation never fails, is the same each time, agrees with
// the facts that searches use, and survives its way through JSON.

namespace mirel {
namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

bool holdsOnlyItsOwn(const ArticleBlock& block)
{
    using Kind = ArticleBlock::Kind;
    const bool isAtomic = block.kind == Kind::divider || block.kind == Kind::code ||
                          block.kind == Kind::embeddedPost || block.kind == Kind::media;
    if (isAtomic && !(block.styles.isEmpty() && block.links.isEmpty()))
        return false;
    if (!isAtomic && block.text.trimmed().isEmpty())
        return false;
    return (block.kind == Kind::media || block.media.isEmpty()) &&
           (block.kind == Kind::embeddedPost || !block.embeddedPostID);
}

void checkBlocks(const QList<ArticleBlock>& blocks)
{
    for (const ArticleBlock& block : blocks) {
        require(!block.id.isEmpty());
        require(holdsOnlyItsOwn(block));
    }
    require(fromJSON<QList<ArticleBlock>>(toJSON(blocks)) == blocks);
}

void check(const Bookmark& bookmark)
{
    const PostPresentation presentation(bookmark);
    require(presentation == PostPresentation(bookmark));
    require(PresentationFacts::of(bookmark) == factsOf(presentation));
    checkBlocks(presentation.articleBlocks);
    require(fromJSON<QList<ExternalLinkPreview>>(toJSON(presentation.externalLinks)) ==
            presentation.externalLinks);
    require(fromJSON<QList<EmbeddedPostPreview>>(toJSON(presentation.embeddedPosts)) ==
            presentation.embeddedPosts);
    if (presentation.quotedContent) {
        const auto& content = *presentation.quotedContent;
        checkBlocks(content.articleBlocks);
        require(fromJSON<QuotedContentPresentation>(toJSON(content)) == content);
    }
    require(!presentation.toJSON().isEmpty());
}

} // namespace
} // namespace mirel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace mirel;
    Bookmark bookmark;
    bookmark.rawJSON = QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    // The bytes once more, as the plain text of an article without any.
    bookmark.text = QString::fromUtf8(bookmark.rawJSON);
    check(bookmark);
    // Now in a text that is read where it stands.
    bookmark.rawJSON.reserve(bookmark.rawJSON.size() + RawJSON::padding);
    bookmark.quotedPost.emplace();
    // The id of the quoted posts in the seeds.
    bookmark.quotedPost->tweetID = QStringLiteral("9");
    bookmark.quotedPost->text = QStringLiteral("text");
    check(bookmark);
    return 0;
}
