#include "testing/Printing.h"

#include "model/ModelTestBench.h"
#include "testing/FailingSQLite.h"

#include <QSignalSpy>

namespace mirel {
namespace {

using testing::makePost;

class LibraryState : public testing::ModelTestBench
{
};

TEST_F(LibraryState, StartShowsTheFirstPageTheCountsAndTheHistory)
{
    store(1, 120);
    library.open()->createSyncRun(SyncRun::Kind::manual);
    makeModel();
    EXPECT_FALSE(model->hasLoaded());
    blockOn(model->start());
    EXPECT_TRUE(model->hasLoaded());
    EXPECT_FALSE(model->isLoading());
    EXPECT_EQ(model->bookmarks().size(), 50);
    EXPECT_EQ(model->bookmarks().first().text, QStringLiteral("Post number 120"));
    EXPECT_EQ(model->counts().all, 120);
    EXPECT_EQ(model->libraryResultCount(), 120);
    EXPECT_EQ(model->pageCount(), 3);
    EXPECT_EQ(model->syncRuns().size(), 1);
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(LibraryState, AnEmptyLibraryHasOnePage)
{
    makeModel();
    blockOn(model->start());
    EXPECT_EQ(model->pageCount(), 1);
    blockOn(model->nextPage());
    EXPECT_EQ(model->page(), 0);
    blockOn(model->previousPage());
    EXPECT_EQ(model->page(), 0);
}

TEST_F(LibraryState, PagesForwardAndBackwardWithinItsBounds)
{
    store(1, 120);
    makeModel();
    blockOn(model->start());
    blockOn(model->nextPage());
    EXPECT_EQ(model->bookmarks().first().text, QStringLiteral("Post number 70"));
    blockOn(model->nextPage());
    blockOn(model->nextPage());
    EXPECT_EQ(model->page(), 2);
    EXPECT_EQ(model->bookmarks().size(), 20);
    blockOn(model->previousPage());
    EXPECT_EQ(model->page(), 1);
}

TEST_F(LibraryState, APageThatRanOffTheEndStepsBackToTheLastOne)
{
    store(1, 101);
    makeModel();
    blockOn(model->start());
    blockOn(model->nextPage());
    blockOn(model->nextPage());
    ASSERT_EQ(model->page(), 2);
    library.open()->deleteBookmarkLocally(model->bookmarks().first().id);
    blockOn(model->refreshLibrary());
    EXPECT_EQ(model->page(), 1);
    EXPECT_EQ(model->bookmarks().size(), 50);
}

TEST_F(LibraryState, AMailboxAndASortBeginAtTheFirstPage)
{
    store(1, 120);
    makeModel();
    blockOn(model->start());
    blockOn(model->nextPage());
    blockOn(model->setLibrarySort(LibrarySort::oldest));
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->bookmarks().first().text, QStringLiteral("Post number 1"));
    library.open()->updateLocalState(model->bookmarks().first().id, {}, true, true, false);
    blockOn(model->nextPage());
    blockOn(model->openMailbox(LibraryFilter::favorites));
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(shownTexts(), QStringList{QStringLiteral("Post number 1")});
    EXPECT_EQ(model->libraryResultCount(), 1);
}

TEST_F(LibraryState, BeginsOnTheTodayScreenWithTheInboxAndNothingSelected)
{
    makeModel();
    EXPECT_EQ(model->selection(), SidebarDestination::today);
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::inbox);
    EXPECT_EQ(model->librarySort(), LibrarySort::newest);
    EXPECT_EQ(model->refinements(), LibraryRefinements{});
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->libraryResultCount(), 0);
    EXPECT_TRUE(model->bookmarks().isEmpty());
    EXPECT_TRUE(model->mediaBookmarks().isEmpty());
    EXPECT_EQ(model->counts(), LibraryCounts{});
    EXPECT_EQ(model->selectedBookmarkID(), std::nullopt);
    EXPECT_EQ(model->readerBookmark(), std::nullopt);
    EXPECT_TRUE(model->selectedBookmarkIDs().isEmpty());
    EXPECT_EQ(model->preferences(), AppPreferences{});
    EXPECT_FALSE(model->isLoading());
    EXPECT_FALSE(model->canGoBack());
}

TEST_F(LibraryState, CountsPagesByRoundingUpAndNeverDividesByZero)
{
    struct Row
    {
        qint64 results;
        qint64 pageSize;
        qint64 pages;
    };
    for (const Row& row : {Row{0, 50, 1}, Row{1, 50, 1}, Row{50, 50, 1}, Row{51, 50, 2}, Row{120, 50, 3},
                           Row{3, 0, 3}, Row{0, 0, 1}, Row{7, -4, 7}})
        EXPECT_EQ(MirelAppModel::pageCount(row.results, row.pageSize), row.pages)
            << row.results << " results on pages of " << row.pageSize;
}

