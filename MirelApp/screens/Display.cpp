#include "screens/Display.h"

#include <QLocale>

#include <chrono>
#include <cmath>

namespace mirel {

namespace {

// Mirel's texts are English, so its dates and numbers are too.
QLocale locale()
{
    return QLocale(QLocale::English, QLocale::UnitedStates);
}

QString scaled(double value, double unit, QChar letter)
{
    const double tenths = std::floor(value / unit * 10) / 10;
    const bool showsTenths = tenths < 10 && tenths != std::floor(tenths);
    return QString::number(showsTenths ? tenths : std::floor(tenths), 'f', showsTenths ? 1 : 0) + letter;
}

} // namespace

Display::Display(QObject* parent)
    : QObject(parent)
{
    using namespace std::chrono_literals;
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_now = QDateTime::currentDateTime();
        Q_EMIT nowChanged();
    });
    m_timer.start(1min);
}

QString Display::number(double value) const
{
    return locale().toString(static_cast<qint64>(value));
}

QString Display::compactNumber(double value) const
{
    constexpr double thousand = 1'000;
    constexpr double million = 1'000'000;
    constexpr double billion = 1'000'000'000;
    if (value < thousand)
        return QString::number(static_cast<qint64>(value));
    if (value < million)
        return scaled(value, thousand, u'K');
    return value < billion ? scaled(value, million, u'M') : scaled(value, billion, u'B');
}

QString Display::relativeDate(const QDateTime& date, const QDateTime& now) const
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    constexpr qint64 daysOfAWeek = 7;
    const qint64 seconds = date.secsTo(now);
    const qint64 days = date.date().daysTo(now.date());
    if (seconds < 0)
        return locale().toString(date.date(), QStringLiteral("d MMM yyyy"));
    if (seconds < minute)
        return QStringLiteral("now");
    if (seconds < hour)
        return QStringLiteral("%1 min").arg(seconds / minute);
    if (days == 0)
        return QStringLiteral("%1 h").arg(seconds / hour);
    if (days == 1)
        return QStringLiteral("Yesterday");
    if (days < daysOfAWeek)
        return locale().toString(date.date(), QStringLiteral("ddd"));
    const bool isThisYear = date.date().year() == now.date().year();
    return locale().toString(date.date(),
                             isThisYear ? QStringLiteral("d MMM") : QStringLiteral("d MMM yyyy"));
}

QString Display::fullDate(const QDateTime& date) const
{
    return locale().toString(date, QStringLiteral("dddd, d MMMM yyyy 'at' HH:mm"));
}

QString Display::clockTime(const QDateTime& date, const QDateTime& now) const
{
    const bool isToday = date.date() == now.date();
    return locale().toString(date, isToday ? QStringLiteral("HH:mm") : QStringLiteral("d MMM 'at' HH:mm"));
}

QString Display::secondOfDay(const QDateTime& date) const
{
    return locale().toString(date, QStringLiteral("HH:mm:ss"));
}

QString Display::snippet(const QString& text) const
{
    constexpr qsizetype longest = 700;
    QString beginning = text.left(longest);
    if (beginning.size() < text.size() && beginning.back().isHighSurrogate())
        beginning.chop(1);
    return beginning.simplified();
}

QUrl Display::webPicture(const QUrl& url) const
{
    const bool isOfTheWeb = url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http");
    return isOfTheWeb && !url.host().isEmpty() ? url : QUrl();
}

} // namespace mirel
