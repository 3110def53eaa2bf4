#include "screens/WindowBench.h"

#include "screens/WindowLinks.h"

#include <QTemporaryDir>

#include <future>

namespace mirel::testing {

using namespace std::chrono_literals;

// The window, and other starts of Mirel that meet it.
class WindowLinksTest : public WindowBench
{
protected:
    void receiveLinks(std::chrono::milliseconds interval = 1h)
    {
        links = std::make_unique<WindowLinks>(std::make_unique<LinkReceiver>(directory.path()), *model,
                                              *screens, QStringLiteral("/library"), interval);
    }

    void openReceivingWindow()
    {
        fillWithNumberedPosts(3);
        openWindow();
        receiveLinks();
    }

    // As another program does, while this one runs its event loop.
    Handing hand(const std::optional<QString>& url = {},
                 const QString& libraryPath = QStringLiteral("/library"))
    {
        auto handing = std::async(std::launch::async, [=, this] {
            return handOver({url, libraryPath}, directory.path());
        });
        EXPECT_TRUE(eventually([&] { return handing.wait_for(0s) == std::future_status::ready; }));
        return handing.get();
    }

    bool isSheetOpen() const { return visible("sheetTitle") != nullptr; }

    // Follows a link while a sheet stands over the window, then goes back.
    void expectThatTheSheetGivesWay()
    {
        ASSERT_TRUE(eventually([this] { return isSheetOpen(); }));
        const QString title = text("sheetTitle");
        EXPECT_EQ(hand(QStringLiteral("mirel://open/10002")), Handing::taken);
        EXPECT_TRUE(eventually([this] { return model->isReaderOpen(); })) << qPrintable(title);
        EXPECT_TRUE(eventually([this] { return !isSheetOpen(); })) << qPrintable(title);
        blockOn(model->goBack());
    }

    QTemporaryDir directory;
    std::unique_ptr<WindowLinks> links;
    const QString guessed = QStringLiteral("mirel://oauth/x?state=guessed&code=guessed");
};

TEST_F(WindowLinksTest, AMaximizedWindowStaysSo)
{
    openReceivingWindow();
    window().setWindowState(Qt::WindowMaximized);
    EXPECT_EQ(hand(), Handing::taken);
    EXPECT_EQ(hand(QStringLiteral("mirel://open/10002")), Handing::taken);
    EXPECT_EQ(window().windowStates(), Qt::WindowMaximized);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(WindowLinksTest, AMinimizedWindowComesBackAsItWas)
{
    openReceivingWindow();
    window().setWindowStates(Qt::WindowMaximized | Qt::WindowMinimized);
    EXPECT_EQ(hand(), Handing::taken);
    EXPECT_EQ(window().windowStates(), Qt::WindowMaximized);
    window().setWindowStates(Qt::WindowMinimized);
    EXPECT_EQ(hand(), Handing::taken);
    EXPECT_EQ(window().windowStates(), Qt::WindowNoState);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(WindowLinksTest, AStartForAnotherLibraryNeedsAWindowOfItsOwn)
{
    openReceivingWindow();
    EXPECT_EQ(hand({}, QStringLiteral("/elsewhere")), Handing::refused);
    EXPECT_EQ(hand(QStringLiteral("mirel://open/10002"), QStringLiteral("/elsewhere")), Handing::taken);
    EXPECT_TRUE(eventually([this] { return model->isReaderOpen(); }));
}

TEST_F(WindowLinksTest, ACallbackThatNobodyWaitsForIsTold)
{
    openReceivingWindow();
    EXPECT_EQ(hand(guessed), Handing::taken);
    ASSERT_TRUE(eventually([this] { return visible("errorLine") != nullptr; }));
    EXPECT_EQ(text("message", visible("errorLine")),
              QStringLiteral("Start the X connection again before opening this callback."));
}

TEST_F(WindowLinksTest, AGuessedCallbackIsToldInTheSettingsAndTheSignInGoesOn)
{
    openReceivingWindow();
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("clientIDInput") != nullptr; }));
    blockOn(model->beginXOAuth(QStringLiteral("client"), QString(), QStringLiteral("mirel://oauth/x")));
    EXPECT_EQ(hand(guessed), Handing::taken);
    EXPECT_TRUE(eventually([this] {
        return model->lastError() ==
               QStringLiteral("The X authorization callback did not match this connection attempt.");
    }));
    EXPECT_TRUE(model->isAuthorizingX());
    EXPECT_NE(visible("clientIDInput"), nullptr) << "a callback closes nothing";
    EXPECT_EQ(allVisible("errorLine").size(), 2) << "in the window, and over it in the form";
}

TEST_F(WindowLinksTest, NothingStandsOverThePostOfALink)
{
    openReceivingWindow();
    press(Qt::Key_Comma, Qt::ControlModifier);
    expectThatTheSheetGivesWay();
    press(Qt::Key_O, Qt::ControlModifier);
    expectThatTheSheetGivesWay();
    click(visible("syncState"));
    expectThatTheSheetGivesWay();
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("deleteAllData") != nullptr; }));
    click(visible("deleteAllData"));
    ASSERT_TRUE(eventually([this] { return visible("confirmationText") != nullptr; }));
    expectThatTheSheetGivesWay();
}

TEST_F(WindowLinksTest, NothingStandsOverTheReasonWhyALinkOpensNothing)
{
    openReceivingWindow();
    click(visible("syncState"));
    ASSERT_TRUE(eventually([this] { return isSheetOpen(); }));
    EXPECT_EQ(hand(QStringLiteral("no link")), Handing::taken);
    EXPECT_TRUE(eventually([this] { return !isSheetOpen(); }));
    EXPECT_EQ(text("message", visible("errorLine")),
              QStringLiteral("That Mirel link does not contain an X post URL or tweet ID."));
}

TEST_F(WindowLinksTest, ArriveOnceTheProgramThatReceivedThemIsGone)
{
    fillWithNumberedPosts(3);
    openWindow();
    auto other = std::make_unique<LinkReceiver>(directory.path());
    ASSERT_TRUE(other->claim());
    other->receive([](const HandedLink&) { return true; });
    receiveLinks(1ms);
    // By then it has tried to receive them several times.
    int pulses = 0;
    QTimer pulse;
    pulse.callOnTimeout([&pulses] { ++pulses; });
    pulse.start(1ms);
    EXPECT_TRUE(eventually([&] { return pulses >= 5; }));
    pulse.stop();
    EXPECT_EQ(hand(QStringLiteral("mirel://open/10002")), Handing::taken);
    EXPECT_FALSE(model->isReaderOpen()) << "the other one took it";
    other.reset();
    EXPECT_TRUE(eventually([this] { return QFile::exists(LinkReceiver::socketPath(directory.path())); }));
    EXPECT_EQ(hand(QStringLiteral("mirel://open/10002")), Handing::taken);
    EXPECT_TRUE(eventually([this] { return model->isReaderOpen(); }));
}

TEST_F(WindowLinksTest, ArriveFromTheBeginningOfASignIn)
{
    openWindow();
    auto other = std::make_unique<LinkReceiver>(directory.path());
    ASSERT_TRUE(other->claim());
    receiveLinks();
    other.reset();
    EXPECT_EQ(hand(guessed), Handing::nobodyThere);
    blockOn(model->beginXOAuth(QStringLiteral("client"), QString(), QStringLiteral("mirel://oauth/x")));
    EXPECT_EQ(hand(guessed), Handing::taken);
}

} // namespace mirel::testing
