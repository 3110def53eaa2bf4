#include "testing/Printing.h"

#include "screens/WindowBench.h"
#include "screens/WindowPlacement.h"

#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace mirel {

TEST(WindowPlacement, BringsTheWindowBackToItsPlace)
{
    const QTemporaryDir directory;
    QSettings settings(directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    const QRect place(40, 50, 640, 480);
    {
        QWindow window;
        const WindowPlacement placement(window, settings);
        window.show();
        window.setGeometry(place);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        ASSERT_TRUE(QTest::qWaitFor([&] { return window.geometry() == place; }));
        window.hide();
    }
    QWindow window;
    const WindowPlacement placement(window, settings);
    EXPECT_EQ(window.geometry(), place);
}

TEST(WindowPlacement, KeepsTheWidthOfTheList)
{
    const QTemporaryDir directory;
    QSettings settings(directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    {
        QWindow window;
        window.setProperty("listWidth", 440.0);
        const WindowPlacement placement(window, settings);
        EXPECT_EQ(window.property("listWidth"), 440.0) << "nothing was saved yet";
        window.show();
        window.setProperty("listWidth", 480.5);
        window.hide();
    }
    QWindow window;
    const WindowPlacement placement(window, settings);
    EXPECT_EQ(window.property("listWidth"), 480.5);
}

TEST(WindowPlacement, LeavesTheWindowAloneWhenItsPlaceIsOnNoScreen)
{
    const QTemporaryDir directory;
    QSettings settings(directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    settings.setValue(QStringLiteral("window/geometry"), QRect(90'000, 90'000, 640, 480));
    QWindow window;
    window.setGeometry(10, 10, 300, 200);
    const WindowPlacement placement(window, settings);
    EXPECT_EQ(window.geometry(), QRect(10, 10, 300, 200));
}

class PlacedWindow : public testing::WindowBench
{
};

TEST_F(PlacedWindow, IsShownMaximizedWhenItWasSo)
{
    const QTemporaryDir directory;
    QSettings settings(directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    settings.setValue(QStringLiteral("window/isMaximized"), true);
    makeModel();
    screens = std::make_unique<Screens>(*model, desktop, library.directory());
    const WindowPlacement placement(window(), settings);
    screens->show();
    EXPECT_EQ(window().visibility(), QWindow::Maximized);
}

} // namespace mirel
