#include <QGuiApplication>

#include <gtest/gtest.h>

#ifdef __SANITIZE_ADDRESS__
// The software renderer of Qt 6.4 forgets the textures of a window that is destroyed.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libQt6Quick\n"
           "leak:QImageData::create\n"
           "leak:QPixmap::fromImage\n"
           "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n";
}
#endif

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
