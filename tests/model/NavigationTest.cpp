#include "testing/Printing.h"

#include "model/ModelTestBench.h"

namespace mirel {
namespace {

using enum SidebarDestination;

class Navigation : public testing::ModelTestBench
{
protected:
    // Goes back until there is nowhere to go, and returns how often.
    int goBackToTheBeginning()
    {
        int steps = 0;
        for (; model->canGoBack(); ++steps)
            blockOn(model->goBack());
        return steps;
    }
};

TEST(SidebarDestinations, HaveTheirNamesInTheirOrder)
{
    const char* const names[] = {"today",   "library", "search",  "ask",  "labels",
                                 "folders", "rules",   "authors", "media"};
    std::size_t place = 0;
    for (const auto& [destination, name] : rawValues(SidebarDestination{}))
        EXPECT_EQ(name, QLatin1StringView(names[place++]));
    EXPECT_EQ(place, std::size(names));
}

TEST_F(Navigation, ShowGoesToTheFirstPageAndClearsBothSelectionsAndTheReader)
{
    startWith(60);
    blockOn(model->openBookmark(idOf(60)));
    blockOn(model->selectAllLibraryResults());
    blockOn(model->nextPage());
    blockOn(model->show(search));
    EXPECT_EQ(model->selection(), search);
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->selectedBookmarkID(), std::nullopt);
    EXPECT_TRUE(model->selectedBookmarkIDs().isEmpty());
    EXPECT_EQ(model->readerBookmark(), std::nullopt);
    EXPECT_EQ(model->bookmarks().size(), 50);
}

TEST_F(Navigation, ShowWhereTheUserAlreadyIsStoresNoHistoryAndReloads)
{
    startWith(60);
    blockOn(model->show(SidebarDestination::library));
    blockOn(model->goBack());
    blockOn(model->show(SidebarDestination::library));
    model->selectBookmark(idOf(60));
    blockOn(model->selectAllLibraryResults());
    blockOn(model->nextPage());
    store(61, 61);
    blockOn(model->show(SidebarDestination::library));
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->selectedBookmarkID(), std::nullopt);
    EXPECT_TRUE(model->selectedBookmarkIDs().isEmpty());
    EXPECT_EQ(model->libraryResultCount(), 61);
    EXPECT_EQ(goBackToTheBeginning(), 1) << "the Today screen alone";
}

TEST_F(Navigation, TheLibraryMeansAllBookmarksWhenComingFromTheInbox)
{
    startWith(3);
    blockOn(model->show(SidebarDestination::library));
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::all);
}

TEST_F(Navigation, TheLibraryKeepsEveryOtherMailbox)
{
    startWith(3);
    for (const LibraryFilter filter :
         {LibraryFilter::favorites, LibraryFilter::read, LibraryFilter::archive, LibraryFilter::all}) {
        blockOn(model->openMailbox(filter));
        blockOn(model->show(search));
        blockOn(model->show(SidebarDestination::library));
        EXPECT_EQ(model->libraryFilter(), filter);
    }
}

TEST_F(Navigation, TodaySetsTheMailboxToTheInbox)
{
    startWith(3);
    blockOn(model->openMailbox(LibraryFilter::archive));
    blockOn(model->show(today));
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::inbox);
    EXPECT_EQ(model->bookmarks().size(), 3);
}

TEST_F(Navigation, OnlyTheScreensThatListTheLibraryForgetTheRefinements)
{
    startWith(3);
    const qint64 author = model->bookmarks().first().author.id;
    for (const SidebarDestination destination : {ask, labels, folders, rules, authors, media}) {
        blockOn(model->openLibrary(author, {}, {}));
        blockOn(model->show(destination));
        EXPECT_EQ(model->refinements().authorID, author) << qPrintable(rawValue(destination));
    }
    for (const SidebarDestination destination : {today, SidebarDestination::library, search}) {
        blockOn(model->openLibrary(author, {}, {}));
        blockOn(model->show(destination));
        EXPECT_EQ(model->refinements(), LibraryRefinements{}) << qPrintable(rawValue(destination));
    }
}

TEST_F(Navigation, AMailboxLeavesBothSelectionsAndForgetsTheRefinements)
{
    startWith(60);
    blockOn(model->runSearch(QStringLiteral("number")));
    blockOn(model->nextPage());
    model->selectBookmark(idOf(1));
    blockOn(model->selectAllLibraryResults());
    change(idOf(1), true, false, false);
    blockOn(model->openMailbox(LibraryFilter::read));
    EXPECT_EQ(model->selection(), SidebarDestination::library);
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::read);
    EXPECT_EQ(model->refinements(), LibraryRefinements{});
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->selectedBookmarkID(), idOf(1)) << "it is in the mailbox too";
    EXPECT_EQ(model->selectedBookmarkIDs().size(), 60);
    EXPECT_TRUE(model->canGoBack());
}

