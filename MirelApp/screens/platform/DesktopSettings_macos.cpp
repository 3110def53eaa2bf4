#include "screens/platform/ToolkitSettings.h"

#include <QEvent>
#include <QGuiApplication>

namespace mirel {

namespace {

class ToolkitDesktopSettings : public DesktopSettings
{
public:
    ToolkitDesktopSettings()
        : DesktopSettings(toolkitSettings())
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::ApplicationPaletteChange)
            setValues(toolkitSettings());
        return DesktopSettings::eventFilter(watched, event);
    }
};

} // namespace

std::unique_ptr<DesktopSettings> DesktopSettings::ofThisSystem()
{
    return std::make_unique<ToolkitDesktopSettings>();
}

} // namespace mirel
