#include "EndToEndTest.h"

#include "library/LocalLibraryStore.h"

namespace mirel::testing {
namespace {

using Demo = EndToEndTest;

// A library that stays open, as that of a window does, with all in memory that answers searches.
class WarmLibrary
{
public:
    explicit WarmLibrary(const QString& path)
        : m_store(path)
    {
        while (!m_store.prepareSearch()) {
        }
    }

    // The matches, in no order.
    [[nodiscard]] QSet<QString> found(const char* query)
    {
        constexpr qint64 all = 500;
        const BookmarkSearchPage page = m_store.searchBookmarksPage(
            LibraryFilter::all, {.query = QString::fromLatin1(query)}, all, 0, LibrarySort::newest);
        EXPECT_EQ(page.totalCount, page.items.size());
        QSet<QString> ids;
        for (const Bookmark& bookmark : page.items)
            ids.insert(bookmark.tweetID);
        return ids;
    }

private:
    LocalLibraryStore m_store;
};

TEST_F(Demo, AnotherProgramsChangesAreFoundByALibraryThatHasSearchedBefore)
{
    simulator.setScenario(R"({"faults":[{"action":"status","status":429,"requests":{"from":2}}]})");
    ASSERT_EQ(mirelctl("sync").exitStatus, 1);
    simulator.setScenario();
    WarmLibrary window(directory.filePath(QStringLiteral("mirel.sqlite3")));
    const QSet<QString> nothing;
    const QStringList posts = simulator.accountIDs();
    const QByteArray first = posts[0].toUtf8();
    const QByteArray second = posts[1].toUtf8();
    ASSERT_EQ(window.found(""), newestPosts(50));
    EXPECT_EQ(window.found("label:reading"), nothing);
    EXPECT_EQ(window.found("folder:box"), nothing);

    ASSERT_EQ(mirelctl("label create Reading").exitStatus, 0);
    ASSERT_EQ(mirelctl("label add reading " + first + ' ' + second).exitStatus, 0);
    EXPECT_EQ(window.found("label:reading"), newestPosts(2));
    ASSERT_EQ(mirelctl("label remove reading " + second).exitStatus, 0);
    EXPECT_EQ(window.found("label:reading"), newestPosts(1));
    ASSERT_EQ(mirelctl("label rename reading Later").exitStatus, 0);
    EXPECT_EQ(window.found("label:reading"), nothing);
    EXPECT_EQ(window.found("label:later"), newestPosts(1));

    ASSERT_EQ(mirelctl("folder create Box").exitStatus, 0);
    ASSERT_EQ(mirelctl("folder assign box " + second).exitStatus, 0);
    EXPECT_EQ(window.found("folder:box"), QSet<QString>{posts[1]});
    const QSet<QString> articles = window.found("type:article");
    EXPECT_FALSE(articles.isEmpty());
    ASSERT_EQ(mirelctl("rule create Articles --query type:article --label later").exitStatus, 0);
    ASSERT_EQ(mirelctl("rule run").exitStatus, 0);
    EXPECT_EQ(window.found("label:later"), articles + newestPosts(1));

    ASSERT_EQ(mirelctl("preferences set deleteFromX true").exitStatus, 0);
    ASSERT_EQ(mirelctl("delete " + first).exitStatus, 0);
    const QSet<QString> deleted{posts[0]};
    EXPECT_EQ(window.found(""), QSet<QString>(posts.begin(), posts.begin() + 50) - deleted);
    EXPECT_EQ(window.found("label:later"), articles - deleted);
    ASSERT_EQ(mirelctl("sync --full").exitStatus, 0);
    EXPECT_EQ(window.found(""), allPosts());
}

} // namespace
} // namespace mirel::testing
