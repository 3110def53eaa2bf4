#include "screens/InventedHistory.h"
#include "screens/WindowBench.h"

namespace mirel::testing {

class SyncHistoryWindow : public WindowBench
{
protected:
    void openHistory()
    {
        openWindow();
        click(visible("syncState"));
        ASSERT_TRUE(eventually([this] { return visible("sheetSubtitle") != nullptr; }));
    }

    QString state(const char* name, const char* part) const { return text(part, visible(name)); }

    QStringList texts(const char* name) const
    {
        QStringList found;
        for (QQuickItem* const item : allVisible(name))
            found.append(item->property("text").toString());
        return found;
    }
};

TEST_F(SyncHistoryWindow, TellsWhenThereIsNoHistory)
{
    openHistory();
    EXPECT_EQ(text("sheetTitle"), QStringLiteral("Sync history & diagnostics"));
    EXPECT_EQ(text("sheetSubtitle"), QStringLiteral("Tokens and credentials are never recorded."));
    EXPECT_EQ(state("noRuns", "stateTitle"), QStringLiteral("No sync history"));
    EXPECT_EQ(visible("runList"), nullptr);
    press(Qt::Key_Escape);
    EXPECT_TRUE(eventually([this] { return visible("sheetTitle") == nullptr; }));
}

TEST_F(SyncHistoryWindow, ListsTheRunsNewestFirstWithTheirStatusWords)
{
    inventHistory(library);
    openHistory();
    ASSERT_TRUE(eventually([this] { return allVisible("runRow").size() == 5; }));
    EXPECT_EQ(texts("runStatus"), QStringList({QStringLiteral("rate limited"), QStringLiteral("failed"),
                                               QStringLiteral("completed"), QStringLiteral("running"),
                                               QStringLiteral("queued")}));
    EXPECT_EQ(texts("runFetched").value(2), QStringLiteral("49 fetched"));
    EXPECT_EQ(texts("runFetched").value(4), QStringLiteral("0 fetched"));
    EXPECT_EQ(state("noRunSelected", "stateTitle"), QStringLiteral("Select a sync"));
}

TEST_F(SyncHistoryWindow, TellsTheStoryOfTheSelectedRun)
{
    inventHistory(library);
    openHistory();
    ASSERT_TRUE(eventually([this] { return allVisible("runRow").size() == 5; }));
    click(allVisible("runRow").value(2));
    ASSERT_TRUE(eventually([this] { return text("runTitle") == QStringLiteral("Run #3"); }));
    EXPECT_EQ(visible("noRunSelected"), nullptr);
    EXPECT_TRUE(text("runNumbers").contains(QStringLiteral("42 updated"))) << qPrintable(text("runNumbers"));
    EXPECT_EQ(
        texts("logMessage"),
        QStringList({QStringLiteral("Started incremental automatic bookmark sync with 50-item X pages."),
                     QStringLiteral("Bookmark page 1"),
                     QStringLiteral("Completed incremental sync of 49 bookmarks across 1 pages.")}));
    EXPECT_EQ(texts("logNumbers"),
              QStringList(QStringLiteral("50 requested · 49 received · 48 reported · 49 in all · More pages "
                                         "available")));
    EXPECT_EQ(visible("runReset"), nullptr);
}

TEST_F(SyncHistoryWindow, TheArrowsGoThroughTheRuns)
{
    inventHistory(library);
    openHistory();
    ASSERT_TRUE(eventually([this] { return allVisible("runRow").size() == 5; }));
    press(Qt::Key_Down);
    EXPECT_TRUE(eventually([this] { return text("runTitle") == QStringLiteral("Run #5"); }));
    press(Qt::Key_Down);
    EXPECT_TRUE(eventually([this] { return text("runTitle") == QStringLiteral("Run #4"); }));
    press(Qt::Key_End);
    EXPECT_TRUE(eventually([this] { return text("runTitle") == QStringLiteral("Run #1"); }));
    press(Qt::Key_Down);
    EXPECT_EQ(text("runTitle"), QStringLiteral("Run #1"));
    press(Qt::Key_Home);
    EXPECT_TRUE(eventually([this] { return text("runTitle") == QStringLiteral("Run #5"); }));
    press(Qt::Key_Up);
    EXPECT_EQ(text("runTitle"), QStringLiteral("Run #5"));
}

TEST_F(SyncHistoryWindow, TellsWhenARateLimitEnds)
{
    const QDateTime reset = QDateTime::currentDateTime().addDays(2);
    inventRun(library, SyncRun::Status::rateLimited, QStringLiteral("X rate limit reached."),
              Instant::fromSecondsSince1970(static_cast<double>(reset.toSecsSinceEpoch())));
    openHistory();
    ASSERT_TRUE(eventually([this] { return allVisible("runRow").size() == 1; }));
    press(Qt::Key_Down);
    ASSERT_TRUE(eventually([this] { return visible("runReset") != nullptr; }));
    EXPECT_EQ(text("runReset"), QStringLiteral("X rate limit resets ") +
                                    QLocale(QLocale::English, QLocale::UnitedKingdom)
                                        .toString(reset, QStringLiteral("d MMM 'at' HH:mm")));
}

TEST_F(SyncHistoryWindow, ARunOfAnEarlierVersionHasNoDetails)
{
    inventRun(library, SyncRun::Status::failed, QStringLiteral("The disk is full."));
    library.connect()->execute("DELETE FROM sync_log_entries");
    openHistory();
    ASSERT_TRUE(eventually([this] { return allVisible("runRow").size() == 1; }));
    click(allVisible("runRow").value(0));
    ASSERT_TRUE(eventually([this] { return visible("noEntries") != nullptr; }));
    EXPECT_EQ(state("noEntries", "stateTitle"), QStringLiteral("No detailed diagnostics"));
    EXPECT_EQ(state("noEntries", "stateExplanation"),
              QStringLiteral("Detailed page logs are available for syncs made with this version of Mirel."));
    EXPECT_EQ(text("runError"), QStringLiteral("The disk is full."));
}

TEST_F(SyncHistoryWindow, FollowsASyncThatEndsWhileItIsOpen)
{
    const ScriptedX::Pages pages(1);
    makeModel(pages, true);
    openHistory();
    model->requestSync(false);
    pages.send(0, makePage(1, 3));
    EXPECT_TRUE(eventually([this] { return allVisible("runRow").size() == 1; }));
    EXPECT_EQ(texts("runStatus"), QStringList(QStringLiteral("completed")));
}

struct SyncLine
{
    const char* name;
    std::optional<SyncRun::Status> last;
    const char* expected;
};

void PrintTo(const SyncLine& line, std::ostream* out)
{
    *out << line.name;
}

class SyncLineOfTheSidebar : public SyncHistoryWindow, public ::testing::WithParamInterface<SyncLine>
{
};

TEST_P(SyncLineOfTheSidebar, TellsHowTheLastSyncEnded)
{
    if (GetParam().last)
        inventRun(library, *GetParam().last, QStringLiteral("something"));
    openWindow();
    EXPECT_EQ(text("syncLine"), QString::fromLatin1(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    , SyncLineOfTheSidebar,
    ::testing::Values(SyncLine{"None", std::nullopt, "Not synced yet"},
                      SyncLine{"RateLimited", SyncRun::Status::rateLimited, "X rate limited"},
                      SyncLine{"Failed", SyncRun::Status::failed, "Last sync failed"},
                      SyncLine{"Completed", SyncRun::Status::completed,
                               "Last sync: 49 bookmarks across 1 page(s)"},
                      SyncLine{"CutOff", SyncRun::Status::running, "Last sync did not finish"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(SyncHistoryWindow, TheSidebarCountsWhileASyncRuns)
{
    const ScriptedX::Pages pages(2);
    makeModel(pages, true);
    openWindow();
    model->requestSync(false);
    EXPECT_TRUE(eventually([this] { return text("syncLine") == QStringLiteral("Syncing 0 bookmarks"); }));
    pages.send(0, makePage(51, 100, QStringLiteral("next")));
    EXPECT_TRUE(eventually([this] { return text("syncLine") == QStringLiteral("Syncing 50 bookmarks"); }));
    pages.send(1, makePage(41, 50));
    EXPECT_TRUE(eventually(
        [this] { return text("syncLine") == QStringLiteral("Last sync: 60 bookmarks across 2 page(s)"); }));
}

TEST_F(SyncHistoryWindow, ANoticeTellsUntilWhenXAnswersNoSync)
{
    const QDateTime reset = QDateTime::currentDateTime().addDays(1);
    inventRun(library, SyncRun::Status::rateLimited, QStringLiteral("X rate limit reached."),
              Instant::fromSecondsSince1970(static_cast<double>(reset.toSecsSinceEpoch())));
    openWindow();
    ASSERT_NE(visible("rateLimitNotice"), nullptr);
    EXPECT_TRUE(text("rateLimitText").startsWith(QStringLiteral("X rate limit resets ")));
    EXPECT_TRUE(text("rateLimitText").endsWith(reset.toString(QStringLiteral("HH:mm"))));
}

TEST_F(SyncHistoryWindow, ARateLimitThatIsOverNeedsNoNotice)
{
    inventRun(library, SyncRun::Status::rateLimited, QStringLiteral("X rate limit reached."),
              Instant::now().addingSeconds(-60));
    openWindow();
    EXPECT_EQ(visible("rateLimitNotice"), nullptr);
    EXPECT_EQ(text("syncLine"), QStringLiteral("X rate limited"));
}

} // namespace mirel::testing
