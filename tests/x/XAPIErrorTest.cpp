#include "testing/Printing.h"

#include "x/XAPIError.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(XAPIError, DescribesEachCase)
{
    EXPECT_EQ(XAPIError::http(503, QStringLiteral("Over capacity")).description(),
              QStringLiteral("X returned HTTP 503: Over capacity"));
    EXPECT_EQ(XAPIError::rateLimited(std::nullopt).description(), QStringLiteral("X rate limit reached."));
    EXPECT_EQ(XAPIError::credentialsMissing().description(),
              QStringLiteral("X credentials are not configured."));
    EXPECT_EQ(XAPIError::reconnectRequired().description(),
              QStringLiteral("The X connection must be renewed."));
    EXPECT_EQ(XAPIError::invalidResponse().description(),
              QStringLiteral("X returned an unreadable response."));
}

TEST(XAPIError, TellsUntilWhenXWaits)
{
    const auto resetAt = Instant::fromSecondsSince1970(1787159876);
    const QString moment = QLocale().toString(resetAt.toDateTime().toLocalTime(), QLocale::ShortFormat);
    EXPECT_EQ(XAPIError::rateLimited(resetAt).description(),
              QStringLiteral("X rate limit reached until ") + moment + QStringLiteral("."));
}

TEST(XAPIError, ComparesByValue)
{
    EXPECT_EQ(XAPIError::http(500, QStringLiteral("a")), XAPIError::http(500, QStringLiteral("a")));
    EXPECT_FALSE(XAPIError::http(500, QStringLiteral("a")) == XAPIError::http(501, QStringLiteral("a")));
    EXPECT_FALSE(XAPIError::http(500, QStringLiteral("a")) == XAPIError::http(500, QStringLiteral("b")));
    EXPECT_FALSE(XAPIError::rateLimited(std::nullopt) == XAPIError::rateLimited(Instant()));
    EXPECT_FALSE(XAPIError::credentialsMissing() == XAPIError::reconnectRequired());
}

} // namespace
} // namespace mirel
