#include "screens/WindowBench.h"

#include <QDesktopServices>

namespace mirel::testing {

// Stands for the user's browser.
class WebBrowser : public QObject
{
    Q_OBJECT

public:
    WebBrowser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
    ~WebBrowser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& address) { opened.append(address); }
};

class LibraryWindow : public WindowBench
{
protected:
    static QString unavailable() { return QStringLiteral("The file is not a database."); }
};

TEST_F(LibraryWindow, ShowsTheBookmarksNewestFirst)
{
    fillWithNumberedPosts(30);
    openWindow();
    EXPECT_EQ(window().title(), QStringLiteral("Mirel"));
    EXPECT_EQ(window().size(), QSize(1240, 780));
    const QList<QQuickItem*> shown = rows();
    ASSERT_GE(shown.size(), 3);
    EXPECT_EQ(text("text", shown[0]), QStringLiteral("Post number 30"));
    EXPECT_EQ(text("text", shown[1]), QStringLiteral("Post number 29"));
    EXPECT_EQ(text("authorName", shown[0]), QStringLiteral("Ada Lovelace"));
    EXPECT_EQ(text("authorUsername", shown[0]), QStringLiteral("@ada"));
    EXPECT_EQ(text("resultCount"), QStringLiteral("30 results"));
    EXPECT_EQ(visible("pagingBar"), nullptr);
}

TEST_F(LibraryWindow, ShowsEveryKindOfPost)
{
    fill(inventedPosts());
    openWindow();
    window().resize(1240, 2400);
    ASSERT_TRUE(eventually([this] { return rows().size() == 10; }));
    const QList<QQuickItem*> shown = rows();
    const auto alignmentOf = [this](QQuickItem* row) {
        return visible("text", row)->property("effectiveHorizontalAlignment").toInt();
    };
    EXPECT_EQ(alignmentOf(shown[0]), static_cast<int>(Qt::AlignLeft));
    EXPECT_EQ(alignmentOf(shown[1]), static_cast<int>(Qt::AlignRight)) << "Arabic";
    EXPECT_EQ(alignmentOf(shown[6]), static_cast<int>(Qt::AlignRight)) << "Hebrew";
    EXPECT_EQ(text("title", shown[2]), QStringLiteral("What the tide tables of 1911 still get right"));
    EXPECT_TRUE(text("text", shown[2]).startsWith(QStringLiteral("Before computers")));
    EXPECT_NE(visible("thumbnail", shown[3]), nullptr);
    EXPECT_TRUE(visible("thumbnail", shown[4])->property("plays").toBool());
    EXPECT_EQ(visible("thumbnail", shown[5]), nullptr);
    EXPECT_NE(visible("unreadDot", shown[0]), nullptr);
}

TEST_F(LibraryWindow, TurnsPages)
{
    fillWithNumberedPosts(120);
    openWindow();
    EXPECT_EQ(text("pageNumber"), QStringLiteral("Page 1"));
    EXPECT_FALSE(visible("previousPage")->isEnabled());
    click(visible("nextPage"));
    ASSERT_TRUE(
        eventually([this] { return text("text", rows().value(0)) == QStringLiteral("Post number 70"); }));
    EXPECT_EQ(text("pageNumber"), QStringLiteral("Page 2"));
    click(visible("nextPage"));
    ASSERT_TRUE(eventually([this] { return model->bookmarks().size() == 20; }));
    EXPECT_FALSE(visible("nextPage")->isEnabled());
    click(visible("previousPage"));
    EXPECT_TRUE(eventually([this] { return model->page() == 1 && model->bookmarks().size() == 50; }));
}

