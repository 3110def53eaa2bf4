#include "screens/WindowBench.h"

#include "screens/Display.h"

namespace mirel::testing {

class PostPane : public WindowBench
{
protected:
    [[nodiscard]] bool isKindKnown() const { return visible("postKind") != nullptr; }
    [[nodiscard]] bool isCurrentRowInView() const
    {
        const auto* const row = list().property("currentItem").value<QQuickItem*>();
        const double top = list().property("contentY").toDouble();
        return row && row->y() >= top && row->y() + row->height() <= top + list().height();
    }
    void select(int row)
    {
        list().forceActiveFocus();
        press(Qt::Key_Home);
        for (int step = 0; step < row; ++step)
            press(Qt::Key_Down);
    }
};

TEST_F(PostPane, AsksForASelection)
{
    fillWithNumberedPosts(3);
    openWindow();
    EXPECT_EQ(text("stateTitle", visible("nothingSelected")), QStringLiteral("Select a bookmark"));
    EXPECT_EQ(text("stateExplanation", visible("nothingSelected")),
              QStringLiteral("Preview it here. Double-click any row to open the full Reader."));
}

TEST_F(PostPane, ShowsThePostThatIsClicked)
{
    fill(inventedPosts());
    openWindow();
    click(rows()[2]);
    EXPECT_EQ(text("postAuthor"), QStringLiteral("Field Notes Weekly"));
    EXPECT_EQ(text("postUsername"), QStringLiteral("@fieldnotes"));
    EXPECT_EQ(text("postTitle"), QStringLiteral("What the tide tables of 1911 still get right"));
    EXPECT_TRUE(text("postText").endsWith(QStringLiteral("for the people who keep it honest.")));
    EXPECT_EQ(text("postDate"),
              Display().fullDate(model->bookmarks()[2].createdAt.toDateTime().toLocalTime()));
    EXPECT_EQ(allVisible("postMedia").size(), 1);
    EXPECT_EQ(visible("nothingSelected"), nullptr);
    EXPECT_TRUE(eventually([this] { return isKindKnown(); }));
}

TEST_F(PostPane, FollowsTheKeyboardThroughTheRows)
{
    fillWithNumberedPosts(5);
    openWindow();
    select(0);
    EXPECT_EQ(text("postText"), QStringLiteral("Post number 5"));
    press(Qt::Key_Down);
    EXPECT_EQ(text("postText"), QStringLiteral("Post number 4"));
    press(Qt::Key_End);
    EXPECT_EQ(text("postText"), QStringLiteral("Post number 1"));
    press(Qt::Key_Up);
    EXPECT_EQ(text("postText"), QStringLiteral("Post number 2"));
    EXPECT_EQ(currentRowText(), QStringLiteral("Post number 2"));
}

TEST_F(PostPane, HasNoPlaceInANarrowWindow)
{
    fillWithNumberedPosts(3);
    openWindow();
    EXPECT_NE(visible("postPane"), nullptr);
    window().resize(700, 600);
    EXPECT_TRUE(eventually([this] { return visible("postPane") == nullptr; }));
    select(1);
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return visible("leaveReader") != nullptr; }));
    EXPECT_EQ(text("postText"), QStringLiteral("Post number 2")) << "the reader has all of the window";
}

TEST_F(PostPane, OpensTheReaderWithReturnAndComesBackToTheSameRowWithEscape)
{
    fillWithNumberedPosts(50);
    openWindow();
    select(20);
    ASSERT_TRUE(eventually([this] { return isCurrentRowInView(); }));
    const double place = list().property("contentY").toDouble();
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return visible("leaveReader") != nullptr; }));
    EXPECT_EQ(text("leaveReader"), QStringLiteral("Back to Today"));
    EXPECT_EQ(text("postText"), QStringLiteral("Post number 30"));
    EXPECT_EQ(visible("bookmarkList"), nullptr);
    press(Qt::Key_Escape);
    ASSERT_TRUE(
        eventually([this] { return visible("bookmarkList") != nullptr && !model->isReadingLibrary(); }));
    EXPECT_TRUE(list().hasActiveFocus());
    EXPECT_EQ(currentRowText(), QStringLiteral("Post number 30"));
    EXPECT_EQ(list().property("contentY").toDouble(), place) << "the list has not moved meanwhile";
    EXPECT_FALSE(model->canGoBack());
}

