#pragma once

#include "model/ContinuousPause.h"
#include "model/SyncChecks.h"
#include "screens/Screens.h"
#include "screens/WindowLinks.h"
#include "screens/WindowPlacement.h"

#include <QSettings>

namespace mirel {

// The program with its window, from its arguments to its exit status.
class Application
{
public:
    struct Options
    {
        // The simulated account, a vault in memory, and a sync at once.
        bool isDemo = false;
        // Where to save a picture of the window before ending; absent: the program runs until it is closed.
        std::optional<QString> screenshot;
        // What the system opens with Mirel.
        std::optional<QString> link;
    };

    // Runs the application, unless one that runs already takes what it was started for. Returns its exit
    // status; a failure is told on standard error in one sentence.
    static int main(int argumentCount, char** arguments);

    // Opens the library and the window, which takes the links of `receiver`; null when it takes none. Needs a
    // QGuiApplication. Throws Error.
    explicit Application(Options options, std::unique_ptr<LinkReceiver> receiver = nullptr);

    // Runs until the window is closed or the picture is saved, then ends what is under way. Returns the exit
    // status. Throws Error.
    int run();

private:
    QCoro::Task<> work();
    QCoro::Task<> takeScreenshot();

    Options m_options;
    std::unique_ptr<DesktopSettings> m_desktop;
    std::unique_ptr<MirelAppModel> m_model;
    std::unique_ptr<Screens> m_screens;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<WindowPlacement> m_placement;
    ContinuousPause m_pause;
    SyncChecks m_syncChecks;
    std::unique_ptr<WindowLinks> m_links;
};

} // namespace mirel
