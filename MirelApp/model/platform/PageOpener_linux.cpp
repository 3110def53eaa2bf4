#include "model/platform/PageOpener.h"

namespace mirel {

QString pageOpener()
{
    return QStringLiteral("xdg-open");
}

} // namespace mirel
