#include "testing/Printing.h"

#include "x/FormEncoding.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(FormEncoding, OrdersTheFieldsByName)
{
    EXPECT_EQ(formEncoded({{QStringLiteral("b"), QStringLiteral("1")},
                           {QStringLiteral("a.c"), QStringLiteral("2")},
                           {QStringLiteral("a"), QString()}}),
              "a=&a.c=2&b=1");
    EXPECT_EQ(formEncoded({}), "");
}

TEST(FormEncoding, KeepsTheOrderOfAQuery)
{
    EXPECT_EQ(queryEncoded({{QStringLiteral("b"), QStringLiteral("1 2")}, {QStringLiteral("a"), QString()}}),
              "b=1%202&a=");
    EXPECT_EQ(queryEncoded({}), "");
}

TEST(FormEncoding, LeavesWhatAQueryAllowsAndEscapesWhatEndsAField)
{
    EXPECT_EQ(formEncoded({{QStringLiteral("a"), QStringLiteral("+:,/?@!$'()*;-._~")}}),
              "a=+:,/?@!$'()*;-._~");
    EXPECT_EQ(formEncoded({{QStringLiteral("a&"), QStringLiteral("b=&c#d e%\"é")}}),
              "a%26=b%3D%26c%23d%20e%25%22%C3%A9");
}

TEST(FormEncoding, KeepsAPathSegmentOneSegment)
{
    EXPECT_EQ(pathSegmentEncoded(QStringLiteral("123456")), "123456");
    EXPECT_EQ(pathSegmentEncoded(QStringLiteral("a b/c?d#e%é:@")), "a%20b%2Fc%3Fd%23e%25%C3%A9:@");
}

} // namespace
} // namespace mirel
