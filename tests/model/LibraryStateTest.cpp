#include "testing/Printing.h"

#include "model/ModelTestBench.h"

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

TEST_F(LibraryState, TheCommandsOfTheScreensReachTheSameState)
{
    store(1, 60);
    makeModel();
    blockOn(model->start());
    QSignalSpy idle(model.get(), &MirelAppModel::becameIdle);
    model->requestSort(QStringLiteral("oldest"));
    model->requestNextPage();
    model->requestSort(QStringLiteral("backwards"));
    model->requestMailbox(QStringLiteral("nowhere"));
    blockOn(model->shutDown());
    EXPECT_EQ(model->librarySort(), LibrarySort::oldest);
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::all);
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

} // namespace
} // namespace mirel