TEST_F(LibraryWindow, ChangesTheOrderAndTheMailbox)
{
    fillWithNumberedPosts(3);
    openWindow();
    EXPECT_EQ(text("sortPicker"), QStringLiteral("Newest"));
    click(visible("sortPicker"));
    ASSERT_TRUE(eventually([this] { return visible("sort-oldest") != nullptr; }));
    click(visible("sort-oldest"));
    ASSERT_TRUE(
        eventually([this] { return text("text", rows().value(0)) == QStringLiteral("Post number 1"); }));
    EXPECT_EQ(text("sortPicker"), QStringLiteral("Oldest"));
    click(visible("mailbox-favorites"));
    ASSERT_TRUE(eventually([this] { return visible("emptyState") != nullptr; }));
    EXPECT_EQ(text("stateTitle"), QStringLiteral("No bookmarks"));
    EXPECT_EQ(text("stateExplanation"), QStringLiteral("Sync X or adjust the current filters."));
    EXPECT_EQ(text("resultCount"), QStringLiteral("0 results"));
    click(visible("showAll"));
    EXPECT_TRUE(eventually([this] { return rows().size() == 3; }));
}

TEST_F(LibraryWindow, TellsHowToConnectWhenItIsEmptyAndNotConnected)
{
    openWindow();
    ASSERT_NE(visible("emptyState"), nullptr);
    EXPECT_EQ(text("stateTitle"), QStringLiteral("No bookmarks"));
    EXPECT_EQ(text("stateExplanation"), QStringLiteral("Add your X connection in Settings, then sync."));
    click(visible("emptySettings"));
    EXPECT_TRUE(eventually([this] { return visible("clientIDInput") != nullptr; }));
}

TEST_F(LibraryWindow, OffersASyncWhenItIsEmptyAndConnected)
{
    makeModel({}, true);
    openWindow();
    EXPECT_EQ(text("stateExplanation"), QStringLiteral("Sync X or adjust the current filters."));
    EXPECT_EQ(visible("emptySettings"), nullptr);
    EXPECT_TRUE(visible("emptySync")->isEnabled());
}

TEST_F(LibraryWindow, ShowsSkeletonsUntilTheFirstListing)
{
    fillWithNumberedPosts(5);
    makeModel();
    showWindow();
    EXPECT_NE(visible("skeletonList"), nullptr);
    EXPECT_EQ(visible("emptyState"), nullptr);
    blockOn(model->start());
    EXPECT_EQ(visible("skeletonList"), nullptr);
    EXPECT_TRUE(eventually([this] { return rows().size() == 5; }));
}

TEST_F(LibraryWindow, SaysWhyTheLibraryCannotBeOpenedAndEnablesNothingElse)
{
    model = std::make_unique<MirelAppModel>(MirelServices{}, unavailable());
    openWindow();
    ASSERT_NE(visible("unavailableState"), nullptr);
    EXPECT_TRUE(text("stateExplanation").startsWith(unavailable()));
    EXPECT_EQ(visible("errorLine"), nullptr) << "it stands in the middle already";
    for (const char* name : {"quickSync", "syncMenuButton", "sortPicker", "mailbox-all", "mailbox-inbox"})
        EXPECT_FALSE(visible(name)->isEnabled()) << name;
}

TEST_F(LibraryWindow, OffersToReadAgainWhenTheLibraryCannotBeRead)
{
    openWindow();
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    press(Qt::Key_F5);
    ASSERT_TRUE(eventually([this] { return visible("failedState") != nullptr; }));
    EXPECT_TRUE(text("stateExplanation").startsWith(*model->lastError()));
    library.connect()->execute("ALTER TABLE lost RENAME TO bookmarks");
    click(visible("retry"));
    EXPECT_TRUE(eventually([this] { return visible("emptyState") != nullptr; }));
}

