#pragma once

#include "model/LinkReceiver.h"
#include "model/MirelAppModel.h"
#include "screens/Screens.h"

#include <QTimer>

namespace mirel {

// Takes the links of later starts of Mirel for the window. Lives on the main thread.
class WindowLinks
{
public:
    // `receiver` need not be claimed: that is tried until it succeeds, every `interval` and whenever a
    // sign-in begins. `libraryPath` is that of `model`; a start for another library needs a window of its
    // own. `model` and `screens` outlive the links.
    WindowLinks(std::unique_ptr<LinkReceiver> receiver, MirelAppModel& model, Screens& screens,
                QString libraryPath, std::chrono::milliseconds interval = std::chrono::seconds(5));
    Q_DISABLE_COPY_MOVE(WindowLinks)

private:
    void claim();
    [[nodiscard]] bool take(const HandedLink& handed);

    std::unique_ptr<LinkReceiver> m_receiver;
    MirelAppModel& m_model;
    Screens& m_screens;
    QString m_libraryPath;
    // Runs while another program receives.
    QTimer m_claiming;
};

} // namespace mirel
