#include "testing/Printing.h"

#include "screens/Display.h"

#include <gtest/gtest.h>

namespace mirel {

namespace {

QDateTime at(const char* text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
}

} // namespace

TEST(Display, ShortensCounters)
{
    const std::pair<double, const char*> rows[] = {
        {0, "0"},          {999, "999"},        {1'000, "1K"},   {1'234, "1.2K"},
        {9'999, "9.9K"},   {10'000, "10K"},     {34'567, "34K"}, {999'999, "999K"},
        {1'000'000, "1M"}, {5'678'901, "5.6M"}, {123e6, "123M"}, {2.5e9, "2.5B"},
    };
    const Display display;
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(display.compactNumber(value), QString::fromLatin1(expected)) << value;
    EXPECT_EQ(display.number(1'234'567), QStringLiteral("1,234,567"));
}

TEST(Display, TellsHowLongAgoAPostWasWritten)
{
    struct Row
    {
        const char* date;
        const char* expected;
    };
    const Row rows[] = {
        {"2026-03-12T14:05:00", "now"},         {"2026-03-12T14:01:00", "4 min"},
        {"2026-03-12T11:05:30", "3 h"},         {"2026-03-11T23:59:00", "Yesterday"},
        {"2026-03-10T10:00:00", "Tue"},         {"2026-03-05T10:00:00", "5 Mar"},
        {"2025-03-12T10:00:00", "12 Mar 2025"}, {"2026-04-01T10:00:00", "1 Apr 2026"},
    };
    const Display display;
    for (const Row& row : rows) {
        EXPECT_EQ(display.relativeDate(at(row.date), at("2026-03-12T14:05:30")),
                  QString::fromLatin1(row.expected))
            << row.date;
    }
    EXPECT_EQ(display.fullDate(at("2026-03-12T14:05:30")),
              QStringLiteral("Thursday, 12 March 2026 at 14:05"));
    EXPECT_EQ(display.secondOfDay(at("2026-03-12T14:05:30")), QStringLiteral("14:05:30"));
}

TEST(Display, TellsATimeWithItsDayWhenThatIsNotToday)
{
    const Display display;
    const QDateTime now = at("2026-03-12T14:05:30");
    EXPECT_EQ(display.clockTime(at("2026-03-12T00:00:00"), now), QStringLiteral("00:00"));
    EXPECT_EQ(display.clockTime(at("2026-03-12T23:59:59"), now), QStringLiteral("23:59"));
    EXPECT_EQ(display.clockTime(at("2026-03-13T00:10:00"), now), QStringLiteral("13 Mar at 00:10"));
}

TEST(Display, ShowsTheBeginningOfAPostAsOneParagraph)
{
    const Display display;
    EXPECT_EQ(display.snippet(QStringLiteral("one\n\n two\tthree ")), QStringLiteral("one two three"));
    const QString emoji = QStringLiteral("\U0001F600");
    const QString cut = display.snippet(QStringLiteral("x") + emoji.repeated(1000));
    EXPECT_TRUE(cut.back().isLowSurrogate());
    EXPECT_LT(cut.size(), 1000);
}

TEST(Display, LoadsPicturesOfTheWebOnly)
{
    const Display display;
    EXPECT_FALSE(display.webPicture(QUrl(QStringLiteral("https://pictures.example/a.png"))).isEmpty());
    for (const char* url : {"file:///etc/passwd", "qrc:/a.png", "data:image/png;base64,AA", "a.png", ""})
        EXPECT_TRUE(display.webPicture(QUrl(QString::fromLatin1(url))).isEmpty()) << url;
}

} // namespace mirel
