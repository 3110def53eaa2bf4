#include "LatenessMeter.h"
#include "model/Demo.h"
#include "model/MirelAppModel.h"
#include "screens/DesktopSettings.h"
#include "screens/Screens.h"
#include "support/BlockOn.h"

#include <QGuiApplication>

#include <cstdio>

// How long the main thread is busy at a stretch while the window shows a sync. Needs MIREL_X_API_URL and
// MIREL_LOCAL_DATA_DIR, as the demo does.

namespace mirel {
namespace {

int run()
{
    DesktopSettings desktop{DesktopSettings::Values{}};
    const auto model = MirelAppModel::live(Demo::liveOptions());
    const QString caches = qEnvironmentVariable("MIREL_LOCAL_DATA_DIR") + QStringLiteral("/cache");
    const Screens screens(*model, desktop, caches);
    screens.window().show();
    blockOn(model->start());
    LatenessMeter meter;
    blockOn(model->syncNow({}, true));
    std::printf("%s\n",
                qUtf8Printable(model->lastError().value_or(model->statusMessage().value_or(QString()))));
    meter.report();
    blockOn(model->shutDown());
    return model->lastError() ? 1 : 0;
}

} // namespace
} // namespace mirel

int main(int argumentCount, char** arguments)
{
    QGuiApplication application(argumentCount, arguments);
    try {
        return mirel::run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(mirel::describe(error)));
        return 1;
    }
}
