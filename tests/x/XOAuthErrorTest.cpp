#include "testing/Printing.h"

#include "x/XOAuthError.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(XOAuthError, DescribesEachCase)
{
    EXPECT_EQ(XOAuthError::authorizationDenied(QStringLiteral("access_denied")).description(),
              QStringLiteral("X authorization was not completed: access_denied"));
    EXPECT_EQ(XOAuthError::http(400, QStringLiteral("100%1 wrong")).description(),
              QStringLiteral("X OAuth returned HTTP 400: 100%1 wrong"));
    EXPECT_EQ(XOAuthError::invalidConfiguration().description(),
              QStringLiteral("Enter an X OAuth client ID and redirect URI."));
    EXPECT_EQ(XOAuthError::noPendingAuthorization().description(),
              QStringLiteral("Start the X connection again before opening this callback."));
    EXPECT_EQ(XOAuthError::stateMismatch().description(),
              QStringLiteral("The X authorization callback did not match this connection attempt."));
    EXPECT_EQ(XOAuthError::invalidCallback().description(),
              QStringLiteral("The X authorization callback is missing its code."));
    EXPECT_EQ(XOAuthError::invalidResponse().description(),
              QStringLiteral("X returned an unreadable OAuth response."));
}

TEST(XOAuthError, ComparesByValue)
{
    EXPECT_EQ(XOAuthError::http(400, QStringLiteral("a")), XOAuthError::http(400, QStringLiteral("a")));
    EXPECT_FALSE(XOAuthError::http(400, QStringLiteral("a")) == XOAuthError::http(401, QStringLiteral("a")));
    EXPECT_FALSE(XOAuthError::http(400, QStringLiteral("a")) == XOAuthError::http(400, QStringLiteral("b")));
    EXPECT_EQ(XOAuthError::authorizationDenied(QStringLiteral("a")),
              XOAuthError::authorizationDenied(QStringLiteral("a")));
    EXPECT_FALSE(XOAuthError::authorizationDenied(QStringLiteral("a")) ==
                 XOAuthError::authorizationDenied(QStringLiteral("b")));
    EXPECT_FALSE(XOAuthError::stateMismatch() == XOAuthError::invalidCallback());
}

TEST(XOAuthError, TellsTheStatusOfAnAnswerAlone)
{
    EXPECT_EQ(XOAuthError::http(503, {}).status(), 503);
    EXPECT_EQ(XOAuthError::http(503, {}).errorCase(), XOAuthError::Case::http);
    EXPECT_EQ(XOAuthError::invalidResponse().status(), 0);
}

} // namespace
} // namespace mirel