TEST_F(LibraryWindow, TellsOfWhatElseGoesWrongWhileTheLibraryCannotBeRead)
{
    openWindow();
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    press(Qt::Key_F5);
    ASSERT_TRUE(eventually([this] { return visible("failedState") != nullptr; }));
    EXPECT_EQ(visible("errorLine"), nullptr) << "it stands in the middle already";
    const QString failure = text("stateExplanation");
    blockOn(model->openTweetURL(QStringLiteral("no post")));
    ASSERT_TRUE(eventually([this] { return visible("errorLine") != nullptr; }));
    EXPECT_EQ(text("message", visible("errorLine")), QStringLiteral("Enter a valid X post URL or tweet ID."));
    EXPECT_EQ(visible("answer", visible("errorLine")), nullptr) << "trying again does not help against it";
    EXPECT_EQ(text("stateExplanation"), failure);
}

TEST_F(LibraryWindow, KeepsItsRowsWhenARefreshFails)
{
    fillWithNumberedPosts(5);
    openWindow();
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    press(Qt::Key_F5);
    ASSERT_TRUE(eventually([this] { return visible("errorLine") != nullptr; }));
    EXPECT_EQ(rows().size(), 5);
    EXPECT_EQ(text("message", visible("errorLine")), *model->lastError());
    click(visible("dismiss", visible("errorLine")));
    EXPECT_TRUE(eventually([this] { return visible("errorLine") == nullptr; }));
}

TEST_F(LibraryWindow, MovesWithTheKeyboard)
{
    fillWithNumberedPosts(50);
    openWindow();
    const auto current = [this] { return list().property("currentIndex").toInt(); };
    EXPECT_EQ(current(), -1);
    for (int stop = 0; stop < 30 && !list().hasActiveFocus(); ++stop)
        press(Qt::Key_Tab);
    ASSERT_TRUE(list().hasActiveFocus());
    EXPECT_EQ(current(), 0);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    EXPECT_EQ(current(), 1);
    press(Qt::Key_PageDown);
    EXPECT_GT(current(), 2);
    press(Qt::Key_End);
    EXPECT_EQ(current(), 49);
    press(Qt::Key_Home);
    EXPECT_EQ(current(), 0);
    press(Qt::Key_PageUp);
    EXPECT_EQ(current(), 0);
}

TEST_F(LibraryWindow, OpensThePostOnXWithControlAndReturn)
{
    fillWithNumberedPosts(3);
    openWindow();
    WebBrowser browser;
    list().forceActiveFocus();
    press(Qt::Key_Down);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(browser.opened, QList{QUrl(QStringLiteral("https://x.com/ada/status/10002"))});
}

TEST_F(LibraryWindow, KeepsItsPlaceAndItsRowsOverARefresh)
{
    fillWithNumberedPosts(50);
    openWindow();
    list().forceActiveFocus();
    press(Qt::Key_End);
    ASSERT_TRUE(
        eventually([this] { return text("text", rows().constLast()) == QStringLiteral("Post number 1"); }));
    const QList<QQuickItem*> before = rows();
    const double place = list().property("contentY").toDouble();
    ASSERT_GT(place, 0);
    press(Qt::Key_F5);
    blockOn(model->refreshLibrary());
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(list().property("contentY").toDouble(), place);
}

TEST_F(LibraryWindow, ChangesFromLightToDarkWhileItRuns)
{
    fillWithNumberedPosts(3);
    openWindow();
    const auto corner = [this] { return window().grabWindow().pixelColor(2, 2); };
    EXPECT_EQ(corner(), QColor(0xF6, 0xF7, 0xF9));
    desktop.setValues({.isDark = true});
    EXPECT_TRUE(eventually([&] { return corner() == QColor(0x15, 0x17, 0x1B); }));
}

TEST_F(LibraryWindow, CutsNothingAtNineHundredPixels)
{
    fill(inventedPosts());
    fillWithNumberedPosts(60);
    openWindow();
    window().resize(900, 600);
    ASSERT_TRUE(eventually([this] { return visible("sidebar")->property("isFolded").toBool(); }));
    EXPECT_FALSE(window().grabWindow().isNull());
    expectNothingIsCut();
}

} // namespace mirel::testing

#include "LibraryWindowTest.moc"