TEST_F(LibraryState, ADeletedLastPageIsReadAgainAsTheNewLastOne)
{
    startWith(104);
    blockOn(model->nextPage());
    blockOn(model->nextPage());
    ASSERT_EQ(model->bookmarks().size(), 4);
    const auto writing = library.open();
    for (const Bookmark& bookmark : model->bookmarks())
        writing->deleteBookmarkLocally(bookmark.id);
    QSignalSpy shown(model.get(), &MirelAppModel::libraryChanged);
    blockOn(model->refreshLibrary());
    EXPECT_EQ(shown.size(), 1) << "the page that is gone is not shown";
    EXPECT_EQ(model->page(), 1);
    EXPECT_EQ(model->libraryResultCount(), 100);
    EXPECT_EQ(model->bookmarks().constLast().text, QStringLiteral("Post number 5"));
    EXPECT_FALSE(model->isLoading());
}

TEST_F(LibraryState, AnEmptiedLibraryStepsBackToItsFirstPage)
{
    startWith(51);
    blockOn(model->nextPage());
    library.open()->purgeAllLocalData();
    blockOn(model->refreshLibrary());
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->pageCount(), 1);
    EXPECT_TRUE(model->bookmarks().isEmpty());
}

TEST_F(LibraryState, ReloadsThePageAlsoWhenThereIsNoOtherOne)
{
    startWith(3);
    store(4, 4);
    blockOn(model->nextPage());
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->bookmarks().size(), 4);
    store(5, 5);
    blockOn(model->previousPage());
    EXPECT_EQ(model->bookmarks().size(), 5);
    EXPECT_FALSE(model->canGoBack()) << "paging is no place to return to";
}

TEST_F(LibraryState, TodayListsTheInboxWhateverTheMailbox)
{
    startWith(3);
    change(idOf(2), false, true, false);
    blockOn(model->openMailbox(LibraryFilter::favorites));
    EXPECT_EQ(shownTexts(), QStringList{QStringLiteral("Post number 2")});
    blockOn(model->show(SidebarDestination::today));
    EXPECT_EQ(model->listedFilter(), LibraryFilter::inbox);
    EXPECT_EQ(shownTexts(), (QStringList{QStringLiteral("Post number 3"), QStringLiteral("Post number 1")}));
}

TEST_F(LibraryState, ARefreshKeepsTheSelectedRowThatIsStillThere)
{
    startWith(3);
    const qint64 id = idOf(2);
    model->selectBookmark(id);
    blockOn(model->refreshLibrary());
    EXPECT_EQ(model->selectedBookmarkID(), id);
    EXPECT_EQ(model->selectedBookmark()->id, id);
    library.open()->deleteBookmarkLocally(id);
    blockOn(model->refreshLibrary());
    EXPECT_EQ(model->selectedBookmarkID(), std::nullopt);
    EXPECT_EQ(model->selectedBookmark(), std::nullopt);
    EXPECT_EQ(model->lastError(), std::nullopt) << "a row that disappears says nothing";
}

TEST_F(LibraryState, ARefreshKeepsASelectedRowOfAnotherPageWhileItIsInTheReader)
{
    startWith(60);
    const qint64 id = idOf(60);
    blockOn(model->openBookmark(id));
    blockOn(model->nextPage());
    EXPECT_EQ(model->selectedBookmarkID(), id);
    ASSERT_TRUE(model->readerBookmark());
    EXPECT_EQ(model->readerBookmark()->id, id);
}

TEST_F(LibraryState, SelectsTheResultsOfAllPages)
{
    startWith(120);
    model->selectBookmark(idOf(120));
    blockOn(model->selectAllLibraryResults());
    EXPECT_EQ(model->selectedBookmarkIDs().size(), 120);
    EXPECT_EQ(model->statusMessage(), QStringLiteral("Selected all 120 matching bookmarks."));
    EXPECT_EQ(model->selectedBookmarkID(), idOf(120)) << "the two selections are independent";
}

TEST_F(LibraryState, SelectsOnlyWhatTheListingHolds)
{
    startWith(3);
    change(idOf(3), false, false, true);
    blockOn(model->selectAllLibraryResults());
    EXPECT_EQ(model->selectedBookmarkIDs().size(), 2) << "the inbox";
    blockOn(model->openLibrary(model->bookmarks().first().author.id + 1, {}, {}));
    blockOn(model->selectAllLibraryResults());
    EXPECT_TRUE(model->selectedBookmarkIDs().isEmpty());
    EXPECT_EQ(model->statusMessage(), QStringLiteral("Selected all 0 matching bookmarks."));
}

