#pragma once

#include "model/MirelAppModel.h"
#include "screens/DesktopSettings.h"
#include "screens/PictureNetwork.h"
#include "screens/Theme.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace mirel {

// The window of the program over one model. Lives on the main thread.
class Screens
{
public:
    // Builds the window, which is not shown yet. `model` and `desktop` outlive the screens; pictures are
    // cached below `cacheDirectory`. Throws ScreensError.
    Screens(MirelAppModel& model, DesktopSettings& desktop, const QString& cacheDirectory);

    [[nodiscard]] QQuickWindow& window() const { return *m_window; }
    [[nodiscard]] Theme& theme() const { return *m_theme; }

    // Shows the window in the state that it has, such as maximized.
    void show();
    // Shows the window before all others; one that was minimized is not any more.
    void bringToFront();

    // A picture on the screen is still being loaded.
    [[nodiscard]] bool isLoadingPictures() const;

private:
    PictureNetwork m_pictureNetwork;
    QQmlApplicationEngine m_engine;
    Theme* m_theme = nullptr;
    QQuickWindow* m_window = nullptr;
};

} // namespace mirel
