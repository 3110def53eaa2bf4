#include "LatenessMeter.h"
#include "Timing.h"
#include "credentials/InMemoryCredentialVault.h"
#include "model/MirelAppModel.h"
#include "screens/DesktopSettings.h"
#include "screens/Screens.h"
#include "support/BlockOn.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>

#include <stdexcept>

// How long it takes from a key in the search field to the new rows on the screen, and how long the main
// thread is busy at a stretch meanwhile. Needs MIREL_LOCAL_DATA_DIR with a library.

namespace mirel {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

QQuickItem& searchFieldOf(const Screens& screens)
{
    auto* const field = screens.window().findChild<QQuickItem*>(QStringLiteral("searchField"));
    if (!field)
        throw std::runtime_error("The window has no search field.");
    return *field;
}

void sendKey(QWindow& window, int key, const QString& text)
{
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(&window, &event);
    }
}

// Until the listing has changed and a frame with it was drawn.
Milliseconds timeOfKey(MirelAppModel& model, QQuickWindow& window, int key, const QString& text)
{
    return timeOf([&] {
        QEventLoop loop;
        bool isListed = false;
        QObject::connect(&model, &MirelAppModel::libraryChanged, &loop, [&] {
            isListed = true;
            window.update();
        });
        QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, [&] {
            if (isListed)
                loop.quit();
        });
        sendKey(window, key, text);
        loop.exec();
    });
}

std::vector<double> type(MirelAppModel& model, QQuickWindow& window, const QString& text)
{
    std::vector<double> times;
    for (const QChar letter : text)
        times.push_back(timeOfKey(model, window, letter.toUpper().unicode(), letter).count());
    for (qsizetype i = 0; i < text.size(); ++i)
        times.push_back(timeOfKey(model, window, Qt::Key_Backspace, {}).count());
    return times;
}

void report(const char* name, const std::vector<double>& times)
{
    std::printf("%s: median %.1f ms, most %.1f ms (%zu keys)\n", name, median(times),
                *std::max_element(times.cbegin(), times.cend()), times.size());
}

void run()
{
    DesktopSettings desktop{DesktopSettings::Values{}};
    const auto model = MirelAppModel::live(
        {.makeVault = [] { return std::make_unique<InMemoryCredentialVault>(std::nullopt); },
         .searchPreparation = SearchPreparation::whileOpening});
    if (model->lastError())
        throw std::runtime_error(model->lastError()->toStdString());
    const QString caches = qEnvironmentVariable("MIREL_LOCAL_DATA_DIR") + QStringLiteral("/cache");
    const Screens screens(*model, desktop, caches);
    screens.window().show();
    blockOn(model->start());
    std::printf("%lld bookmarks\n", static_cast<long long>(model->counts().all));
    {
        LatenessMeter meter;
        searchFieldOf(screens).forceActiveFocus();
        report("right after the field got the focus", type(*model, screens.window(), QStringLiteral("n")));
        meter.report();
    }
    LatenessMeter meter;
    for (const char* query : {"note time", "label:work is:unread", "kamor", "zzzz"})
        report(query, type(*model, screens.window(), QString::fromLatin1(query)));
    meter.report();
    blockOn(model->shutDown());
}

} // namespace
} // namespace mirel

int main(int argumentCount, char** arguments)
{
    QGuiApplication application(argumentCount, arguments);
    try {
        mirel::run();
        return EXIT_SUCCESS;
    } catch (...) {
        std::fprintf(stderr, "typing-benchmark: %s\n", qPrintable(mirel::describe(std::current_exception())));
        return EXIT_FAILURE;
    }
}
