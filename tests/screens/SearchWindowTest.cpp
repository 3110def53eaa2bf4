#include "screens/WindowBench.h"

#include "model/HeldLibrary.h"

namespace mirel::testing {

class SearchWindow : public WindowBench
{
protected:
    [[nodiscard]] QQuickItem& field() const { return *visible("searchField"); }
    [[nodiscard]] bool isSettled() const { return !model->isReadingLibrary(); }
    void search(const char* query)
    {
        press(Qt::Key_F, Qt::ControlModifier);
        type(query);
        ASSERT_TRUE(eventually([this] { return isSettled(); }));
    }
};

TEST_F(SearchWindow, SearchesAsOneTypes)
{
    fillWithNumberedPosts(5);
    openWindow();
    EXPECT_EQ(field().property("placeholderText").toString(),
              QStringLiteral("Search words, a phrase, or syntax such as author:alice"));
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(field().hasActiveFocus());
    EXPECT_EQ(visible("clearSearch"), nullptr);
    type("num");
    EXPECT_EQ(model->searchQuery(), QStringLiteral("num"));
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("Search"));
    ASSERT_TRUE(eventually([this] { return isSettled(); }));
    type("ber");
    EXPECT_EQ(model->searchQuery(), QStringLiteral("number"));
    EXPECT_TRUE(field().hasActiveFocus()) << "results do not take the keyboard away";
    EXPECT_NE(visible("clearSearch"), nullptr);
}

TEST_F(SearchWindow, TheRowsFollowWhatIsTyped)
{
    fillWithNumberedPosts(30);
    openWindow();
    search("number");
    EXPECT_EQ(text("resultCount"), QStringLiteral("30 results"));
    type("&2");
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    type(" 12");
    ASSERT_TRUE(eventually([this] { return isSettled() && rows().size() == 1; }));
    EXPECT_EQ(text("text", rows()[0]), QStringLiteral("Post number 12"));
    EXPECT_EQ(text("resultCount"), QStringLiteral("1 results"));
    press(Qt::Key_Escape);
    EXPECT_TRUE(eventually([this] { return text("resultCount") == QStringLiteral("30 results"); }));
}

TEST_F(SearchWindow, AQueryWithoutAMatchSaysSoAndCanBeCleared)
{
    fillWithNumberedPosts(5);
    openWindow();
    search("nothing like it");
    ASSERT_TRUE(eventually([this] { return visible("clearRefinements") != nullptr; }));
    EXPECT_EQ(text("stateTitle"), QStringLiteral("No search results"));
    click(visible("clearRefinements"));
    ASSERT_TRUE(eventually([this] { return rows().size() == 5; }));
    EXPECT_EQ(field().property("text").toString(), QString());
}

TEST_F(SearchWindow, EscapeClearsTheQueryAndThenGoesToTheRows)
{
    fillWithNumberedPosts(5);
    openWindow();
    search("number");
    press(Qt::Key_Escape);
    EXPECT_EQ(field().property("text").toString(), QString());
    EXPECT_EQ(model->searchQuery(), QString());
    EXPECT_TRUE(field().hasActiveFocus());
    press(Qt::Key_Escape);
    EXPECT_TRUE(list().hasActiveFocus());
}

TEST_F(SearchWindow, TheClearButtonClearsTheQueryAndKeepsTheKeyboardInTheField)
{
    fillWithNumberedPosts(5);
    openWindow();
    search("number");
    click(visible("clearSearch"));
    EXPECT_EQ(model->searchQuery(), QString());
    EXPECT_TRUE(field().hasActiveFocus());
    EXPECT_EQ(visible("clearSearch"), nullptr);
}

TEST_F(SearchWindow, ReturnGoesOnToTheFirstResult)
{
    fillWithNumberedPosts(5);
    openWindow();
    search("number");
    press(Qt::Key_Return);
    EXPECT_TRUE(list().hasActiveFocus());
    EXPECT_EQ(currentRowText(), QStringLiteral("Post number 5"));
}

TEST_F(SearchWindow, FindsTheFieldAgainWithItsTextSelected)
{
    fillWithNumberedPosts(5);
    openWindow();
    search("number");
    press(Qt::Key_Down);
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(field().hasActiveFocus());
    type("x");
    EXPECT_EQ(model->searchQuery(), QStringLiteral("x")) << "typing replaces what was selected";
}

