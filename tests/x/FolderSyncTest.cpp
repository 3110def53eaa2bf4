#include "testing/Printing.h"

#include "x/MirelSyncBench.h"

#include "library/SQLiteStoreError.h"
#include "x/BookmarkSyncError.h"
#include "x/XAPIError.h"

#include <gmock/gmock.h>

namespace mirel {
namespace {

using testing::errorOf;
using testing::makePost;

// The folders that a full sync takes over from X.
class FolderSync : public testing::MirelSyncBench
{
protected:
    void SetUp() override { bookmarkPosts(1, 5); }

    // X has these folders, the first with the id "F1", on one page.
    void foldersOnX(const QStringList& names)
    {
        x.folders = [names](std::optional<QString>) {
            XPage<XBookmarkFolder> page;
            for (const QString& name : names)
                page.items.append({QStringLiteral("F%1").arg(page.items.size() + 1), name});
            return page;
        };
    }
    // The folder of that id on X holds the posts of these numbers.
    void postsInFolder(const QString& id, const QList<int>& numbers)
    {
        m_posts[id].clear();
        for (const int number : numbers)
            m_posts[id].append(makePost(number).tweetID);
        x.folderPosts = [this](const QString& folder, std::optional<QString>) {
            return XPage<QString>{.items = m_posts.value(folder)};
        };
    }

