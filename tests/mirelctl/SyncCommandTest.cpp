#include "testing/Printing.h"

#include "TestModel.h"
#include "mirelctl/CommandError.h"
#include "mirelctl/Interruption.h"
#include "mirelctl/SyncCommand.h"
#include "support/BlockOn.h"

#include <gtest/gtest.h>

#include <csignal>

namespace mirel {
namespace {

using testing::makePost;
using testing::TestModel;

QList<std::optional<QList<SyncedBookmark>>> twoPages()
{
    return {QList{makePost(3), makePost(2)}, QList{makePost(1)}};
}

QList<SyncRun> runsOf(const TestModel& test)
{
    return blockOn(
        test.model->store()->call([](LocalLibraryStore& library) { return library.syncRuns(10); }));
}

TEST(SyncCommand, TellsPeopleWhatTheSyncBrought)
{
    TestModel test(twoPages());
    EXPECT_EQ(SyncCommand{}.run(*test.model, {}),
              "Quick sync checked 3 recent bookmarks across 2 page(s), 3 new.\n");
    EXPECT_EQ(SyncCommand{}.run(*test.model, {}),
              "Quick sync checked 2 recent bookmarks across 1 page(s), 0 new.\n");
    EXPECT_EQ(SyncCommand{.full = true}.run(*test.model, {}),
              "Full sync checked every page X made available: 3 bookmarks across 2 page(s), 0 new.\n");
}

TEST(SyncCommand, RunsTheFirstSyncOfALibraryAsInitial)
{
    TestModel test(twoPages());
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(SyncCommand{}.run(*test.model, {}).isEmpty());
    const auto runs = runsOf(test);
    ASSERT_EQ(runs.size(), 2);
    EXPECT_EQ(runs[1].kind, SyncRun::Kind::initial);
    EXPECT_EQ(runs[0].kind, SyncRun::Kind::manual);
}

TEST(SyncCommand, GivesMachinesTheSummary)
{
    TestModel test(twoPages());
    const auto summary = decodeJSON<BookmarkSyncSummary>(SyncCommand{}.run(*test.model, {.json = true}));
    EXPECT_EQ(summary.pages, 2);
    EXPECT_EQ(summary.fetched, 3);
    EXPECT_EQ(summary.created, 3);
    EXPECT_EQ(summary.createdBookmarkIDs.size(), 3);
    EXPECT_EQ(summary.mode, BookmarkSyncMode::incremental);
    EXPECT_TRUE(summary.reachedRemoteEnd);
}

TEST(SyncCommand, RewritesOneLineWithTheProgressAndTakesItAwayAtTheEnd)
{
    TestModel test(twoPages());
    QByteArrayList shown;
    EXPECT_FALSE(
        SyncCommand{}
            .run(*test.model, {.showProgress = [&](const QByteArray& bytes) { shown.append(bytes); }})
            .isEmpty());
    EXPECT_EQ(shown.first(), "\rAsking X for the first page...\x1b[K");
    EXPECT_EQ(shown.last(), "\r\x1b[K");
    EXPECT_TRUE(shown.contains("\rPage 1: 2 received, 2 new\x1b[K"));
    EXPECT_TRUE(shown.contains("\rPage 2: 3 received, 3 new\x1b[K"));
}

TEST(SyncCommand, FullyBringsFoldersThreadsAndWhatTheRulesFile)
{
    TestModel test(twoPages());
    test.x->folders = {{QStringLiteral("F1"), QStringLiteral("Kitchen")}};
    test.x->postsInFolders = {makePost(2).tweetID};
    test.x->thread = {{.tweetID = QStringLiteral("1")}, {.tweetID = QStringLiteral("2")}};
    blockOn(test.model->store()->call([](LocalLibraryStore& library) {
        AppPreferences preferences;
        preferences.threadEnrichment = AppPreferences::ThreadEnrichment::automatic;
        library.savePreferences(preferences);
        const Tag label =
            library.createTag(QStringLiteral("Filed"), QStringLiteral("#123456"), Tag::Source::manual);
        library.createRule(QStringLiteral("Filed"), QStringLiteral("folder:kitchen"),
                           BookmarkRule::Action::tag, label.id, true);
    }));
    EXPECT_EQ(SyncCommand{.full = true}.run(*test.model, {}),
              "Full sync checked every page X made available: 3 bookmarks across 2 page(s), 3 new.\n");
    const auto bookmark = blockOn(test.model->store()->call(
        [](LocalLibraryStore& library) { return library.bookmark(makePost(2).tweetID); }));
    ASSERT_TRUE(bookmark && bookmark->folder);
    EXPECT_EQ(bookmark->folder->name, QStringLiteral("Kitchen"));
    EXPECT_EQ(bookmark->tags.size(), 1);
    EXPECT_EQ(bookmark->thread.size(), 2);
}

class InterruptedSync : public ::testing::TestWithParam<int>
{
};

TEST_P(InterruptedSync, EndsWithItsRunFailedAndKeepsWhatArrived)
{
    TestModel test({QList{makePost(3), makePost(2)}, std::nullopt});
    QTimer interrupting;
    QObject::connect(&interrupting, &QTimer::timeout, &interrupting, [&] {
        if (test.x->hangs) {
            interrupting.stop();
            raise(GetParam());
        }
    });
    interrupting.start(1);
    try {
        [[maybe_unused]] const auto output = SyncCommand{}.run(*test.model, {});
        FAIL() << "was not interrupted";
    } catch (const CommandError& error) {
        EXPECT_EQ(error.description(),
                  QStringLiteral("The sync was interrupted; all that had arrived is in the library."));
    }
    blockOn(test.model->shutDown());
    const auto runs = runsOf(test);
    ASSERT_EQ(runs.size(), 1);
    EXPECT_EQ(runs[0].status, SyncRun::Status::failed);
    EXPECT_EQ(runs[0].errorMessage, QStringLiteral("Sync canceled."));
    EXPECT_EQ(runs[0].fetched, 2);
    EXPECT_EQ(blockOn(test.model->store()->call([](LocalLibraryStore& library) {
                  return library.libraryCounts();
              })).all,
              2);
}

TEST(Interruption, LeavesASignalThatIsIgnoredAlone)
{
    const auto before = std::signal(SIGHUP, SIG_IGN);
    bool isInterrupted = false;
    {
        const Interruption interruption([&] { isInterrupted = true; });
        raise(SIGHUP);
        QCoreApplication::processEvents();
        EXPECT_FALSE(interruption.hasHappened());
    }
    EXPECT_FALSE(isInterrupted);
    EXPECT_EQ(std::signal(SIGHUP, before), SIG_IGN);
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptedSync, ::testing::Values(SIGINT, SIGTERM, SIGHUP));

} // namespace
} // namespace mirel
