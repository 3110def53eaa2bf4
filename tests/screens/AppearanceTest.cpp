#include "screens/InventedHistory.h"
#include "screens/WindowBench.h"

namespace mirel::testing {

struct Look
{
    const char* name;
    bool isDark;
    QSize size;
    double textScale = 1;
};

void PrintTo(const Look& look, std::ostream* out)
{
    *out << look.name;
}

// Every state of the window in both schemes, wide and narrow.
class Appearance : public WindowBench, public ::testing::WithParamInterface<Look>
{
protected:
    void open()
    {
        desktop.setValues({.isDark = GetParam().isDark, .textScale = GetParam().textScale});
        openWindow();
        window().resize(GetParam().size);
        ASSERT_TRUE(
            eventually([this] { return window().contentItem()->width() == GetParam().size.width(); }));
    }

    void check(const char* state)
    {
        const bool isFolded = window().width() < 960 * GetParam().textScale;
        EXPECT_EQ(visible("sidebar")->property("isFolded").toBool(), isFolded);
        expectNothingIsCut();
        keepPicture(QString::fromLatin1(GetParam().name) + u'-' + QString::fromLatin1(state));
    }
};

TEST_P(Appearance, OfTheListWithoutASelection)
{
    fill(inventedPosts());
    open();
    check("list");
}

TEST_P(Appearance, OfTheListAndThePostThatIsSelected)
{
    fill(inventedPosts());
    fillWithNumberedPosts(60);
    open();
    list().forceActiveFocus();
    press(Qt::Key_Home);
    ASSERT_TRUE(eventually([this] {
        return !model->property("shownPost").toMap()[QStringLiteral("kind")].toString().isEmpty();
    }));
    check("selection");
}

TEST_P(Appearance, OfTheReader)
{
    fill(inventedPosts());
    open();
    blockOn(model->openBookmark(model->bookmarks()[2].id));
    ASSERT_TRUE(eventually([this] { return visible("postText") != nullptr; }));
    check("reader");
}

TEST_P(Appearance, OfASearchInOneMailbox)
{
    fill(inventedPosts());
    open();
    press(Qt::Key_F, Qt::ControlModifier);
    blockOn(model->setSearchQuery(QStringLiteral("the")));
    ASSERT_TRUE(eventually([this] { return visible("searchScope") != nullptr; }));
    check("search");
}

TEST_P(Appearance, OfASearchWithoutResults)
{
    fill(inventedPosts());
    open();
    blockOn(model->openLibrary(4711, {}, {}));
    ASSERT_TRUE(eventually([this] { return visible("clearRefinements") != nullptr; }));
    check("no-results");
}

TEST_P(Appearance, OfAnEmptyMailbox)
{
    fill(inventedPosts());
    open();
    click(visible("mailbox-archive"));
    ASSERT_TRUE(eventually([this] { return visible("emptyState") != nullptr; }));
    check("empty-mailbox");
}

TEST_P(Appearance, OfAnEmptyLibrary)
{
    open();
    ASSERT_NE(visible("emptyState"), nullptr);
    check("empty-library");
}

TEST_P(Appearance, OfARefreshThatFailed)
{
    fill(inventedPosts());
    open();
    library.connect()->execute("ALTER TABLE bookmarks RENAME TO lost");
    press(Qt::Key_F5);
    ASSERT_TRUE(eventually([this] { return visible("errorLine") != nullptr; }));
    check("failed-refresh");
}

TEST_P(Appearance, OfTheSyncHistory)
{
    fill(inventedPosts());
    inventHistory(library);
    open();
    click(visible("syncState"));
    ASSERT_TRUE(eventually([this] { return allVisible("runRow").size() >= 2; }));
    check("history");
    click(allVisible("runRow").value(1));
    ASSERT_TRUE(eventually([this] { return visible("runReset") != nullptr; }));
    check("history-run");
}

TEST_P(Appearance, OfTheSettings)
{
    fill(inventedPosts());
    open();
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("connectX") != nullptr; }));
    check("settings");
    visible("showTokens")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    model->requestXOAuth({}, {}, {});
    // In the window, and over it in the form.
    ASSERT_TRUE(eventually([this] { return visible("saveTokens") && allVisible("errorLine").size() == 2; }));
    check("settings-tokens");
}

TEST_P(Appearance, OfTheQuestionBeforeEverythingIsDeleted)
{
    fill(inventedPosts());
    open();
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("deleteAllData") != nullptr; }));
    visible("deleteAllData")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    ASSERT_TRUE(eventually([this] { return visible("confirm") != nullptr; }));
    check("delete-question");
}

TEST_P(Appearance, OfTheBoxThatOpensAPost)
{
    fill(inventedPosts());
    open();
    press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("postReferenceInput") != nullptr; }));
    type("12");
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return visible("errorLine") != nullptr; }));
    check("open-post");
}

TEST_P(Appearance, OfARateLimit)
{
    fill(inventedPosts());
    inventHistory(library);
    open();
    ASSERT_NE(visible("rateLimitNotice"), nullptr);
    check("rate-limit");
}

INSTANTIATE_TEST_SUITE_P(, Appearance,
                         ::testing::Values(Look{"light-wide", false, {1240, 780}},
                                           Look{"dark-wide", true, {1240, 780}},
                                           Look{"light-narrow", false, {900, 600}},
                                           Look{"dark-narrow", true, {900, 600}},
                                           Look{"light-smallest", false, {560, 480}},
                                           Look{"light-large-type", false, {1240, 780}, 1.25}),
                         [](const auto& each) {
                             QString name = QString::fromLatin1(each.param.name);
                             return name.remove(u'-').toStdString();
                         });

} // namespace mirel::testing