TEST_F(LibraryState, ASelectionThatCannotBeReadKeepsTheOldOne)
{
    startWith(3);
    blockOn(model->selectAllLibraryResults());
    model->dismissStatus();
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    blockOn(model->selectAllLibraryResults());
    EXPECT_TRUE(model->lastError());
    EXPECT_EQ(model->statusMessage(), std::nullopt);
    EXPECT_EQ(model->selectedBookmarkIDs().size(), 3);
}

TEST_F(LibraryState, AMediaListThatCannotBeReadKeepsItsRows)
{
    startWith(3);
    blockOn(model->refreshMedia());
    const QList<Bookmark> before = model->mediaBookmarks();
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    blockOn(model->refreshMedia());
    EXPECT_TRUE(model->lastError());
    EXPECT_EQ(model->mediaBookmarks(), before);
}

TEST_F(LibraryState, TheLaterOfTwoFailuresIsTheOneToRead)
{
    startWith(3);
    library.connect()->execute("UPDATE bookmarks SET media_json = '' WHERE id = 2");
    blockOn(model->refreshLibrary());
    const auto first = model->lastError();
    ASSERT_TRUE(first);
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    blockOn(model->refreshLibrary());
    EXPECT_NE(model->lastError(), first);
}

TEST_F(LibraryState, SharesOneReadingAmongAllWhoAskDuringAnother)
{
    startWith(3);
    testing::HeldLibrary held(*model);
    QSignalSpy shown(model.get(), &MirelAppModel::libraryChanged);
    std::vector<QCoro::Task<>> refreshes;
    for (int call = 0; call < 20; ++call)
        refreshes.push_back(model->refreshLibrary());
    EXPECT_TRUE(model->isLoading());
    EXPECT_TRUE(model->isReadingLibrary());
    store(4, 4);
    held.release();
    for (auto& refresh : refreshes)
        blockOn(std::move(refresh));
    EXPECT_EQ(shown.size(), 2);
    EXPECT_EQ(model->bookmarks().size(), 4);
    EXPECT_FALSE(model->isLoading());
    EXPECT_FALSE(model->isReadingLibrary());
}

TEST_F(LibraryState, NeverShowsAPlaceThatTheUserHasLeft)
{
    startWith(60);
    change(idOf(60), false, true, false);
    testing::HeldLibrary held(*model);
    QStringList shown;
    QObject::connect(model.get(), &MirelAppModel::libraryChanged,
                     [&] { shown.append(model->bookmarks().constFirst().text); });
    auto first = model->openMailbox(LibraryFilter::all);
    auto second = model->setLibrarySort(LibrarySort::oldest);
    auto third = model->openMailbox(LibraryFilter::favorites);
    held.release();
    blockOn(std::move(first));
    blockOn(std::move(second));
    blockOn(std::move(third));
    EXPECT_EQ(shown, QStringList{QStringLiteral("Post number 60")}) << "only the last place is shown";
    EXPECT_EQ(model->libraryResultCount(), 1);
}

TEST_F(LibraryState, ReadsOnlyTheNewestOfTheSearchesThatPileUp)
{
    startWith(3);
    testing::HeldLibrary held(*model);
    int readings = 0;
    QObject::connect(model.get(), &MirelAppModel::isLoadingChanged,
                     [&] { readings += model->isReadingLibrary() && !model->isLoading() ? 1 : 0; });
    const QString typed = QStringLiteral("a long query");
    for (qsizetype length = 1; length <= typed.size(); ++length)
        model->requestSearch(typed.left(length));
    held.release();
    blockOn(model->shutDown());
    EXPECT_EQ(readings, 2) << "the first one, which was under way, and the last";
    EXPECT_EQ(model->refinements().query, typed);
    EXPECT_FALSE(model->isReadingLibrary());
}

TEST_F(LibraryState, WhatWasSelectedElsewhereIsDropped)
{
    startWith(60);
    testing::HeldLibrary held(*model);
    auto selecting = model->selectAllLibraryResults();
    auto leaving = model->show(SidebarDestination::search);
    held.release();
    blockOn(std::move(selecting));
    blockOn(std::move(leaving));
    EXPECT_TRUE(model->selectedBookmarkIDs().isEmpty());
    EXPECT_FALSE(model->statusMessage());
}

TEST_F(LibraryState, AnotherPageIsTheSamePlaceForSelectingAll)
{
    startWith(60);
    testing::HeldLibrary held(*model);
    auto selecting = model->selectAllLibraryResults();
    auto turning = model->nextPage();
    held.release();
    blockOn(std::move(selecting));
    blockOn(std::move(turning));
    EXPECT_EQ(model->selectedBookmarkIDs().size(), 60);
    EXPECT_EQ(model->page(), 1);
}

