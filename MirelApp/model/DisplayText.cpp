#include "model/DisplayText.h"

namespace mirel {

// X sends these three characters escaped, and only these.
QString displayText(QString text)
{
    return text.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"));
}

} // namespace mirel
