#pragma once

#include <QDateTime>
#include <QString>

#include <compare>
#include <functional>
#include <optional>

namespace mirel {

// A point in time, to the precision of a double. Two scales stand side by side in Mirel: tables hold
// seconds since 1970-01-01T00:00:00Z, JSON holds seconds since 2001-01-01T00:00:00Z. The conversions
// between them are here and nowhere else.
class Instant
{
public:
    // The instant 0 seconds since 1970.
    constexpr Instant() = default;

    [[nodiscard]] static constexpr Instant fromSecondsSince1970(double seconds) { return Instant(seconds); }
    [[nodiscard]] static constexpr Instant fromSecondsSince2001(double seconds)
    {
        return Instant(seconds + secondsFrom1970To2001);
    }

    // The system clock's time, to the microsecond.
    [[nodiscard]] static Instant now();

    // Reads an ISO 8601 internet date and time ("2026-08-19T17:17:56.000Z"), with fractional seconds
    // or without. Absent when `text` is anything else; a time zone is required.
    [[nodiscard]] static std::optional<Instant> fromISO8601(QStringView text);

    [[nodiscard]] constexpr double secondsSince1970() const { return m_secondsSince1970; }
    [[nodiscard]] constexpr double secondsSince2001() const
    {
        return m_secondsSince1970 - secondsFrom1970To2001;
    }

    // For calendars and display only: milliseconds are all that it keeps. In UTC.
    [[nodiscard]] QDateTime toDateTime() const;

    [[nodiscard]] constexpr Instant addingSeconds(double seconds) const
    {
        return Instant(m_secondsSince1970 + seconds);
    }

    friend constexpr auto operator<=>(const Instant&, const Instant&) = default;

private:
    static constexpr double secondsFrom1970To2001 = 978'307'200;

    explicit constexpr Instant(double secondsSince1970)
        : m_secondsSince1970(secondsSince1970)
    {
    }

    double m_secondsSince1970 = 0;
};

// A source of the current time, injected wherever time decides something.
using Clock = std::function<Instant()>;

} // namespace mirel