TEST_F(LibraryState, KeepsWhyTheListingFailedWhenSomethingElseFails)
{
    startWith(3);
    library.connect()->execute("UPDATE bookmarks SET media_json = '' WHERE id = 2");
    blockOn(model->refreshLibrary());
    const QString why = model->property("listingError").toString();
    EXPECT_EQ(why, model->lastError());
    library.connect()->execute("ALTER TABLE sync_runs RENAME TO hidden_runs");
    blockOn(model->refreshSyncRuns());
    EXPECT_NE(model->lastError(), why);
    EXPECT_EQ(model->property("listingError").toString(), why);
    library.connect()->execute("ALTER TABLE hidden_runs RENAME TO sync_runs;"
                               "UPDATE bookmarks SET media_json = '[]' WHERE id = 2");
    blockOn(model->refreshLibrary());
    EXPECT_EQ(model->property("listingError").toString(), QString());
}

TEST_F(LibraryState, AFailureDoesNotKeepTheNextReadingFromComing)
{
    startWith(3);
    library.connect()->execute("UPDATE bookmarks SET media_json = '' WHERE id = 2");
    testing::HeldLibrary held(*model);
    auto first = model->refreshLibrary();
    auto second = model->openMailbox(LibraryFilter::archive);
    held.release();
    blockOn(std::move(first));
    EXPECT_TRUE(model->lastError());
    blockOn(std::move(second));
    EXPECT_FALSE(model->hasListingFailed());
    EXPECT_EQ(model->libraryResultCount(), 0);
}

TEST_F(LibraryState, TheCommandsOfTheScreensReachTheSameState)
{
    store(1, 60);
    makeModel();
    blockOn(model->start());
    model->requestSort(QStringLiteral("oldest"));
    model->requestNextPage();
    model->requestSort(QStringLiteral("backwards"));
    model->requestMailbox(QStringLiteral("nowhere"));
    blockOn(model->shutDown());
    EXPECT_EQ(model->librarySort(), LibrarySort::oldest);
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::inbox);
    EXPECT_EQ(model->page(), 1);
    EXPECT_EQ(model->bookmarks().first().text, QStringLiteral("Post number 51"));
    EXPECT_FALSE(model->isLoading());
}

TEST_F(LibraryState, OfTwoOverlappingPlacesTheLastOneIsShown)
{
    store(1, 60);
    makeModel();
    blockOn(model->start());
    auto first = model->openMailbox(LibraryFilter::archive);
    auto second = model->openMailbox(LibraryFilter::all);
    blockOn(std::move(first));
    blockOn(std::move(second));
    EXPECT_EQ(model->libraryResultCount(), 60);
    EXPECT_EQ(model->bookmarks().size(), 50);
    EXPECT_FALSE(model->isLoading());
}

TEST_F(LibraryState, AFailedReadIsToldAndKeepsWhatTheListShowed)
{
    store(1, 3);
    makeModel();
    blockOn(model->start());
    library.connect()->execute("UPDATE bookmarks SET media_json = '' WHERE id = 2");
    blockOn(model->refreshLibrary());
    EXPECT_TRUE(model->lastError());
    EXPECT_EQ(model->bookmarks().size(), 3);
    EXPECT_EQ(model->counts().all, 3);
    EXPECT_FALSE(model->isLoading());

    library.connect()->execute("UPDATE bookmarks SET media_json = '[]' WHERE id = 2");
    blockOn(model->refreshLibrary());
    EXPECT_TRUE(model->lastError()) << "a later success does not clear an error";
    model->dismissError();
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(LibraryState, AFailureOfEitherReadKeepsBothOldResults)
{
    static_cast<void>(testing::failingStatements());
    startWith(3);
    bool hasFailed = true;
    int failures = 0;
    for (int skipped = 0; hasFailed; ++skipped) {
        library.open()->upsertFromX(testing::makePost(100 + skipped), library.clock.now());
        const qsizetype shown = model->bookmarks().size();
        const qint64 counted = model->counts().all;
        model->dismissError();
        testing::failingStatements().arm(skipped);
        blockOn(model->refreshLibrary());
        hasFailed = testing::failingStatements().fired();
        testing::failingStatements().disarm();
        if (!hasFailed)
            break;
        ++failures;
        EXPECT_TRUE(model->lastError());
        EXPECT_EQ(model->bookmarks().size(), shown);
        EXPECT_EQ(model->counts().all, counted);
        EXPECT_FALSE(model->isLoading());
    }
    EXPECT_GT(failures, 3) << "the search and the counting both ask the library";
    EXPECT_EQ(model->bookmarks().size(), model->counts().all);
}

} // namespace
} // namespace mirel
