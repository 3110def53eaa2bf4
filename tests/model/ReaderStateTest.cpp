#include "testing/Printing.h"

#include "model/ModelTestBench.h"

#include <QSignalSpy>

namespace mirel {
namespace {

using testing::HeldLibrary;

class ReaderState : public testing::ModelTestBench
{
protected:
    [[nodiscard]] QVariantMap shownPost() const { return model->property("shownPost").toMap(); }
};

TEST_F(ReaderState, OpensAPostOfTheListing)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    ASSERT_TRUE(model->readerBookmark());
    EXPECT_EQ(model->readerBookmark()->id, id);
    EXPECT_EQ(model->selectedBookmarkID(), id);
    EXPECT_EQ(model->selectedBookmark(), model->readerBookmark());
    EXPECT_TRUE(model->canGoBack());
}

TEST_F(ReaderState, OpensAPostThatIsOnNoList)
{
    startWith(60);
    const qint64 id = idOf(60);
    blockOn(model->nextPage());
    blockOn(model->openBookmark(id));
    ASSERT_TRUE(model->readerBookmark());
    EXPECT_EQ(model->readerBookmark()->text, QStringLiteral("Post number 60"));
}

TEST_F(ReaderState, APostThatDoesNotExistLeavesTheReaderAsItWasAndIsNoError)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    blockOn(model->openBookmark(4711));
    EXPECT_EQ(model->readerBookmark()->id, id);
    EXPECT_EQ(model->selectedBookmarkID(), 4711);
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(ReaderState, APostThatCannotBeReadIsAnError)
{
    startWith(60);
    const qint64 id = idOf(60);
    blockOn(model->nextPage());
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    blockOn(model->openBookmark(id));
    EXPECT_TRUE(model->lastError());
    EXPECT_FALSE(model->isReaderOpen());
}

TEST_F(ReaderState, TheFailureOfAPostThatTheUserHasLeftIsNotTold)
{
    startWith(60);
    const qint64 away = idOf(60);
    blockOn(model->nextPage());
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    HeldLibrary held(*model);
    auto opening = model->openBookmark(away);
    model->selectBookmark(idOf(1));
    held.release();
    blockOn(std::move(opening));
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(ReaderState, OfTwoPostsThatAreOpenedTheFirstResultIsDropped)
{
    startWith(60);
    const qint64 away = idOf(60);
    blockOn(model->nextPage());
    const qint64 here = idOf(1);
    HeldLibrary held(*model);
    auto first = model->openBookmark(away);
    auto second = model->openBookmark(here);
    EXPECT_EQ(model->readerBookmark()->id, here);
    held.release();
    blockOn(std::move(first));
    blockOn(std::move(second));
    EXPECT_EQ(model->readerBookmark()->id, here);
    EXPECT_EQ(model->selectedBookmarkID(), here);
}

TEST_F(ReaderState, NeverShowsTheHighlightsOfThePostBefore)
{
    startWith(3);
    const qint64 first = idOf(1);
    const qint64 second = idOf(2);
    library.open()->createHighlight(first, QStringLiteral("Post"), {}, 0, 4, QStringLiteral("#fde68a"),
                                    Instant());
    blockOn(model->openBookmark(first));
    ASSERT_EQ(model->highlights().size(), 1);
    HeldLibrary held(*model);
    auto opening = model->openBookmark(second);
    EXPECT_TRUE(model->highlights().isEmpty());
    held.release();
    blockOn(std::move(opening));
    EXPECT_TRUE(model->highlights().isEmpty());
}

TEST_F(ReaderState, TheHighlightsOfAPostThatTheUserHasLeftAreDropped)
{
    startWith(3);
    const qint64 first = idOf(1);
    const qint64 second = idOf(2);
    library.open()->createHighlight(first, QStringLiteral("Post"), {}, 0, 4, QStringLiteral("#fde68a"),
                                    Instant());
    HeldLibrary held(*model);
    auto left = model->openBookmark(first);
    auto opening = model->openBookmark(second);
    held.release();
    blockOn(std::move(left));
    blockOn(std::move(opening));
    EXPECT_EQ(model->readerBookmark()->id, second);
    EXPECT_TRUE(model->highlights().isEmpty());
}

TEST_F(ReaderState, APostThatIsOpenKeepsItsHighlightsWhenItIsOpenedAgain)
{
    startWith(3);
    const qint64 id = idOf(1);
    library.open()->createHighlight(id, QStringLiteral("Post"), {}, 0, 4, QStringLiteral("#fde68a"),
                                    Instant());
    blockOn(model->openBookmark(id));
    HeldLibrary held(*model);
    auto again = model->openBookmark(id);
    EXPECT_EQ(model->highlights().size(), 1);
    held.release();
    blockOn(std::move(again));
    EXPECT_EQ(model->highlights().size(), 1);
}

TEST_F(ReaderState, APostThatIsOpenIsNoNewPlace)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    blockOn(model->openBookmark(id));
    blockOn(model->goBack());
    EXPECT_FALSE(model->canGoBack());
    EXPECT_FALSE(model->isReaderOpen());
}

TEST_F(ReaderState, GoesBackFromPostToPost)
{
    startWith(3);
    const qint64 first = idOf(3);
    const qint64 second = idOf(2);
    blockOn(model->openBookmark(first));
    blockOn(model->openBookmark(second));
    blockOn(model->goBack());
    EXPECT_EQ(model->readerBookmark()->id, first);
    blockOn(model->goBack());
    EXPECT_FALSE(model->isReaderOpen());
}

TEST_F(ReaderState, ARefreshBringsTheOpenPostUpToDate)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    change(id, true, true, true);
    blockOn(model->refreshLibrary());
    ASSERT_TRUE(model->isReaderOpen()) << "it has left the inbox, and stays open";
    EXPECT_TRUE(model->readerBookmark()->isFavorite);
    EXPECT_EQ(model->selectedBookmarkID(), id);
}

