#include "screens/DesktopSettings.h"

namespace mirel {

DesktopSettings::DesktopSettings(Values values)
    : m_values(values)
{
}

void DesktopSettings::setValues(Values values)
{
    if (m_values == values)
        return;
    m_values = values;
    Q_EMIT changed();
}

} // namespace mirel
