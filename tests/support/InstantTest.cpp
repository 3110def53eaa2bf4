#include "testing/Printing.h"

#include "support/Instant.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(Instant, HoldsTwoScalesThatDifferBy978307200Seconds)
{
    EXPECT_EQ(Instant::fromSecondsSince2001(0), Instant::fromSecondsSince1970(978'307'200));
    EXPECT_EQ(Instant::fromSecondsSince1970(0).secondsSince2001(), -978'307'200);
    EXPECT_EQ(Instant::fromSecondsSince2001(1.5).secondsSince1970(), 978'307'201.5);
    EXPECT_EQ(Instant().secondsSince1970(), 0);
}

TEST(Instant, IsOrderedAndMoves)
{
    const Instant early = Instant::fromSecondsSince1970(1);
    EXPECT_LT(early, early.addingSeconds(0.5));
    EXPECT_EQ(early.addingSeconds(-1), Instant());
}

TEST(Instant, BecomesADateInUTC)
{
    EXPECT_EQ(Instant::fromSecondsSince1970(1.5).toDateTime().toString(Qt::ISODateWithMs),
              u"1970-01-01T00:00:01.500Z");
    EXPECT_EQ(Instant::fromSecondsSince1970(-0.001).toDateTime().toString(Qt::ISODateWithMs),
              u"1969-12-31T23:59:59.999Z");
}

TEST(Instant, IsNowToTheSystemsClock)
{
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    const double now = Instant::now().secondsSince1970();
    EXPECT_GE(now, static_cast<double>(before));
    EXPECT_LT(now, static_cast<double>(QDateTime::currentSecsSinceEpoch() + 1));
}

struct DateRow
{
    const char* name;
    const char* text;
    std::optional<double> secondsSince1970;
};

class ISO8601Test : public ::testing::TestWithParam<DateRow>
{
};

TEST_P(ISO8601Test, IsReadOrRefused)
{
    const auto instant = Instant::fromISO8601(QString::fromUtf8(GetParam().text));
    ASSERT_EQ(instant.has_value(), GetParam().secondsSince1970.has_value());
    if (instant) {
        EXPECT_DOUBLE_EQ(instant->secondsSince1970(), *GetParam().secondsSince1970);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ISO8601Test,
    ::testing::Values(
        DateRow{"Milliseconds", "2026-08-19T17:17:56.000Z", 1'787'159'876.0},
        DateRow{"NoFraction", "2026-08-19T17:17:56Z", 1'787'159'876.0},
        DateRow{"Microseconds", "2026-08-19T17:17:56.123456Z", 1'787'159'876.123456},
        DateRow{"OneDigit", "2026-08-19T17:17:56.5Z", 1'787'159'876.5},
        DateRow{"Offset", "2026-08-19T19:17:56+02:00", 1'787'159'876.0},
        DateRow{"NegativeOffset", "2026-08-19T12:47:56-04:30", 1'787'159'876.0},
        DateRow{"OffsetWithoutColon", "2026-08-19T19:17:56+0200", 1'787'159'876.0},
        DateRow{"Before1970", "1969-12-31T23:59:58.5Z", -1.5},
        DateRow{"LeapDay", "2024-02-29T00:00:00Z", 1'709'164'800.0},
        DateRow{"NoLeapDay", "2026-02-29T00:00:00Z", {}}, DateRow{"Month13", "2026-13-01T00:00:00Z", {}},
        DateRow{"Hour25", "2026-01-01T25:00:00Z", {}}, DateRow{"NoZone", "2026-08-19T17:17:56", {}},
        DateRow{"DateAlone", "2026-08-19", {}}, DateRow{"Space", "2026-08-19 17:17:56Z", {}},
        DateRow{"EmptyFraction", "2026-08-19T17:17:56.Z", {}}, DateRow{"Blank", " 2026-08-19T17:17:56Z", {}},
        DateRow{"LineEnd", "2026-08-19T17:17:56Z\n", {}}, DateRow{"OtherDigits", "٢٠٢٦-08-19T17:17:56Z", {}},
        DateRow{"Empty", "", {}}, DateRow{"Word", "soon", {}}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace mirel
