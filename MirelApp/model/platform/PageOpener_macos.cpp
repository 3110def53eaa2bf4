#include "model/platform/PageOpener.h"

namespace mirel {

QString pageOpener()
{
    return QStringLiteral("open");
}

} // namespace mirel
