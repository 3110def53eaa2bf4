#include "model/Demo.h"
#include "model/MirelAppModel.h"
#include "screens/DesktopSettings.h"
#include "screens/Screens.h"
#include "support/BlockOn.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

// How long the main thread is busy at a stretch while the window shows a sync: a timer of 2 ms notes by how
// much it comes late. Needs MIREL_X_API_URL and MIREL_LOCAL_DATA_DIR, as the demo does.

namespace mirel {
namespace {

using namespace std::chrono_literals;

class LatenessMeter : public QObject
{
public:
    LatenessMeter()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            m_lateness.push_back(static_cast<double>(m_sinceLast.nsecsElapsed()) / 1e6 - interval.count());
            m_sinceLast.restart();
        });
        m_sinceLast.start();
        m_timer.start(interval);
    }

    void report()
    {
        std::sort(m_lateness.begin(), m_lateness.end());
        const auto at = [this](double share) {
            return m_lateness[static_cast<std::size_t>(share * static_cast<double>(m_lateness.size() - 1))];
        };
        std::printf("main thread late by: median %.1f ms, 99 %% %.1f ms, 99.9 %% %.1f ms, most %.1f ms "
                    "(%zu readings)\n",
                    at(0.5), at(0.99), at(0.999), at(1), m_lateness.size());
    }

private:
    static constexpr std::chrono::milliseconds interval = 2ms;

    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    std::vector<double> m_lateness;
};

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
