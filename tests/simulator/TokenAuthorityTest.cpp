#include "testing/Printing.h"

#include "simulator/x/TokenAuthority.h"

#include <gtest/gtest.h>

namespace mirel::simulator {
namespace {

// The pair of RFC 7636, appendix B.
const QString verifier = QStringLiteral("dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk");
const QString challenge = QStringLiteral("E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM");
const QString address = QStringLiteral("mirel://oauth/x");

struct Fixture
{
    double now = 0;
    TokenAuthority authority{SimulatedIdentity{}, [this] { return Instant::fromSecondsSince1970(now); }};
};

TEST(TokenAuthority, AcceptsTheVerifierOfItsChallenge)
{
    Fixture fixture;
    EXPECT_TRUE(
        fixture.authority.exchange(fixture.authority.authorize(challenge, address), verifier, address));
}

TEST(TokenAuthority, LetsACodeExpireAfterThirtySeconds)
{
    Fixture fixture;
    const QString intime = fixture.authority.authorize(challenge, address);
    const QString late = fixture.authority.authorize(challenge, address);
    fixture.now = 30;
    EXPECT_TRUE(fixture.authority.exchange(intime, verifier, address));
    fixture.now = 30.5;
    EXPECT_FALSE(fixture.authority.exchange(late, verifier, address));
}

TEST(TokenAuthority, LetsAccessTokensExpireAfterTheirLifetime)
{
    Fixture fixture;
    fixture.authority.setLifetime(100);
    const auto grant = fixture.authority.refresh(SimulatedIdentity{}.refreshToken);
    ASSERT_TRUE(grant);
    EXPECT_EQ(grant->lifetimeSeconds, 100);
    fixture.now = 99;
    EXPECT_TRUE(fixture.authority.accepts(grant->accessToken));
    fixture.now = 100;
    EXPECT_FALSE(fixture.authority.accepts(grant->accessToken));
    EXPECT_TRUE(fixture.authority.accepts(SimulatedIdentity{}.accessToken));
}

} // namespace
} // namespace mirel::simulator