TEST_F(Navigation, AMailboxClosesTheReader)
{
    startWith(3);
    blockOn(model->openBookmark(idOf(2)));
    blockOn(model->openMailbox(LibraryFilter::all));
    EXPECT_FALSE(model->isReaderOpen());
}

TEST_F(Navigation, TheLibraryCanBeNarrowedToAnAuthorALabelOrAFolder)
{
    startWith(3);
    blockOn(model->runSearch(QStringLiteral("number")));
    blockOn(model->openBookmark(idOf(2)));
    blockOn(model->openLibrary(7, 8, 9));
    const LibraryRefinements expected{.authorID = 7, .folderID = 9, .tagID = 8};
    EXPECT_EQ(model->refinements(), expected);
    EXPECT_EQ(model->selection(), SidebarDestination::library);
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::all);
    EXPECT_EQ(model->page(), 0);
    EXPECT_FALSE(model->isReaderOpen());
    EXPECT_EQ(model->libraryResultCount(), 0) << "nobody has that id";
    EXPECT_TRUE(model->isRefined());
}

TEST_F(Navigation, ASearchKeepsTheOtherRefinementsAndTheMailbox)
{
    startWith(60);
    const qint64 author = model->bookmarks().first().author.id;
    blockOn(model->openLibrary(author, {}, {}));
    blockOn(model->nextPage());
    blockOn(model->openBookmark(idOf(1)));
    blockOn(model->runSearch(QStringLiteral("number")));
    EXPECT_EQ(model->selection(), search);
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::all);
    EXPECT_EQ(model->refinements().query, QStringLiteral("number"));
    EXPECT_EQ(model->refinements().authorID, author);
    EXPECT_EQ(model->page(), 0);
    EXPECT_FALSE(model->isReaderOpen());
}

TEST_F(Navigation, ResettingTheRefinementsIsNoPlaceToReturnTo)
{
    startWith(60);
    blockOn(model->show(SidebarDestination::library));
    blockOn(model->nextPage());
    blockOn(model->resetRefinements());
    EXPECT_EQ(model->page(), 0);
    EXPECT_EQ(model->refinements(), LibraryRefinements{});
    EXPECT_EQ(goBackToTheBeginning(), 1) << "the Today screen alone";
}

TEST_F(Navigation, TypingASearchIsOnePlace)
{
    startWith(3);
    const QString typed = QStringLiteral("number");
    for (qsizetype length = 1; length <= typed.size(); ++length)
        blockOn(model->setSearchQuery(typed.left(length)));
    EXPECT_EQ(model->selection(), search);
    EXPECT_EQ(model->refinements().query, typed);
    blockOn(model->goBack());
    EXPECT_EQ(model->selection(), today);
    EXPECT_EQ(model->refinements().query, QString());
    EXPECT_FALSE(model->canGoBack());
}

TEST_F(Navigation, TypingBeginsAtTheFirstPageAndAnUnchangedQueryReadsNothing)
{
    startWith(120);
    blockOn(model->setSearchQuery(QStringLiteral("n")));
    blockOn(model->nextPage());
    blockOn(model->setSearchQuery(QStringLiteral("n")));
    EXPECT_EQ(model->page(), 1);
    blockOn(model->setSearchQuery(QStringLiteral("nu")));
    EXPECT_EQ(model->page(), 0);
}

TEST_F(Navigation, TypingWhileAPostIsOpenLeavesThePost)
{
    startWith(3);
    blockOn(model->setSearchQuery(QStringLiteral("n")));
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    blockOn(model->setSearchQuery(QStringLiteral("nu")));
    EXPECT_FALSE(model->isReaderOpen());
    blockOn(model->goBack());
    ASSERT_TRUE(model->isReaderOpen());
    EXPECT_EQ(model->readerBookmark()->id, id);
    EXPECT_EQ(model->refinements().query, QStringLiteral("n"));
}

TEST_F(Navigation, ASearchCanBeTakenToAnotherMailbox)
{
    startWith(3);
    change(idOf(3), false, true, false);
    blockOn(model->runSearch(QStringLiteral("number")));
    EXPECT_EQ(model->libraryResultCount(), 2) << "the inbox, where the program begins";
    blockOn(model->searchMailbox(LibraryFilter::all));
    EXPECT_EQ(model->libraryResultCount(), 3);
    EXPECT_EQ(model->refinements().query, QStringLiteral("number"));
    EXPECT_EQ(model->selection(), search);
}

