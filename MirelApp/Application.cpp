#include "Application.h"

#include "model/Demo.h"
#include "support/BlockOn.h"
#include "support/FileError.h"
#include "support/MirelPaths.h"
#include "support/WebURL.h"

#include <QCommandLineParser>
#include <QCoro/QCoroTimer>
#include <QGuiApplication>
#include <QIcon>
#include <QSaveFile>
#include <QThread>

#include <cstdio>
#include <cstring>
#include <langinfo.h>
#include <locale.h>

namespace mirel {

namespace {

using namespace std::chrono_literals;

class ScreenshotError : public Error
{
public:
    explicit ScreenshotError(QString text)
        : m_text(std::move(text))
    {
    }
    [[nodiscard]] QString description() const override { return m_text; }

private:
    QString m_text;
};

// Qt wants a UTF-8 locale, chooses one itself where there is none, and says so on standard error; chosen
// before, nothing is said.
void chooseUTF8Locale()
{
    setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

// A picture is rendered without a screen and without a graphics card. Decided before Qt connects to one.
void renderOffScreenForScreenshot(int argumentCount, char** arguments)
{
    const auto isScreenshot = [](const char* argument) {
        return QByteArrayView(argument).startsWith("--screenshot");
    };
    if (std::none_of(arguments, arguments + argumentCount, isScreenshot))
        return;
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
}

Application::Options readOptions()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A private library of your X bookmarks."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption demo(
        QStringLiteral("demo"),
        QStringLiteral("Shows the account of mirel-simulator, named by MIREL_X_API_URL; uses no keyring."));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Renders the window off screen, saves it as a PNG, and ends."),
        QStringLiteral("FILE"));
    const QCommandLineOption import(
        QStringLiteral("import-credentials-stdin"),
        QStringLiteral("As the first argument: reads credentials as JSON from standard input, and ends."));
    parser.addOptions({demo, screenshot, import});
    parser.addPositionalArgument(QStringLiteral("link"),
                                 QStringLiteral("A link to open, such as mirel://open/POST."),
                                 QStringLiteral("[link]"));
    parser.process(*qApp);
    const QStringList links = parser.positionalArguments();
    return {
        .isDemo = parser.isSet(demo),
        .screenshot = parser.isSet(screenshot) ? std::optional(parser.value(screenshot)) : std::nullopt,
        .link = links.isEmpty() ? std::nullopt : std::optional(links.first()),
    };
}

// The demo and a picture keep to themselves.
bool meetsOthers(const Application::Options& options)
{
    return !options.isDemo && !options.screenshot;
}

// What this start is for.
HandedLink handedLink(const Application::Options& options)
{
    return {.url = options.link, .libraryPath = MirelPaths::databasePath()};
}

QString meetingPlace()
{
    return MirelPaths::runtimeDirectory(QProcessEnvironment::systemEnvironment());
}

// Whether a program that runs already does what this one was started for. Else `receiver` was made the one
// that receives links, if that is possible.
bool isDoneElsewhere(const HandedLink& link, const QString& directory, LinkReceiver& receiver)
{
    constexpr auto between = 20ms;
    constexpr int longestWait = 10;
    for (int wait = 0; wait < longestWait; ++wait) {
        const Handing handing = handOver(link, directory);
        if (handing != Handing::nobodyThere)
            return handing == Handing::taken;
        if (receiver.claim())
            return false;
        // Another one may be about to listen.
        QThread::msleep(between.count());
    }
    return false;
}

// Runs the application, unless another one does what it was started for.
int runOnce(const Application::Options& options)
{
    std::unique_ptr<LinkReceiver> receiver;
    if (meetsOthers(options)) {
        try {
            const QString directory = meetingPlace();
            receiver = std::make_unique<LinkReceiver>(directory);
            if (isDoneElsewhere(handedLink(options), directory, *receiver))
                return 0;
        } catch (const FileError&) {
            // Without a place to meet, each start has a window of its own, which tells of a missing library.
        }
    }
    return Application(options, std::move(receiver)).run();
}

