#include "testing/Printing.h"

#include "x/MirelDeepLink.h"
#include "x/XOAuthService.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

QUrl parsed(const char* url)
{
    return QUrl(QString::fromUtf8(url), QUrl::StrictMode);
}

TEST(MirelDeepLink, KnowsItsScheme)
{
    EXPECT_EQ(MirelDeepLink::xOAuthCallbackScheme, QStringLiteral("mirel"));
}

TEST(MirelDeepLink, KnowsACallbackOfXInAnyLetterCase)
{
    for (const char* const url :
         {"mirel://oauth/x", "mirel://oauth/x?code=1&state=2", "MIREL://OAUTH/X?code=1",
          "Mirel://OAuth/x?error=access_denied", "mirel://oauth/x#fragment"})
        EXPECT_TRUE(MirelDeepLink::isXOAuthCallback(parsed(url))) << url;
}

TEST(MirelDeepLink, TakesNothingElseForACallback)
{
    for (const char* const url :
         {"", "//oauth/x", "mirel:/oauth/x", "mirel:oauth/x", "mirel:///x", "https://oauth/x",
          "mirels://oauth/x", "mirel://oauth2/x", "mirel://open/x", "mirel://oauth", "mirel://oauth/",
          "mirel://oauth/y", "mirel://oauth/x/y", "https://mirel.example/mac/oauth/x/callback?code=1"})
        EXPECT_FALSE(MirelDeepLink::isXOAuthCallback(parsed(url))) << url;
}

struct Row
{
    const char* name;
    const char* url;
    // Null: absent.
    const char* reference;
};

class MirelDeepLinkReference : public ::testing::TestWithParam<Row>
{
};

TEST_P(MirelDeepLinkReference, IsWhatNamesThePost)
{
    const Row& row = GetParam();
    const auto expected = row.reference ? std::optional(QString::fromUtf8(row.reference)) : std::nullopt;
    EXPECT_EQ(MirelDeepLink::postReference(parsed(row.url)), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, MirelDeepLinkReference,
    ::testing::Values(
        Row{"PageOnX", "https://x.com/ada/status/1?s=20#top", "https://x.com/ada/status/1?s=20#top"},
        Row{"PageOnXWithItsPrefix", "https://www.x.com/ada", "https://www.x.com/ada"},
        Row{"PageOnXAsItWasCalled", "https://twitter.com/a%20b", "https://twitter.com/a%20b"},
        Row{"PageOnXAsItWasCalledWithItsPrefix", "http://www.twitter.com/", "http://www.twitter.com/"},
        Row{"PageOnXInCapitals", "https://X.COM/Ada/status/1", "https://x.com/Ada/status/1"},
        Row{"HostOfXUnderAnyScheme", "mirel://x.com/1", "mirel://x.com/1"},
        Row{"OtherPrefixOfX", "https://mobile.twitter.com/ada/status/1", nullptr},
        Row{"TwoPrefixesOfX", "https://www.www.x.com/ada/status/1", nullptr},
        Row{"HostThatEndsLikeX", "https://netflix.com/1", nullptr},
        Row{"OtherHost", "https://elsewhere.example/status/1", nullptr},
        Row{"OpenWithAnID", "mirel://open/1234567890", "1234567890"},
        Row{"PostWithAnID", "mirel://post/1234567890", "1234567890"},
        Row{"InCapitals", "MIREL://OPEN/1234567890", "1234567890"},
        Row{"OtherHostOfMirel", "mirel://show/1234567890", nullptr},
        Row{"CallbackOfX", "mirel://oauth/x?id=1", nullptr}, Row{"NoHost", "mirel:/1234567890", nullptr},
        Row{"OtherSchemeWithTheHost", "https://open/1234567890", nullptr},
        Row{"NoScheme", "//open/1234567890", nullptr}, Row{"NothingAtAll", "", nullptr},
        Row{"ItemURL", "mirel://open?url=https://x.com/a/status/1", "https://x.com/a/status/1"},
        Row{"ItemURLEscaped", "mirel://open?url=https%3A%2F%2Fx.com%2Fa%2Fstatus%2F1%3Fa%3Db%26c",
            "https://x.com/a/status/1?a=b&c"},
        Row{"ItemTweet", "mirel://post?tweet=1", "1"}, Row{"ItemTweetID", "mirel://post?tweet_id=2", "2"},
        Row{"ItemID", "mirel://post?id=3", "3"}, Row{"ItemInCapitals", "mirel://post?Tweet_ID=4", "4"},
        Row{"ItemAmongBlanks", "mirel://post?id=%20%0A5%09", "5"},
        Row{"ItemAfterOthers", "mirel://post?source=mail&ids=1&id=6", "6"},
        Row{"FirstItemOfTwo", "mirel://post?id=7&url=8", "7"},
        Row{"ItemBeforeThePath", "mirel://post/1?id=2", "2"},
        Row{"EmptyItemEndsTheSearch", "mirel://post?url=&id=123", nullptr},
        Row{"BlankItemEndsTheSearch", "mirel://post?url=%20&id=123", nullptr},
        Row{"ItemWithoutAValueEndsTheSearch", "mirel://post?url&id=123", nullptr},
        Row{"EmptyItemLeavesThePath", "mirel://post/9?url=&id=123", "9"},
        Row{"OtherItemsLeaveThePath", "mirel://post/9?source=mail", "9"},
        Row{"LongerPath", "mirel://open/ada/status/1/", "ada/status/1"},
        Row{"PathAmongBlanks", "mirel://open/%20123%0A", "123"},
        Row{"BlankPath", "mirel://open/%20", nullptr}, Row{"PathOfSlashes", "mirel://open///", nullptr},
        Row{"NoPath", "mirel://open", nullptr}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PastedCallback, IsTakenWithWhatStandsAroundItAndFromThePageThatHandsItOn)
{
    const QUrl callback(QStringLiteral("mirel://oauth/x?state=s&code=a%26b"));
    for (const char* text : {"mirel://oauth/x?state=s&code=a%26b", " \nmirel://oauth/x?state=s&code=a%26b\t"})
        EXPECT_EQ(MirelDeepLink::xOAuthCallbackIn(QString::fromUtf8(text)), callback) << text;
    EXPECT_EQ(MirelDeepLink::xOAuthCallbackIn(XOAuthService::httpsHandoffRedirectURI +
                                              QStringLiteral("?state=s&code=a%26b")),
              callback);
}

TEST(PastedCallback, IsNothingElse)
{
    for (const char* text : {"", " ", "mirel://open/1", "https://x.com/home", "state=s&code=c"})
        EXPECT_EQ(MirelDeepLink::xOAuthCallbackIn(QString::fromUtf8(text)), std::nullopt) << text;
}

} // namespace
} // namespace mirel
