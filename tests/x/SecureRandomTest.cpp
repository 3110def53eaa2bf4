#include "testing/Printing.h"

#include "x/SecureRandom.h"

#include <QSet>

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(SecureRandom, GivesAsManyBytesAsItIsAskedFor)
{
    for (qsizetype count = 0; count <= 50; ++count)
        EXPECT_EQ(secureRandomBytes(count).size(), count);
}

TEST(SecureRandom, NeverGivesTheSameTwice)
{
    QSet<QByteArray> seen;
    constexpr int rounds = 1000;
    for (int i = 0; i < rounds; ++i)
        seen.insert(secureRandomBytes(24));
    EXPECT_EQ(seen.size(), rounds);
}

TEST(SecureRandom, FillsEveryByte)
{
    constexpr qsizetype count = 7;
    QByteArray touched(count, '\0');
    for (int i = 0; i < 100; ++i) {
        const QByteArray bytes = secureRandomBytes(count);
        for (qsizetype at = 0; at < count; ++at)
            touched[at] = static_cast<char>(touched[at] | bytes[at]);
    }
    EXPECT_FALSE(touched.contains('\0'));
}

} // namespace
} // namespace mirel
