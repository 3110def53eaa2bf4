#include "screens/WindowBench.h"

#include "x/BookmarkSyncError.h"
#include "x/XAPIError.h"

namespace mirel::testing {

class SyncWindow : public WindowBench
{
protected:
    static XBookmarkPage page(int first, int last, std::optional<QString> nextToken = {})
    {
        XBookmarkPage result = makePage(first, last, std::move(nextToken));
        for (SyncedBookmark& post : result.items)
            post.author.profileImageURL.reset();
        return result;
    }
};

TEST_F(SyncWindow, TellsWhereTheSyncIs)
{
    const ScriptedX::Pages pages(2);
    makeModel(pages, true);
    openWindow();
    EXPECT_EQ(visible("syncProgressBar"), nullptr);
    click(visible("quickSync"));
    ASSERT_TRUE(eventually([this] { return visible("syncProgressBar") != nullptr; }));
    EXPECT_EQ(text("syncPhase"), QStringLiteral("Connecting to X…"));
    EXPECT_FALSE(visible("quickSync")->isEnabled());

    pages.send(0, page(51, 100, QStringLiteral("next")));
    ASSERT_TRUE(
        eventually([this] { return text("syncPhase") == QStringLiteral("Fetching X bookmarks · page 1"); }));
    EXPECT_EQ(text("syncReceived"), QStringLiteral("50 received · More pages available"));
    EXPECT_TRUE(eventually([this] {
        return text("text", rows().value(0)) == QStringLiteral("Post number 100");
    })) << "the rows arrive page by page";

    pages.send(1, page(41, 50));
    ASSERT_TRUE(eventually([this] { return !model->isSyncing(); }));
    EXPECT_EQ(visible("syncProgressBar"), nullptr);
    EXPECT_EQ(text("message", visible("statusLine")),
              QStringLiteral("Quick sync checked 60 recent bookmarks across 2 page(s), 60 new."));
    EXPECT_EQ(text("resultCount"), QStringLiteral("60 results"));
    click(visible("dismiss", visible("statusLine")));
    EXPECT_TRUE(eventually([this] { return visible("statusLine") == nullptr; }));
}

TEST_F(SyncWindow, RunsTheFullSyncFromItsMenu)
{
    const ScriptedX::Pages pages(1);
    makeModel(pages, true);
    openWindow();
    click(visible("syncMenuButton"));
    ASSERT_TRUE(eventually([this] { return visible("fullSyncItem") != nullptr; }));
    click(visible("fullSyncItem"));
    pages.send(0, page(1, 3));
    ASSERT_TRUE(eventually([this] { return visible("statusLine") != nullptr; }));
    EXPECT_TRUE(
        text("message", visible("statusLine")).startsWith(QStringLiteral("Full sync checked every page")));
}

TEST_F(SyncWindow, ShowsTheErrorFirstAndKeepsWhatHadArrived)
{
    const ScriptedX::Pages pages(2);
    makeModel(pages, true);
    openWindow();
    press(Qt::Key_R, Qt::ControlModifier);
    pages.send(0, page(1, 50, QStringLiteral("next")));
    ASSERT_TRUE(eventually([this] { return rows().size() > 2; }));
    const BookmarkSyncError error(BookmarkSyncError::Case::paginationCycle);
    pages.fail(1, std::make_exception_ptr(error));
    ASSERT_TRUE(eventually([this] { return !model->isSyncing(); }));
    ASSERT_NE(visible("errorLine"), nullptr);
    EXPECT_EQ(text("message", visible("errorLine")), error.description());
    EXPECT_EQ(model->counts().all, 50);
    EXPECT_TRUE(visible("quickSync")->isEnabled());
}

TEST_F(SyncWindow, ShowsTheErrorAboveWhatWasDone)
{
    const ScriptedX::Pages pages(1);
    makeModel(pages, true);
    openWindow();
    press(Qt::Key_R, Qt::ControlModifier);
    pages.send(0, page(1, 3));
    ASSERT_TRUE(eventually([this] { return visible("statusLine") != nullptr; }));
    blockOn(model->openTweetURL(QStringLiteral("no post")));
    ASSERT_TRUE(eventually([this] { return visible("errorLine") != nullptr; }));
    ASSERT_NE(visible("statusLine"), nullptr);
    EXPECT_FALSE(window().grabWindow().isNull()) << "the frame places the lines";
    const auto top = [this](const char* line) { return visible(line)->mapToScene(QPointF()).y(); };
    EXPECT_LT(top("errorLine"), top("statusLine"));
}

TEST_F(SyncWindow, AVeryLongErrorLeavesRoomForTheRows)
{
    fillWithNumberedPosts(30);
    const ScriptedX::Pages pages(1);
    makeModel(pages, true);
    openWindow();
    press(Qt::Key_R, Qt::ControlModifier);
    const auto error = XAPIError::http(503, QStringLiteral("no capacity left, ").repeated(400));
    pages.fail(0, std::make_exception_ptr(error));
    ASSERT_TRUE(eventually([this] { return visible("errorLine") != nullptr; }));
    expectNothingIsCut();
    EXPECT_LT(visible("errorLine")->height(), 160);
    EXPECT_GT(rows().size(), 2);
    keepPicture(QStringLiteral("long-error"));
}

TEST_F(SyncWindow, CanBeCanceled)
{
    const ScriptedX::Pages pages(3);
    makeModel(pages, true);
    openWindow();
    press(Qt::Key_R, Qt::ControlModifier);
    pages.send(0, page(51, 100, QStringLiteral("next")));
    ASSERT_TRUE(eventually([this] { return model->counts().all == 50; }));
    click(visible("cancelSync"));
    ASSERT_TRUE(eventually([this] { return !model->isSyncing(); })) << "X has not answered";
    pages.send(1, page(1, 50, QStringLiteral("further")));
    EXPECT_EQ(visible("errorLine"), nullptr);
    EXPECT_EQ(text("message", visible("statusLine")),
              QStringLiteral("The sync was canceled. What had arrived is in the library."));
    EXPECT_EQ(model->counts().all, 50);
    EXPECT_EQ(text("syncLine"), QStringLiteral("Last sync failed"));
    EXPECT_EQ(model->syncRuns().first().errorMessage, QStringLiteral("Sync canceled."));
}

} // namespace mirel::testing
