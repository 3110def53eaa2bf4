#include <QGuiApplication>

#include <gtest/gtest.h>

// The screens need a QGuiApplication; they are rendered off screen, without a graphics card.
int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_SCALE_FACTOR", "1");
    QGuiApplication application(argumentCount, arguments);
    ::testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
