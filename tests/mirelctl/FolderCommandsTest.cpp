#include "CommandBench.h"

namespace mirel {
namespace {

using FolderCommands = testing::CommandBench;

TEST_F(FolderCommands, ListFoldersBelowThoseThatHoldThem)
{
    EXPECT_EQ(text("folder list"), "No folders.");
    storePosts(2);
    text("folder create Work --description \"For money\"");
    text("folder create Research --parent work");
    text("folder assign research 10001 10002");
    EXPECT_EQ(text("folder list"), "#2  2 bookmarks  2 unread  Work / Research\n"
                                   "#1  0 bookmarks  0 unread  Work: For money");
    EXPECT_EQ(text("folder list resea"), "#2  2 bookmarks  2 unread  Work / Research");
    EXPECT_TRUE(json<QList<FolderSummary>>("folder list") ==
                inLibrary([](LocalLibraryStore& library) { return library.folderSummaries(); }));
}

TEST_F(FolderCommands, ListFoldersThatWereStoredInACircle)
{
    text("folder create a");
    text("folder create b --parent a");
    inLibrary([](LocalLibraryStore& library) {
        library.createFolder(QStringLiteral("a"), {}, 2, Folder::Source::local, {});
    });
    EXPECT_EQ(text("folder list"), "#1  0 bookmarks  0 unread  b / a\n"
                                   "#2  0 bookmarks  0 unread  a / b");
}

TEST_F(FolderCommands, CreateAFolder)
{
    EXPECT_EQ(text("folder create \" Deep work \""), "Folder \"Deep work\" is #1.");
    const auto folder = json<Folder>("folder create b --parent \"deep WORK\" --description c");
    EXPECT_EQ(folder.name, QStringLiteral("b"));
    EXPECT_EQ(folder.parentID, 1);
    EXPECT_EQ(folder.description, QStringLiteral("c"));
    EXPECT_EQ(folder.source, Folder::Source::local);
    EXPECT_EQ(failure("folder create c --parent x"), "There is no folder \"x\".");
}

TEST_F(FolderCommands, CreatingAFolderThatIsThereChangesWhatIsNamed)
{
    text("folder create Work --description a");
    text("folder create Top");
    const auto again = json<Folder>("folder create work --parent top");
    EXPECT_EQ(again.id, 1);
    EXPECT_EQ(again.name, QStringLiteral("Work"));
    EXPECT_EQ(again.description, QStringLiteral("a"));
    EXPECT_EQ(again.parentID, 2);
    EXPECT_EQ(failure("folder create Top --parent Work"),
              "A folder cannot be nested inside itself or one of its descendants.");
}

TEST_F(FolderCommands, RefuseEmptyNames)
{
    EXPECT_EQ(failure("folder create \" \""), "A non-empty name is required.");
    text("folder create a");
    EXPECT_EQ(failure("folder update a --name \" \""), "A non-empty name is required.");
    EXPECT_EQ(text("folder list"), "#1  0 bookmarks  0 unread  a");
}

TEST_F(FolderCommands, UpdateWhatIsNamedAndKeepTheRest)
{
    text("folder create Top");
    text("folder create Work --description a --parent top");
    const auto renamed = json<Folder>("folder update work --name Play");
    EXPECT_EQ(renamed.name, QStringLiteral("Play"));
    EXPECT_EQ(renamed.slug, QStringLiteral("play"));
    EXPECT_EQ(renamed.description, QStringLiteral("a"));
    EXPECT_EQ(renamed.parentID, 1);
    EXPECT_EQ(json<Folder>("folder update play --description b").description, QStringLiteral("b"));
    const auto bare = json<Folder>("folder update play --no-description");
    EXPECT_FALSE(bare.description);
    EXPECT_EQ(bare.parentID, 1);
    EXPECT_FALSE(json<Folder>("folder update play --no-parent").parentID);
    EXPECT_EQ(json<Folder>("folder update #2 --parent #1").parentID, 1);
    EXPECT_EQ(text("folder update play"), "Folder \"Play\" is #2.");
}

TEST_F(FolderCommands, RefuseCirclesAndUnknownFolders)
{
    text("folder create Top");
    text("folder create Below --parent top");
    for (const QByteArray parent : {"below", "top"}) {
        EXPECT_EQ(failure("folder update top --parent " + parent),
                  "A folder cannot be nested inside itself or one of its descendants.");
    }
    EXPECT_EQ(failure("folder update x"), "There is no folder \"x\".");
    EXPECT_EQ(failure("folder update top --parent x"), "There is no folder \"x\".");
}

TEST_F(FolderCommands, DeleteFoldersAndKeepTheirBookmarks)
{
    storePosts(1);
    text("folder create a");
    text("folder create b --parent a");
    text("folder assign a 10001");
    EXPECT_EQ(failure("folder delete a x"), "There is no folder \"x\".");
    EXPECT_EQ(text("folder delete a"), "Deleted \"a\".");
    EXPECT_FALSE(json<Bookmark>("show 10001").folder);
    const auto deleted = json<QList<Folder>>("folder delete b");
    ASSERT_EQ(deleted.size(), 1);
    EXPECT_FALSE(deleted[0].parentID);
}

TEST_F(FolderCommands, AssignMovesBookmarksAndUnassignTakesThemOut)
{
    storePosts(2);
    text("folder create a");
    text("folder create b");
    EXPECT_EQ(text("folder assign a 10001 10002"), "Assigned \"a\" to 2 bookmarks.");
    const auto moved = json<QList<Bookmark>>("folder assign B 10001");
    ASSERT_EQ(moved.size(), 1);
    EXPECT_EQ(moved[0].folder->name, QStringLiteral("b"));
    EXPECT_EQ(text("folder unassign 10001"), "Unassigned the folder of 1 bookmark.");
    EXPECT_FALSE(json<QList<Bookmark>>("folder unassign 10002")[0].folder);
    EXPECT_EQ(failure("folder assign x 10001"), "There is no folder \"x\".");
    EXPECT_EQ(failure("folder unassign 999"), "That X post is not in the local library.");
}

} // namespace
} // namespace mirel
