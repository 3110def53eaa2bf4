#include <QGuiApplication>

#include <gtest/gtest.h>

// The screens need a QGuiApplication. They are rendered without a graphics card, and off screen unless
// QT_QPA_PLATFORM names a real window system.
int main(int argumentCount, char** arguments)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_SCALE_FACTOR", "1");
    QGuiApplication application(argumentCount, arguments);
    ::testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
