#include "screens/WindowBench.h"

#include <QClipboard>
#include <QGuiApplication>

namespace mirel::testing {

class OpenPostWindow : public WindowBench
{
protected:
    void openBox()
    {
        fillWithNumberedPosts(3);
        openWindow();
        press(Qt::Key_O, Qt::ControlModifier);
        ASSERT_TRUE(eventually([this] { return visible("postReferenceInput") != nullptr; }));
        ASSERT_TRUE(eventually([this] { return visible("postReferenceInput")->hasActiveFocus(); }));
    }

    bool isBoxOpen() const { return visible("postReferenceInput") != nullptr; }
};

TEST_F(OpenPostWindow, SaysWhatItDoes)
{
    openBox();
    EXPECT_EQ(visible("postReference")->property("prompt"), QStringLiteral("X URL or tweet ID"));
    EXPECT_EQ(text("openPostHint"), QStringLiteral("Mirel will look up the post in the local library."));
    EXPECT_EQ(text("confirmOpenPost"), QStringLiteral("Open X bookmark"));
    EXPECT_EQ(text("cancelOpenPost"), QStringLiteral("Cancel"));
    EXPECT_FALSE(visible("confirmOpenPost")->isEnabled()) << "there is nothing to look up";
}

TEST_F(OpenPostWindow, OpensThePostOfAnID)
{
    openBox();
    type("10002");
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return model->isReaderOpen(); }));
    EXPECT_EQ(model->readerBookmark()->text, QStringLiteral("Post number 2"));
    EXPECT_TRUE(eventually([this] { return !isBoxOpen(); }));
}

TEST_F(OpenPostWindow, OpensThePostOfAPastedAddress)
{
    openBox();
    QGuiApplication::clipboard()->setText(QStringLiteral("https://x.com/ada/status/10003/photo/1\n"));
    press(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("confirmOpenPost")->isEnabled(); }));
    click(visible("confirmOpenPost"));
    ASSERT_TRUE(eventually([this] { return model->isReaderOpen(); }));
    EXPECT_EQ(model->readerBookmark()->text, QStringLiteral("Post number 3"));
    EXPECT_TRUE(eventually([this] { return !isBoxOpen(); }));
}

TEST_F(OpenPostWindow, KeepsWhatCannotBeOpenedAndTellsWhy)
{
    openBox();
    type("77");
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return visible("errorLine") != nullptr; }));
    EXPECT_EQ(model->lastError(), QStringLiteral("That X post is not in the local library."));
    EXPECT_TRUE(isBoxOpen());
    EXPECT_EQ(text("postReferenceInput"), QStringLiteral("77"));
    type("x");
    press(Qt::Key_Return);
    EXPECT_TRUE(eventually(
        [this] { return model->lastError() == QStringLiteral("Enter a valid X post URL or tweet ID."); }));
    EXPECT_FALSE(model->isReaderOpen());
    press(Qt::Key_Escape);
    EXPECT_TRUE(eventually([this] { return !isBoxOpen(); }));
    click(visible("openPost"));
    ASSERT_TRUE(eventually([this] { return isBoxOpen(); }));
    EXPECT_EQ(text("postReferenceInput"), QStringLiteral("77x"));
}

TEST_F(OpenPostWindow, KeepsWhatCannotBeOpenedWhateverTheReaderDoes)
{
    fillWithNumberedPosts(3);
    openWindow();
    blockOn(model->openBookmark(model->bookmarks().first().id));
    press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return isBoxOpen(); }));
    type("77");
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return model->lastError().has_value(); }));
    blockOn(model->refreshLibrary());
    blockOn(model->refreshBookmarkPresentation(model->bookmarks().first().id));
    EXPECT_TRUE(isBoxOpen());
    EXPECT_EQ(text("postReferenceInput"), QStringLiteral("77"));
    EXPECT_EQ(allVisible("errorLine").size(), 2) << "in the window, and over it in the box";
}

TEST_F(OpenPostWindow, GivesWayToThePostThatTheReaderShowsAlready)
{
    fillWithNumberedPosts(3);
    openWindow();
    const auto shown = model->bookmarks().first();
    blockOn(model->openBookmark(shown.id));
    press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return isBoxOpen(); }));
    type(shown.tweetID.toUtf8().constData());
    press(Qt::Key_Return);
    EXPECT_TRUE(eventually([this] { return !isBoxOpen(); }));
    EXPECT_EQ(model->readerBookmark()->id, shown.id);
}

TEST_F(OpenPostWindow, LeavesTheReaderOpenWhenItIsCanceled)
{
    fillWithNumberedPosts(3);
    openWindow();
    blockOn(model->openBookmark(model->bookmarks().first().id));
    press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return isBoxOpen(); }));
    press(Qt::Key_Escape);
    EXPECT_TRUE(eventually([this] { return !isBoxOpen(); }));
    EXPECT_TRUE(model->isReaderOpen());
}

} // namespace mirel::testing
