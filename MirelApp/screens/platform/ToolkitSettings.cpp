#include "screens/platform/ToolkitSettings.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

namespace mirel {

DesktopSettings::Values toolkitSettings()
{
    // The desktops' own interface fonts are between 9 and 11 points: only a larger one is a wish.
    constexpr double largestUsualPointSize = 11;
    const QPalette palette = QGuiApplication::palette();
    return {
        .isDark =
            palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF(),
        .textScale = std::max(1.0, QGuiApplication::font().pointSizeF() / largestUsualPointSize),
    };
}

} // namespace mirel
