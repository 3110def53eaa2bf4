#include "testing/Printing.h"

#include "library/SearchableText.h"
#include "testing/RandomChoices.h"

#include <QStringEncoder>

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(SearchBytes, AreLowerCasedAndKeepDiacritics)
{
    EXPECT_EQ(searchBytes(QStringLiteral("AZ az [`{@ 09")), "az az [`{@ 09");
    EXPECT_EQ(searchBytes(QStringLiteral("\u00C9T\u00C9 Stra\u00DFe")), "\u00E9t\u00E9 stra\u00DFe");
    EXPECT_EQ(searchBytes(QStringLiteral("\u0130I\u0131")), "i\u0307i\u0131");
    EXPECT_EQ(searchBytes(QString()), "");
}

TEST(SearchBytes, HoldTheReplacementCharacterForHalfASurrogatePair)
{
    const QChar half(0xD83D);
    EXPECT_EQ(searchBytes(QString(half)), "\uFFFD");
    EXPECT_EQ(searchBytes(QStringLiteral("A") + half + QStringLiteral("B")), "a\uFFFDb");
    EXPECT_EQ(searchBytes(half + QStringLiteral("\U0001F600")), "\uFFFD\U0001F600");
}

// A text of one such letter would take minutes if each moved what follows it.
TEST(SearchBytes, OfAVeryLongTextOfGrowingLettersAreMade)
{
    EXPECT_EQ(searchBytes(QString(2'000'000, QChar(u'\u0130'))).size(), 6'000'000);
}

TEST(SearchBytes, AreThoseOfTheTextLowerCasedAsAWhole)
{
    const std::array<QChar, 16> units{QChar(u'a'),   QChar(u'A'),   QChar(u' '),   QChar(u'\0'),
                                      QChar(u'I'),   QChar(0x0130), QChar(0x0307), QChar(0x03A3),
                                      QChar(0x03C2), QChar(0x1E9E), QChar(0xFB01), QChar(0x6F22),
                                      QChar(0xD83D), QChar(0xDE00), QChar(0xD801), QChar(0xDC00)};
    testing::RandomChoices random(3);
    for (int round = 0; round < 5'000; ++round) {
        QString text;
        for (int i = random.below(12); i > 0; --i)
            text += random.oneOf(units);
        QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
        const QByteArray whole = encoder.encode(text.toLower());
        ASSERT_EQ(searchBytes(text), whole) << text.toUtf8().toHex(' ').toStdString();
    }
}

} // namespace
} // namespace mirel