// Follows the sync in the demo; its failure is the screenshot's.
void requireSuccess(const MirelAppModel& model)
{
    if (model.lastError())
        throw ScreenshotError(*model.lastError());
}

LiveOptions liveOptions(const Application::Options& options)
{
    LiveOptions live = options.isDemo ? Demo::liveOptions() : LiveOptions();
    live.searchPreparation = SearchPreparation::whileOpening;
    return live;
}

} // namespace

int Application::main(int argumentCount, char** arguments)
{
    chooseUTF8Locale();
    renderOffScreenForScreenshot(argumentCount, arguments);
    QGuiApplication qtApplication(argumentCount, arguments);
    QGuiApplication::setApplicationName(QStringLiteral("Mirel"));
    QGuiApplication::setApplicationVersion(QStringLiteral(MIREL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("io.mirel.mirel"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/io.mirel.mirel.svg")));
    try {
        return runOnce(readOptions());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(describe(error)));
        return 1;
    }
}

Application::Application(Options options, std::unique_ptr<LinkReceiver> receiver)
    : m_options(std::move(options))
    , m_desktop(m_options.screenshot ? std::make_unique<DesktopSettings>(DesktopSettings::Values{})
                                     : DesktopSettings::ofThisSystem())
    , m_model(MirelAppModel::live(liveOptions(m_options)))
    , m_screens(std::make_unique<Screens>(
          *m_model, *m_desktop, MirelPaths::cacheDirectory(QProcessEnvironment::systemEnvironment())))
    , m_syncChecks(*m_model, m_pause)
{
    if (m_options.screenshot)
        return;
    if (receiver)
        m_links = std::make_unique<WindowLinks>(std::move(receiver), *m_model, *m_screens,
                                                MirelPaths::databasePath());
    m_settings = std::make_unique<QSettings>(QStringLiteral("Mirel"), QStringLiteral("Mirel"));
    m_placement = std::make_unique<WindowPlacement>(m_screens->window(), *m_settings);
}

int Application::run()
{
    m_screens->show();
    if (m_options.screenshot) {
        blockOn(takeScreenshot());
        m_screens->window().hide();
        blockOn(m_model->shutDown());
        return 0;
    }
    auto working = work();
    QGuiApplication::exec();
    // From here on a link needs another window.
    m_links.reset();
    m_screens->window().hide();
    auto shuttingDown = m_model->shutDown();
    m_syncChecks.end();
    blockOn(std::move(shuttingDown));
    blockOn(std::move(working));
    return 0;
}

QCoro::Task<> Application::work()
{
    co_await m_model->start();
    if (m_options.link)
        co_await m_model->handleOpenURL(parseURL(*m_options.link).value_or(QUrl()));
    if (m_options.isDemo && !m_model->isSyncing() && !m_syncChecks.hasEnded())
        co_await m_model->syncNow({}, false);
    co_await m_syncChecks.run();
}

// What `work` does before the first pause, each step of which has to succeed, and without a sync that nobody
// asked for.
QCoro::Task<> Application::takeScreenshot()
{
    constexpr auto between = 50ms;
    constexpr int longestWait = 600;
    co_await m_model->load();
    requireSuccess(*m_model);
    co_await m_model->refreshCredentialState();
    if (m_options.isDemo)
        co_await m_model->syncNow({}, false);
    requireSuccess(*m_model);
    // The rows ask for their pictures in the frame that first shows them.
    QImage picture = m_screens->window().grabWindow();
    for (int wait = 0; wait < longestWait && m_screens->isLoadingPictures(); ++wait)
        co_await QCoro::sleepFor(between);
    if (m_screens->isLoadingPictures())
        throw ScreenshotError(QStringLiteral("The pictures of the posts did not arrive within 30 seconds."));
    // Time for what has arrived to fade in.
    co_await QCoro::sleepFor(2 * std::chrono::milliseconds(m_screens->theme().motion()));
    picture = m_screens->window().grabWindow();
    QSaveFile file(*m_options.screenshot);
    if (picture.isNull() || !file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.commit())
        throw ScreenshotError(QStringLiteral("The picture could not be saved to %1: %2")
                                  .arg(*m_options.screenshot, file.errorString()));
}

} // namespace mirel
