#include "support/Instant.h"

#include <QRegularExpression>
#include <QTimeZone>

#include <chrono>
#include <cmath>

namespace mirel {

Instant Instant::now()
{
    using namespace std::chrono;
    const auto sinceEpoch = system_clock::now().time_since_epoch();
    return Instant(static_cast<double>(duration_cast<microseconds>(sinceEpoch).count()) / 1e6);
}

std::optional<Instant> Instant::fromISO8601(QStringView text)
{
    static const QRegularExpression form(
        QStringLiteral(R"(\A(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d)(\.\d+)?(Z|[+-]\d\d:?\d\d)\z)"));
    const auto match = form.match(text.toString());
    if (!match.hasMatch())
        return std::nullopt;
    const auto moment = QDateTime::fromString(match.captured(1) + match.captured(3), Qt::ISODate);
    if (!moment.isValid())
        return std::nullopt;
    const double fraction = match.hasCaptured(2) ? (u'0' + match.captured(2)).toDouble() : 0;
    return Instant(static_cast<double>(moment.toSecsSinceEpoch()) + fraction);
}

QDateTime Instant::toDateTime() const
{
    return QDateTime::fromMSecsSinceEpoch(std::llround(m_secondsSince1970 * 1000), Qt::UTC);
}

} // namespace mirel