TEST_F(SearchWindow, GoesBackToWhereTheSearchBeganWithOneStep)
{
    fillWithNumberedPosts(5);
    openWindow();
    EXPECT_EQ(visible("goBack"), nullptr);
    search("number");
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("Today"));
    EXPECT_EQ(field().property("text").toString(), QString()) << "the field tells what is searched for";
    EXPECT_EQ(visible("goBack"), nullptr);
}

TEST_F(SearchWindow, ShowsTheQueryOfThePlaceItReturnsTo)
{
    fillWithNumberedPosts(5);
    openWindow();
    search("number");
    click(visible("mailbox-favorites"));
    EXPECT_EQ(field().property("text").toString(), QString());
    ASSERT_TRUE(eventually([this] { return visible("emptyState") != nullptr; }));
    click(visible("goBack"));
    EXPECT_EQ(field().property("text").toString(), QStringLiteral("number"));
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("Search"));
    EXPECT_TRUE(eventually([this] { return rows().size() == 5; }));
}

TEST_F(SearchWindow, SaysThatItCoversOneMailboxAndOffersAll)
{
    fillWithNumberedPosts(3);
    const auto writing = library.open();
    writing->updateLocalState(
        writing->listBookmarks(LibraryFilter::all, 1, 0, LibrarySort::newest).first().id, {}, false, true,
        false);
    openWindow();
    search("number");
    EXPECT_EQ(text("searchScopeText"), QStringLiteral("Searching in Inbox"));
    EXPECT_EQ(text("resultCount"), QStringLiteral("2 results"));
    click(visible("searchAll"));
    ASSERT_TRUE(eventually([this] { return text("resultCount") == QStringLiteral("3 results"); }));
    EXPECT_EQ(visible("searchScope"), nullptr);
    EXPECT_EQ(model->searchQuery(), QStringLiteral("number"));
}

TEST_F(SearchWindow, OffersToClearASearchWithoutResults)
{
    fillWithNumberedPosts(3);
    openWindow();
    blockOn(model->openLibrary(4711, {}, {}));
    ASSERT_NE(visible("emptyState"), nullptr);
    EXPECT_EQ(text("stateTitle"), QStringLiteral("No search results"));
    EXPECT_EQ(text("resultCount"), QStringLiteral("0 results"));
    EXPECT_EQ(visible("emptySync"), nullptr);
    click(visible("clearRefinements"));
    EXPECT_TRUE(eventually([this] { return rows().size() == 3; }));
}

TEST_F(SearchWindow, AnEmptyLibraryIsNoSearchWithoutResults)
{
    openWindow();
    search("number");
    EXPECT_EQ(text("stateTitle"), QStringLiteral("No bookmarks"));
    EXPECT_EQ(visible("clearRefinements"), nullptr);
}

TEST_F(SearchWindow, TellsThatItIsAtWorkOnASlowSearchAndKeepsTheRows)
{
    fillWithNumberedPosts(3);
    openWindow();
    HeldLibrary held(*model);
    press(Qt::Key_F, Qt::ControlModifier);
    type("n");
    EXPECT_TRUE(eventually([this] { return visible("searchIsBusy") != nullptr; }));
    EXPECT_EQ(rows().size(), 3);
    held.release();
    EXPECT_TRUE(eventually([this] { return visible("searchIsBusy") == nullptr && isSettled(); }));
}

TEST_F(SearchWindow, GoesToThePlacesOfTheSidebar)
{
    fillWithNumberedPosts(3);
    openWindow();
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("Today"));
    click(visible("destination-library"));
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("All bookmarks"));
    EXPECT_TRUE(visible("mailbox-all")->property("isShown").toBool());
    click(visible("destination-search"));
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("Search"));
    EXPECT_TRUE(field().hasActiveFocus());
    EXPECT_FALSE(visible("mailbox-all")->property("isShown").toBool());
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("Today"));
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("All bookmarks"));
    EXPECT_TRUE(eventually([this] { return isSettled() && rows().size() == 3; }));
}

TEST_F(SearchWindow, TurnsPagesWithTheKeyboard)
{
    fillWithNumberedPosts(120);
    openWindow();
    list().forceActiveFocus();
    press(Qt::Key_PageDown, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return currentRowText() == QStringLiteral("Post number 70"); }))
        << "the first row of the page is taken up by the keyboard";
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_TRUE(eventually([this] { return currentRowText() == QStringLiteral("Post number 120"); }));
}

} // namespace mirel::testing
