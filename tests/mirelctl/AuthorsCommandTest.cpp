#include "CommandBench.h"

namespace mirel {
namespace {

using AuthorsCommandOutput = testing::CommandBench;

TEST_F(AuthorsCommandOutput, ListsThoseWithTheMostBookmarksFirst)
{
    EXPECT_EQ(text("authors"), "No authors.");
    storePosts(2);
    SyncedBookmark other = testing::makePost(3);
    other.author = {.xID = QStringLiteral("43"),
                    .name = QStringLiteral("Bob\x1b[2J"),
                    .username = QStringLiteral("bobby")};
    store(other);
    EXPECT_EQ(text("authors"), "2 bookmarks  @ada    Ada Lovelace\n"
                               "1 bookmark   @bobby  Bob[2J");
    EXPECT_EQ(text("authors LOVE"), "2 bookmarks  @ada  Ada Lovelace");
    EXPECT_TRUE(json<QList<AuthorSummary>>("authors") ==
                inLibrary([](LocalLibraryStore& library) { return library.authorSummaries(); }));
}

} // namespace
} // namespace mirel