TEST_F(Navigation, GoesBackThroughEverythingThatWasRestored)
{
    startWith(60);
    blockOn(model->openMailbox(LibraryFilter::all));
    blockOn(model->nextPage());
    const qint64 id = idOf(3);
    model->selectBookmark(id);
    blockOn(model->runSearch(QStringLiteral("number")));
    blockOn(model->selectAllLibraryResults());
    blockOn(model->goBack());
    EXPECT_EQ(model->selection(), SidebarDestination::library);
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::all);
    EXPECT_EQ(model->refinements(), LibraryRefinements{});
    EXPECT_EQ(model->page(), 1);
    EXPECT_EQ(model->selectedBookmarkID(), id);
    EXPECT_TRUE(model->selectedBookmarkIDs().isEmpty());
    EXPECT_EQ(model->bookmarks().size(), 10);
    blockOn(model->goBack());
    EXPECT_EQ(model->selection(), today);
    EXPECT_EQ(model->page(), 0);
    EXPECT_FALSE(model->canGoBack()) << "going back adds no place";
}

TEST_F(Navigation, GoingBackOpensThePostThatWasInTheReader)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    blockOn(model->openMailbox(LibraryFilter::archive));
    change(id, true, false, false);
    blockOn(model->goBack());
    ASSERT_TRUE(model->isReaderOpen());
    EXPECT_EQ(model->readerBookmark()->id, id);
    EXPECT_TRUE(model->readerBookmark()->isRead) << "as it is now";
}

TEST_F(Navigation, GoingBackToAPostThatIsGoneShowsItsListAndSaysNothing)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    blockOn(model->openMailbox(LibraryFilter::archive));
    library.open()->deleteBookmarkLocally(id);
    blockOn(model->goBack());
    EXPECT_FALSE(model->isReaderOpen());
    EXPECT_EQ(model->lastError(), std::nullopt);
    EXPECT_EQ(model->bookmarks().size(), 2);
}

TEST_F(Navigation, GoingBackToAPostThatCannotBeReadShowsItsListAndSaysNothing)
{
    startWith(60);
    const qint64 away = idOf(60);
    blockOn(model->nextPage());
    blockOn(model->openBookmark(away));
    blockOn(model->openMailbox(LibraryFilter::archive));
    // In another mailbox: in its own, no list could be read.
    library.connect()->execute("UPDATE bookmarks SET media_json = '', is_archived = 1 WHERE id = " +
                               QByteArray::number(away));
    blockOn(model->goBack());
    EXPECT_FALSE(model->isReaderOpen());
    EXPECT_EQ(model->lastError(), std::nullopt);
    EXPECT_EQ(model->libraryFilter(), LibraryFilter::inbox);
    EXPECT_EQ(model->libraryResultCount(), 59);
}

TEST_F(Navigation, GoingBackToTheMediaReadsThemAnew)
{
    makeModel();
    blockOn(model->start());
    blockOn(model->show(SidebarDestination::media));
    blockOn(model->show(SidebarDestination::library));
    ASSERT_TRUE(model->mediaBookmarks().isEmpty());
    SyncedBookmark post = testing::makePost(1);
    post.media.append({.id = QStringLiteral("3_1"),
                       .kind = MediaKind::photo,
                       .url = QUrl(QStringLiteral("https://pictures.example/1.jpg"))});
    library.open()->upsertFromX(post, library.clock.now());
    blockOn(model->goBack());
    EXPECT_EQ(model->selection(), SidebarDestination::media);
    EXPECT_EQ(model->mediaBookmarks().size(), 1);
}

TEST_F(Navigation, GoingBackToWhatOrganizesTheLibraryReadsItAnew)
{
    makeModel();
    blockOn(model->start());
    using enum SidebarDestination;
    for (const SidebarDestination destination : {labels, folders, rules, authors}) {
        blockOn(model->show(destination));
        blockOn(model->show(library));
        const qsizetype before = model->tagSummaries().size();
        this->library.open()->createTag(rawValue(destination), QStringLiteral("#3E6BF5"),
                                        Tag::Source::manual);
        blockOn(model->goBack());
        EXPECT_EQ(model->selection(), destination);
        EXPECT_EQ(model->tagSummaries().size(), before + 1) << rawValue(destination).toStdString();
    }
}

