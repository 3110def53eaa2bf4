#include "screens/platform/PortalDesktopSettings.h"

namespace mirel {

std::unique_ptr<DesktopSettings> DesktopSettings::ofThisSystem()
{
    return std::make_unique<PortalDesktopSettings>(QDBusConnection::sessionBus());
}

} // namespace mirel