TEST_F(PostPane, OpensTheReaderWithADoubleClickAndLeavesItWithTheButton)
{
    fillWithNumberedPosts(3);
    openWindow();
    click(visible("destination-library"));
    ASSERT_TRUE(eventually([this] { return !model->isReadingLibrary(); }));
    const QPointF centre(rows()[1]->width() / 2, rows()[1]->height() / 2);
    QTest::mouseDClick(&window(), Qt::LeftButton, Qt::NoModifier, rows()[1]->mapToScene(centre).toPoint());
    ASSERT_TRUE(eventually([this] { return visible("leaveReader") != nullptr; }));
    EXPECT_EQ(text("leaveReader"), QStringLiteral("Back to Library"));
    click(visible("leaveReader"));
    EXPECT_TRUE(eventually([this] { return visible("bookmarkList") != nullptr; }));
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("All bookmarks"));
}

TEST_F(PostPane, SearchingLeavesTheReader)
{
    fillWithNumberedPosts(3);
    openWindow();
    select(0);
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return visible("leaveReader") != nullptr; }));
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(visible("leaveReader"), nullptr);
    EXPECT_TRUE(visible("searchField")->hasActiveFocus());
    EXPECT_EQ(text("libraryTitle"), QStringLiteral("Search"));
}

TEST_F(PostPane, ScrollsALongPostWithTheKeyboard)
{
    SyncedBookmark post = makePost(1);
    post.author.profileImageURL.reset();
    post.contentTitle = QStringLiteral("A long article");
    post.contentText = QStringLiteral("One more paragraph of it.\n\n").repeated(200);
    fill({post});
    openWindow();
    select(0);
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return visible("leaveReader") != nullptr; }));
    QQuickItem* const title = visible("postTitle");
    const auto place = [title] { return title->mapToScene({0, 0}).y(); };
    EXPECT_FALSE(window().grabWindow().isNull());
    const double top = place();
    press(Qt::Key_PageDown);
    const double pageDown = place();
    EXPECT_LT(pageDown, top);
    press(Qt::Key_End);
    EXPECT_LT(place(), pageDown);
    press(Qt::Key_Home);
    EXPECT_EQ(place(), top);
    press(Qt::Key_Up);
    EXPECT_EQ(place(), top) << "there is nothing above the beginning";
}

TEST_F(PostPane, ClosesWhenItsPostIsDeleted)
{
    fillWithNumberedPosts(3);
    openWindow();
    select(1);
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return visible("leaveReader") != nullptr; }));
    library.open()->deleteBookmarkLocally(model->readerBookmark()->id);
    press(Qt::Key_F5);
    ASSERT_TRUE(eventually([this] { return visible("leaveReader") == nullptr; }));
    EXPECT_TRUE(eventually([this] { return rows().size() == 2; }));
    EXPECT_NE(visible("nothingSelected"), nullptr);
}

TEST_F(PostPane, KeepsTheSelectedRowOverARefreshThatBringsNewRows)
{
    fillWithNumberedPosts(5);
    openWindow();
    select(2);
    fillWithNumberedPosts(8);
    press(Qt::Key_F5);
    ASSERT_TRUE(eventually([this] { return list().property("count").toInt() == 8; }));
    EXPECT_EQ(currentRowText(), QStringLiteral("Post number 3"));
    EXPECT_EQ(text("postText"), QStringLiteral("Post number 3"));
}

TEST_F(PostPane, ShowsWhenItHasTheKeyboard)
{
    fillWithNumberedPosts(3);
    openWindow();
    select(0);
    press(Qt::Key_Tab);
    QQuickItem* pane = visible("postPane");
    for (int stop = 0; stop < 5 && !pane->hasActiveFocus(); ++stop)
        press(Qt::Key_Tab);
    ASSERT_TRUE(pane->hasActiveFocus());
    EXPECT_TRUE(pane->property("visualFocus").toBool());
}

TEST_F(PostPane, TheListCanBeMadeWider)
{
    fillWithNumberedPosts(3);
    openWindow();
    const double before = list().width();
    EXPECT_FALSE(window().grabWindow().isNull());
    const QPoint grip = list().mapToScene(QPointF(list().width(), 200)).toPoint();
    QTest::mousePress(&window(), Qt::LeftButton, Qt::NoModifier, grip);
    for (int step = 10; step <= 60; step += 10)
        QTest::mouseMove(&window(), grip + QPoint(step, 0));
    QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, grip + QPoint(60, 0));
    EXPECT_TRUE(eventually([&] { return list().width() > before + 40; }));
    EXPECT_GT(window().property("listWidth").toDouble(), before + 40);
}

} // namespace mirel::testing