TEST_F(Navigation, WithNothingToGoBackToTheReaderCloses)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    blockOn(model->goBack());
    blockOn(model->openBookmark(id));
    ASSERT_EQ(goBackToTheBeginning(), 1);
    EXPECT_FALSE(model->isReaderOpen());
    blockOn(model->goBack());
    EXPECT_FALSE(model->isReaderOpen());
    EXPECT_EQ(model->bookmarks().size(), 3);
}

TEST_F(Navigation, GoingBackOnAnEmptyHistoryClosesAnOpenReader)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    // The place before the reader is pushed out, so that the first one left has the reader open.
    for (int place = 0; place < 50; ++place)
        blockOn(model->runSearch(QString::number(place)));
    ASSERT_EQ(goBackToTheBeginning(), 50);
    ASSERT_TRUE(model->isReaderOpen());
    EXPECT_EQ(model->readerBookmark()->id, id);
    blockOn(model->goBack());
    EXPECT_FALSE(model->isReaderOpen());
}

TEST_F(Navigation, APlaceIsNeverStoredTwiceInARow)
{
    startWith(3);
    blockOn(model->show(SidebarDestination::library));
    blockOn(model->goBack());
    blockOn(model->openMailbox(LibraryFilter::all));
    blockOn(model->openMailbox(LibraryFilter::all));
    blockOn(model->openMailbox(LibraryFilter::all));
    EXPECT_EQ(goBackToTheBeginning(), 2) << "today, and the mailbox once";
}

TEST_F(Navigation, TheFiftyFirstPlacePushesOutTheOldest)
{
    startWith(1);
    for (int place = 0; place < 51; ++place)
        blockOn(model->runSearch(QString::number(place)));
    EXPECT_EQ(goBackToTheBeginning(), 50);
    EXPECT_EQ(model->refinements().query, QStringLiteral("0")) << "the Today screen was pushed out";
    EXPECT_EQ(model->selection(), search);
}

TEST_F(Navigation, FiftyPlacesAreAllRemembered)
{
    startWith(1);
    for (int place = 0; place < 50; ++place)
        blockOn(model->runSearch(QString::number(place)));
    EXPECT_EQ(goBackToTheBeginning(), 50);
    EXPECT_EQ(model->selection(), today);
}

TEST_F(Navigation, AUserWhoGoesOnWhileTheWayBackIsReadIsNotTakenToTheOldPost)
{
    startWith(3);
    blockOn(model->openBookmark(idOf(2)));
    blockOn(model->openMailbox(LibraryFilter::archive));
    testing::HeldLibrary held(*model);
    auto back = model->goBack();
    auto onward = model->show(search);
    held.release();
    blockOn(std::move(back));
    blockOn(std::move(onward));
    EXPECT_FALSE(model->isReaderOpen());
    EXPECT_EQ(model->selection(), search);
}

TEST_F(Navigation, AUserWhoTypesOnWhileTheWayBackIsReadKeepsTheResults)
{
    startWith(3);
    blockOn(model->runSearch(QStringLiteral("post")));
    blockOn(model->openBookmark(idOf(2)));
    blockOn(model->show(SidebarDestination::library));
    testing::HeldLibrary held(*model);
    auto back = model->goBack();
    auto typing = model->setSearchQuery(QStringLiteral("post n"));
    held.release();
    blockOn(std::move(back));
    blockOn(std::move(typing));
    EXPECT_FALSE(model->isReaderOpen());
    EXPECT_EQ(model->searchQuery(), QStringLiteral("post n"));
}

TEST_F(Navigation, KnowsWhatLiesBehind)
{
    startWith(3);
    EXPECT_EQ(model->property("placeBehind").toString(), QString());
    blockOn(model->show(SidebarDestination::library));
    EXPECT_EQ(model->property("placeBehind").toString(), QStringLiteral("today"));
    blockOn(model->openBookmark(idOf(2)));
    EXPECT_EQ(model->property("placeBehind").toString(), QStringLiteral("library"));
}

TEST(NavigationWithoutLibrary, ChangesNothingThatNeedsOne)
{
    MirelAppModel model{MirelServices{}, QStringLiteral("The file is not a database.")};
    blockOn(model.openBookmark(5));
    EXPECT_EQ(model.selectedBookmarkID(), std::nullopt);
    EXPECT_FALSE(model.canGoBack());
    blockOn(model.show(SidebarDestination::media));
    blockOn(model.runSearch(QStringLiteral("a")));
    blockOn(model.goBack());
    blockOn(model.selectAllLibraryResults());
    blockOn(model.refreshMedia());
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(model.statusMessage(), std::nullopt);
    EXPECT_EQ(model.lastError(), QStringLiteral("The file is not a database."));
    blockOn(model.shutDown());
}

} // namespace
} // namespace mirel
