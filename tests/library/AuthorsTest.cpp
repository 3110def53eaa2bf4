#include "library/OrganizationBench.h"

namespace mirel {
namespace {

class Authors : public testing::OrganizationBench
{
protected:
    qint64 addBy(const char* name, const char* username, int number)
    {
        SyncedBookmark post = testing::makePost(number);
        post.author = {.xID = QStringLiteral("x-") + QString::fromUtf8(username),
                       .name = QString::fromUtf8(name),
                       .username = QString::fromUtf8(username),
                       .profileImageURL = QUrl(QStringLiteral("https://pictures.example/a.png"))};
        return store->upsertFromX(post, library.clock.now()).id;
    }

    QStringList found(const char* search)
    {
        QStringList usernames;
        for (const AuthorSummary& each : store->authorSummaries(QString::fromUtf8(search)))
            usernames.append(each.author.username);
        return usernames;
    }
};

TEST_F(Authors, OfAnEmptyLibraryAreNone)
{
    EXPECT_TRUE(store->authorSummaries().isEmpty());
}

TEST_F(Authors, ComeWithTheirBookmarksMostSavedFirstThenByUsername)
{
    addBy("Zoe", "zoe", 1);
    addBy("Bob", "Bob", 2);
    addBy("Ann", "ann", 3);
    addBy("Max", "max", 4);
    addBy("Max", "max", 5);
    const QList<AuthorSummary> authors = store->authorSummaries();
    ASSERT_EQ(authors.size(), 4);
    EXPECT_EQ(
        authors[0],
        (AuthorSummary{.author = {.id = 4,
                                  .xID = QStringLiteral("x-max"),
                                  .name = QStringLiteral("Max"),
                                  .username = QStringLiteral("max"),
                                  .profileImageURL = QUrl(QStringLiteral("https://pictures.example/a.png"))},
                       .bookmarkCount = 2}));
    EXPECT_EQ(found("").join(u' '), u"max ann Bob zoe");
}

TEST_F(Authors, WhoseBookmarksAreAllDeletedAreLeftOut)
{
    const qint64 only = addBy("Ann", "ann", 1);
    const qint64 one = addBy("Bob", "bob", 2);
    addBy("Bob", "bob", 3);
    store->deleteBookmarkLocally(only);
    store->deleteBookmarkLocally(one);
    const QList<AuthorSummary> authors = store->authorSummaries();
    ASSERT_EQ(authors.size(), 1);
    EXPECT_EQ(authors[0].author.username, u"bob");
    EXPECT_EQ(authors[0].bookmarkCount, 1);
}

TEST_F(Authors, AreSearchedByNameAndUsername)
{
    addBy("Ada Lovelace", "countess", 1);
    addBy("Grace Hopper", "ada_fan", 2);
    addBy("山田 太郎", "taro", 3);
    EXPECT_EQ(found(" ADA ").join(u' '), u"ada_fan countess");
    EXPECT_EQ(found("lovelace").join(u' '), u"countess");
    EXPECT_EQ(found("t_ro").join(u' '), u"taro") << "a wildcard";
    EXPECT_EQ(found("山田").join(u' '), u"taro");
    EXPECT_TRUE(found("zebra").isEmpty());
}

TEST_F(Authors, AMistypedColumnTakesItsDefault)
{
    addBy("Ann", "ann", 1);
    connection->execute("UPDATE authors SET name = x'00', x_id = x'00', profile_image_url = 'http://[bad'");
    EXPECT_EQ(
        store->authorSummaries(),
        (QList<AuthorSummary>{{.author = {.id = 1, .username = QStringLiteral("ann")}, .bookmarkCount = 1}}));
}

} // namespace
} // namespace mirel
