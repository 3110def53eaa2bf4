#pragma once

#include <QRect>
#include <QSettings>
#include <QWindow>

namespace mirel {

// Keeps the size and the place of a window, and the width of its list when it has the property `listWidth`,
// between two runs.
class WindowPlacement : public QObject
{
public:
    // Moves `window`, which is not shown yet, to where `settings` says, if that lies on a screen. Writes its
    // place whenever it is hidden. Both outlive the placement.
    WindowPlacement(QWindow& window, QSettings& settings);

private:
    void restore();
    void save();

    QWindow& m_window;
    QSettings& m_settings;
    // The geometry of the window while it was neither maximized nor hidden.
    QRect m_normalGeometry;
    bool m_isMaximized = false;
};

} // namespace mirel