TEST_F(ReaderState, ARefreshOfAnUnchangedPostTellsNothing)
{
    startWith(3);
    blockOn(model->openBookmark(idOf(2)));
    ASSERT_TRUE(model->readerBookmark());
    blockOn(model->refreshLibrary());
    QSignalSpy shown(model.get(), &MirelAppModel::shownPostChanged);
    blockOn(model->refreshLibrary());
    EXPECT_EQ(shown.size(), 0);
}

TEST_F(ReaderState, APostThatIsDeletedElsewhereClosesTheReaderAndClearsTheSelection)
{
    startWith(3);
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    library.open()->deleteBookmarkLocally(id);
    blockOn(model->refreshLibrary());
    EXPECT_FALSE(model->isReaderOpen());
    EXPECT_EQ(model->selectedBookmarkID(), std::nullopt);
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(ReaderState, AnOpenPostThatCannotBeReadAgainStaysAndIsAnError)
{
    startWith(60);
    const qint64 id = idOf(60);
    blockOn(model->openBookmark(id));
    blockOn(model->nextPage());
    library.connect()->execute("UPDATE bookmarks SET media_json = '' WHERE text = 'Post number 60'");
    blockOn(model->refreshLibrary());
    EXPECT_TRUE(model->lastError());
    ASSERT_TRUE(model->isReaderOpen());
    EXPECT_EQ(model->readerBookmark()->id, id);
    EXPECT_FALSE(model->isLoading());
}

TEST_F(ReaderState, ShowsTheSelectedPostAndOverItTheOneInTheReader)
{
    startWith(60);
    EXPECT_TRUE(model->property("shownPost").isNull() || shownPost().isEmpty());
    model->selectBookmark(idOf(59));
    EXPECT_EQ(shownPost()[QStringLiteral("text")], QStringLiteral("Post number 59"));
    blockOn(model->openBookmark(idOf(60)));
    model->selectBookmark(idOf(58));
    EXPECT_EQ(shownPost()[QStringLiteral("text")], QStringLiteral("Post number 60"));
    blockOn(model->show(SidebarDestination::library));
    EXPECT_TRUE(shownPost().isEmpty());
}

TEST_F(ReaderState, PresentsOnlyTheLastOfThePostsThatArePassedOver)
{
    startWith(40);
    HeldLibrary held(*model);
    QSignalSpy shown(model.get(), &MirelAppModel::shownPostChanged);
    for (int number = 40; number >= 1; --number)
        model->selectBookmark(idOf(number));
    EXPECT_EQ(shownPost()[QStringLiteral("kind")], QString()) << "not known yet";
    EXPECT_EQ(shownPost()[QStringLiteral("text")], QStringLiteral("Post number 1")) << "but its text is";
    held.release();
    blockOn(model->shutDown());
    EXPECT_EQ(shown.size(), 41) << "forty posts, and what the last one is called";
    EXPECT_NE(shownPost()[QStringLiteral("kind")], QString());
}

} // namespace
} // namespace mirel