    QList<Folder> folders()
    {
        return onStore([](LocalLibraryStore& it) { return it.folders(); });
    }
    Folder createFolder(const QString& name, std::optional<qint64> parent = {})
    {
        return onStore([name, parent](LocalLibraryStore& it) {
            return it.createFolder(name, {}, parent, Folder::Source::local, {});
        });
    }
    void file(int number, const Folder& folder)
    {
        onStore([bookmark = stored(number).id, folder = folder.id](LocalLibraryStore& it) {
            it.assignFolder(folder, bookmark);
        });
    }
    BookmarkSyncError::Case errorCaseOfFullSync()
    {
        const auto error = errorOf<BookmarkSyncError>([this] { syncFully(); });
        EXPECT_TRUE(error);
        EXPECT_EQ(lastRun().errorMessage, error->description());
        EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
        return error->errorCase();
    }

private:
    QHash<QString, QStringList> m_posts;
};

TEST_F(FolderSync, AFullSyncBringsTheFoldersAndWhatIsInThem)
{
    foldersOnX({QStringLiteral("Kitchen"), QStringLiteral("To read")});
    postsInFolder(QStringLiteral("F1"), {1, 2});
    postsInFolder(QStringLiteral("F2"), {4});
    syncFully();
    const QList<Folder> expected{{.id = 1,
                                  .name = QStringLiteral("Kitchen"),
                                  .slug = QStringLiteral("kitchen"),
                                  .description = QStringLiteral("Imported from X"),
                                  .source = Folder::Source::x,
                                  .xFolderID = QStringLiteral("F1")},
                                 {.id = 2,
                                  .name = QStringLiteral("To read"),
                                  .slug = QStringLiteral("to-read"),
                                  .description = QStringLiteral("Imported from X"),
                                  .source = Folder::Source::x,
                                  .xFolderID = QStringLiteral("F2")}};
    EXPECT_EQ(folders(), expected);
    EXPECT_EQ(folderOf(1), "Kitchen");
    EXPECT_EQ(folderOf(2), "Kitchen");
    EXPECT_EQ(folderOf(3), "");
    EXPECT_EQ(folderOf(4), "To read");
    EXPECT_EQ(x.asked, (QStringList{QStringLiteral("bookmarks"), QStringLiteral("folders"),
                                    QStringLiteral("folder F1"), QStringLiteral("folder F2")}));
    EXPECT_EQ(x.folderPageSizes, QSet<qint64>{100});
}

TEST_F(FolderSync, WalksThePagesOfTheFoldersAndOfEachFolder)
{
    x.folders = [](std::optional<QString> token) {
        return token ? XPage<XBookmarkFolder>{.items = {{QStringLiteral("F2"), QStringLiteral("Two")}}}
                     : XPage<XBookmarkFolder>{.items = {{QStringLiteral("F1"), QStringLiteral("One")}},
                                              .nextToken = QStringLiteral("more")};
    };
    x.folderPosts = [](const QString& folder, std::optional<QString> token) {
        if (folder == u"F2")
            return XPage<QString>{.items = {makePost(3).tweetID}};
        return token ? XPage<QString>{.items = {makePost(2).tweetID}}
                     : XPage<QString>{.items = {makePost(1).tweetID}, .nextToken = QStringLiteral("rest")};
    };
    syncFully();
    EXPECT_EQ(x.asked, (QStringList{QStringLiteral("bookmarks"), QStringLiteral("folders"),
                                    QStringLiteral("folder F1"), QStringLiteral("folder F1 after rest"),
                                    QStringLiteral("folders after more"), QStringLiteral("folder F2")}));
    EXPECT_EQ(folderOf(1), "One");
    EXPECT_EQ(folderOf(2), "One");
    EXPECT_EQ(folderOf(3), "Two");
}

TEST_F(FolderSync, NamesAreTrimmedAndCutTo100Characters)
{
    foldersOnX({QStringLiteral(" \n Kitchen\t\n"), QStringLiteral("🚲").repeated(150)});
    syncFully();
    ASSERT_EQ(folders().size(), 2);
    EXPECT_EQ(folders()[0].name, QStringLiteral("Kitchen"));
    EXPECT_EQ(folders()[1].name, QStringLiteral("🚲").repeated(100));
}

TEST_F(FolderSync, AFolderWithoutANameIsNamedWithTheEmptyText)
{
    foldersOnX({QString()});
    postsInFolder(QStringLiteral("F1"), {1});
    syncFully();
    ASSERT_EQ(folders().size(), 1);
    EXPECT_EQ(folders()[0].name, QString());
    EXPECT_FALSE(folders()[0].slug.isEmpty());
    EXPECT_EQ(stored(1).folder, folders()[0]);
}

TEST_F(FolderSync, ALocalFolderOfThatNameIsAdoptedInWhateverCaseItsNameIs)
{
    const Folder parent = createFolder(QStringLiteral("Home"));
    const Folder local = createFolder(QStringLiteral("kitchen"), parent.id);
    foldersOnX({QStringLiteral("Kitchen")});
    postsInFolder(QStringLiteral("F1"), {1});
    syncFully();
    Folder adopted = local;
    adopted.description = QStringLiteral("Imported from X");
    adopted.xFolderID = QStringLiteral("F1");
    EXPECT_EQ(folders(), (QList<Folder>{parent, adopted}));
    EXPECT_EQ(stored(1).folder, adopted);
}

TEST_F(FolderSync, APostThatTheLibraryDoesNotHaveIsSkippedWithoutANote)
{
    foldersOnX({QStringLiteral("Kitchen")});
    postsInFolder(QStringLiteral("F1"), {77, 2});
    syncFully();
    EXPECT_EQ(folderOf(2), "Kitchen");
    EXPECT_EQ(storedCount(), 5);
    EXPECT_THAT(story(),
                ::testing::ElementsAre("started: Started full manual bookmark sync with 50-item X pages.",
                                       "page: Bookmark page 1",
                                       "completed: Completed full sync of 5 bookmarks across 1 pages."));
}

TEST_F(FolderSync, APostThatWasDeletedHereIsSkipped)
{
    syncFully();
    onStore([id = stored(5).id](LocalLibraryStore& it) { it.deleteBookmarkLocally(id); });
    bookmarkPosts(1, 4);
    foldersOnX({QStringLiteral("Kitchen")});
    postsInFolder(QStringLiteral("F1"), {5});
    syncFully();
    EXPECT_EQ(connection->firstRow("SELECT COUNT(*) AS n FROM bookmark_folders")->integer("n"), 0);
}

TEST_F(FolderSync, WhatXSaysOverridesWhereAPostWasFiledHere)
{
    syncFully();
    file(1, createFolder(QStringLiteral("Mine")));
    foldersOnX({QStringLiteral("Kitchen")});
    postsInFolder(QStringLiteral("F1"), {1});
    syncFully();
    EXPECT_EQ(folderOf(1), "Kitchen");
}

TEST_F(FolderSync, WhatLeavesAFolderOnXStaysInItHere)
{
    foldersOnX({QStringLiteral("Kitchen")});
    postsInFolder(QStringLiteral("F1"), {1, 2});
    syncFully();
    postsInFolder(QStringLiteral("F1"), {2});
    syncFully();
    EXPECT_EQ(folderOf(1), "Kitchen");
    x.folders = {};
    syncFully();
    EXPECT_EQ(folders().size(), 1) << "also when the folder is gone on X";
    EXPECT_EQ(folderOf(2), "Kitchen");
}

TEST_F(FolderSync, AQuickSyncNeverAsksForFolders)
{
    foldersOnX({QStringLiteral("Kitchen")});
    syncQuickly();
    EXPECT_EQ(x.asked, QStringList(QStringLiteral("bookmarks")));
    EXPECT_TRUE(folders().isEmpty());
}

TEST_F(FolderSync, WhenTheUserIgnoresFoldersOfXThoseHereStayAsTheyAre)
{
    foldersOnX({QStringLiteral("Kitchen"), QStringLiteral("To read")});
    postsInFolder(QStringLiteral("F1"), {1});
    syncFully();
    const QList<Folder> before = folders();
    x.asked.clear();
    prefer([](AppPreferences& it) { it.ignoreXFolders = true; });
    foldersOnX({QStringLiteral("Other")});
    postsInFolder(QStringLiteral("F1"), {2});
    syncFully();
    EXPECT_EQ(x.asked, QStringList(QStringLiteral("bookmarks")));
    EXPECT_EQ(folders(), before);
    EXPECT_EQ(folderOf(1), "Kitchen");
    EXPECT_EQ(folderOf(2), "");
}

// Tokens "1", "2" and so on, up to `last`.
std::optional<QString> countingToken(std::optional<QString> token, int last)
{
    const int next = token.value_or(QStringLiteral("0")).toInt() + 1;
    return next > last ? std::nullopt : std::optional(QString::number(next));
}

TEST_F(FolderSync, AHundredPagesOfFoldersAreTheMost)
{
    x.folders = [](std::optional<QString> token) {
        return XPage<XBookmarkFolder>{.nextToken = countingToken(token, 99)};
    };
    syncFully();
    EXPECT_EQ(x.asked.size(), 101);
    x.asked.clear();
    x.folders = [](std::optional<QString> token) {
        return XPage<XBookmarkFolder>{.nextToken = countingToken(token, 100)};
    };
    EXPECT_EQ(errorCaseOfFullSync(), BookmarkSyncError::Case::pageLimitExceeded);
    EXPECT_EQ(x.asked.size(), 101);
}

TEST_F(FolderSync, AHundredPagesOfAFolderAreTheMost)
{
    foldersOnX({QStringLiteral("Kitchen")});
    x.folderPosts = [](const QString&, std::optional<QString> token) {
        return XPage<QString>{.items = {makePost(1).tweetID}, .nextToken = countingToken(token, 99)};
    };
    syncFully();
    EXPECT_EQ(x.asked.size(), 102);
    x.asked.clear();
    x.folderPosts = [](const QString&, std::optional<QString> token) {
        return XPage<QString>{.items = {makePost(2).tweetID}, .nextToken = countingToken(token, 100)};
    };
    EXPECT_EQ(errorCaseOfFullSync(), BookmarkSyncError::Case::pageLimitExceeded);
    EXPECT_EQ(x.asked.size(), 102);
    EXPECT_EQ(folderOf(2), "Kitchen") << "what came before the limit is kept";
}

TEST_F(FolderSync, ARepeatedTokenEndsTheWalk)
{
    x.folders = [](std::optional<QString>) {
        return XPage<XBookmarkFolder>{.items = {{QStringLiteral("F1"), QStringLiteral("Kitchen")}},
                                      .nextToken = QStringLiteral("again")};
    };
    EXPECT_EQ(errorCaseOfFullSync(), BookmarkSyncError::Case::paginationCycle);
    EXPECT_EQ(x.asked.count(QStringLiteral("folders after again")), 1);

    foldersOnX({QStringLiteral("Kitchen")});
    x.folderPosts = [](const QString&, std::optional<QString>) {
        return XPage<QString>{.nextToken = QStringLiteral("again")};
    };
    x.asked.clear();
    EXPECT_EQ(errorCaseOfFullSync(), BookmarkSyncError::Case::paginationCycle);
    EXPECT_EQ(x.asked.count(QStringLiteral("folder F1 after again")), 1);
}

TEST_F(FolderSync, ATokenOfOneListMayComeInAnother)
{
    foldersOnX({QStringLiteral("One"), QStringLiteral("Two")});
    x.folderPosts = [](const QString&, std::optional<QString> token) {
        return XPage<QString>{.nextToken = token ? std::nullopt : std::optional(QStringLiteral("same"))};
    };
    EXPECT_NO_THROW(syncFully());
    EXPECT_EQ(x.asked.last(), QStringLiteral("folder F2 after same"));
}

TEST_F(FolderSync, AFailureInAFolderKeepsWhatCameBeforeAndFailsTheRun)
{
    foldersOnX({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
    x.folderPosts = [](const QString& folder, std::optional<QString>) {
        if (folder == u"F2")
            throw XAPIError::rateLimited(Instant::fromSecondsSince1970(1'800'000'000));
        return XPage<QString>{.items = {makePost(1).tweetID}};
    };
    errorOf<XAPIError>([this] { syncFully(); });
    EXPECT_EQ(folders().size(), 2);
    EXPECT_EQ(folderOf(1), "One");
    EXPECT_EQ(lastRun().status, SyncRun::Status::rateLimited);
    EXPECT_EQ(lastRun().rateLimitResetAt, Instant::fromSecondsSince1970(1'800'000'000));
    EXPECT_EQ(lastRun().created, 5);
    EXPECT_EQ(lastRun().pages, 1);
}

TEST_F(FolderSync, AFolderThatCannotBeStoredFailsTheRun)
{
    foldersOnX({QStringLiteral("Design!"), QStringLiteral("design?")});
    const auto error = errorOf<SQLiteStoreError>([this] { syncFully(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->errorCase(), SQLiteStoreError::Case::execute);
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().errorMessage, error->description());
    EXPECT_EQ(folders().size(), 1);
}

TEST_F(FolderSync, AFolderThatWasRenamedOnOneSideFailsTheRun)
{
    foldersOnX({QStringLiteral("Kitchen")});
    syncFully();
    foldersOnX({QStringLiteral("Cooking")});
    EXPECT_EQ(errorOf<SQLiteStoreError>([this] { syncFully(); })->errorCase(),
              SQLiteStoreError::Case::execute)
        << "another folder has the id already";
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(folders().size(), 1);
}

TEST_F(FolderSync, AFolderThatIsNotThereAfterItWasStoredFailsTheRun)
{
    connection->execute("CREATE TRIGGER vanish AFTER INSERT ON folders "
                        "BEGIN DELETE FROM folders WHERE id = new.id; END");
    foldersOnX({QStringLiteral("Kitchen")});
    const auto error = errorOf<SQLiteStoreError>([this] { syncFully(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->errorCase(), SQLiteStoreError::Case::notFound);
    EXPECT_EQ(lastRun().errorMessage, QStringLiteral("The folder could not be loaded."));
}

TEST_F(FolderSync, ASearchFindsWhatWasJustFiled)
{
    const auto inKitchen = [this] {
        return onStore([](LocalLibraryStore& it) {
            return it.countBookmarks(LibraryFilter::all, {.query = QStringLiteral("folder:kitchen")});
        });
    };
    syncFully();
    EXPECT_EQ(inKitchen(), 0);
    foldersOnX({QStringLiteral("Kitchen")});
    postsInFolder(QStringLiteral("F1"), {1, 3});
    syncFully();
    EXPECT_EQ(inKitchen(), 2);
}

} // namespace
} // namespace mirel
