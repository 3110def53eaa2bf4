#include "testing/Printing.h"

#include "simulator/SimulatorClient.h"

#include <QCryptographicHash>
#include <QUrlQuery>

#include <gtest/gtest.h>

namespace mirel {
namespace {

const QByteArray verifier = "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk-0123456789abcdefghij";
const QByteArray form = "application/x-www-form-urlencoded";
const QByteArray refusal =
    R"({"error":"invalid_request","error_description":"Value passed for the token was invalid."})";

QByteArray challenge()
{
    return QCryptographicHash::hash(verifier, QCryptographicHash::Sha256)
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

QByteArray authorizeTarget()
{
    return "/i/oauth2/authorize?response_type=code&client_id=simulated-client&redirect_uri=mirel://oauth/x"
           "&scope=tweet.read%20users.read%20bookmark.read%20bookmark.write%20offline.access&state=s%26t"
           "&code_challenge=" +
           challenge() + "&code_challenge_method=S256";
}

QByteArray codeForm(const QByteArray& code, const QByteArray& usedVerifier = verifier,
                    const QByteArray& redirectURI = "mirel://oauth/x")
{
    return "client_id=simulated-client&code=" + code + "&code_verifier=" + usedVerifier +
           "&grant_type=authorization_code&redirect_uri=" + redirectURI;
}

QByteArray refreshForm(const QString& token)
{
    return "client_id=simulated-client&grant_type=refresh_token&refresh_token=" + token.toUtf8();
}

class SimulatedOAuth : public ::testing::Test
{
protected:
    void SetUp() override { simulator.listen(); }

    ClientAnswer token(const QByteArray& body) const
    {
        return SimulatorClient(simulator).request("POST", "/2/oauth2/token", body, form, {});
    }

    QByteArray newCode() const
    {
        const QUrl callback(
            QString::fromLatin1(SimulatorClient(simulator).get(authorizeTarget()).header("location")));
        return QUrlQuery(callback).queryItemValue(QStringLiteral("code")).toUtf8();
    }

    QString member(const ClientAnswer& answer, const char* name) const
    {
        return answer.json().value(QLatin1StringView(name)).toString();
    }

    int statusWith(const QString& accessToken) const
    {
        return SimulatorClient(simulator).request("GET", "/2/users/me", {}, {}, accessToken.toUtf8()).status;
    }

    Simulator simulator;
};

TEST_F(SimulatedOAuth, RedirectsToTheCallbackWithStateAndCode)
{
    const ClientAnswer answer = SimulatorClient(simulator).get(authorizeTarget());
    EXPECT_EQ(answer.status, 302);
    const QUrl callback(QString::fromLatin1(answer.header("location")));
    EXPECT_EQ(callback.adjusted(QUrl::RemoveQuery), QUrl(QStringLiteral("mirel://oauth/x")));
    EXPECT_EQ(QUrlQuery(callback).queryItemValue(QStringLiteral("state"), QUrl::FullyDecoded),
              QStringLiteral("s&t"));
    EXPECT_FALSE(QUrlQuery(callback).queryItemValue(QStringLiteral("code")).isEmpty());
}

TEST_F(SimulatedOAuth, RefusesAnAuthorizationThatLacksSomething)
{
    const std::pair<QByteArray, QByteArray> changes[] = {
        {"response_type=code", "response_type=token"},
        {"simulated-client", "stranger"},
        {"mirel://oauth/x", "mirel://oauth/x/"},
        {"offline.access", "offline"},
        {"state=s%26t", "state="},
        {"=S256", "=plain"},
        {challenge(), "short"},
    };
    for (const auto& [before, after] : changes) {
        const ClientAnswer answer = SimulatorClient(simulator).get(authorizeTarget().replace(before, after));
        EXPECT_EQ(answer.status, 400) << after.toStdString();
    }
    EXPECT_EQ(simulator.problems().size(), 7);
}

TEST_F(SimulatedOAuth, DeniesWhenTheScenarioSaysSo)
{
    simulator.setScenario(
        Scenario::fromJSON(R"({"faults":[{"action":"denyAuthorization","path":"/i/oauth2/authorize"}]})"));
    EXPECT_EQ(SimulatorClient(simulator).get(authorizeTarget()).header("location"),
              "mirel://oauth/x?error=access_denied&state=s%26t");
}

TEST_F(SimulatedOAuth, ExchangesACodeOnceForTokensThatWork)
{
    const QByteArray code = newCode();
    const ClientAnswer answer = token(codeForm(code));
    ASSERT_EQ(answer.status, 200);
    EXPECT_EQ(answer.json().value(QLatin1StringView("expires_in")).toInt(), 7200);
    EXPECT_EQ(statusWith(member(answer, "access_token")), 200);
    const ClientAnswer again = token(codeForm(code));
    EXPECT_EQ(again.status, 400);
    EXPECT_EQ(again.body, refusal);
}

TEST_F(SimulatedOAuth, RefusesAWrongVerifierOrAddressAndSpendsTheCode)
{
    for (const QByteArray& spoiled :
         {codeForm(newCode(), "another"), codeForm(newCode(), verifier, "mirel://else")})
        EXPECT_EQ(token(spoiled).body, refusal);
    const QByteArray code = newCode();
    EXPECT_EQ(token(codeForm(code, "another")).status, 400);
    EXPECT_EQ(token(codeForm(code)).status, 400);
}

TEST_F(SimulatedOAuth, RotatesTheRefreshTokenAndKillsTheOldOne)
{
    const QString first = simulator.identity().refreshToken;
    const ClientAnswer refreshed = token(refreshForm(first));
    ASSERT_EQ(refreshed.status, 200);
    EXPECT_NE(member(refreshed, "refresh_token"), first);
    EXPECT_EQ(statusWith(member(refreshed, "access_token")), 200);
    const ClientAnswer spent = token(refreshForm(first));
    EXPECT_EQ(spent.status, 400);
    EXPECT_EQ(spent.body, refusal);
    EXPECT_EQ(token(refreshForm(member(refreshed, "refresh_token"))).status, 200);
}

TEST_F(SimulatedOAuth, RefusesAccessTokensThatExpired)
{
    EXPECT_EQ(statusWith(simulator.identity().accessToken), 200);
    simulator.expireAccessTokens();
    EXPECT_EQ(statusWith(simulator.identity().accessToken), 401);
    EXPECT_EQ(token(refreshForm(simulator.identity().refreshToken)).status, 200);
}

TEST_F(SimulatedOAuth, RefusesAnUnknownClientAndABodyThatIsNoForm)
{
    EXPECT_EQ(token(refreshForm(QStringLiteral("x")).replace("simulated-client", "stranger")).status, 400);
    const ClientAnswer unformed = SimulatorClient(simulator).request(
        "POST", "/2/oauth2/token", refreshForm(simulator.identity().refreshToken), "text/plain", {});
    EXPECT_EQ(unformed.status, 400);
}

} // namespace
} // namespace mirel
