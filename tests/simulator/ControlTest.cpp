#include "testing/Printing.h"

#include "simulator/SimulatorClient.h"
#include "simulator/SimulatorError.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace mirel {
namespace {

QJsonArray list(const ClientAnswer& answer)
{
    return QJsonDocument::fromJson(answer.body).array();
}

TEST(SimulatorControl, TellsEveryRequestWithItsQueryHeadersAndBody)
{
    Simulator simulator;
    simulator.listen();
    const SimulatorClient client(simulator);
    static_cast<void>(client.get("/2/users/me?user.fields=id%2Cname"));
    static_cast<void>(
        client.request("POST", "/2/oauth2/token", "a=1&b=2", "application/x-www-form-urlencoded", {}));
    const QJsonArray requests = list(client.get("/simulator/requests"));
    ASSERT_EQ(requests.size(), 2);
    const QJsonObject first = requests[0].toObject();
    EXPECT_EQ(first.value(QLatin1StringView("method")).toString(), QStringLiteral("GET"));
    EXPECT_EQ(first.value(QLatin1StringView("path")).toString(), QStringLiteral("/2/users/me"));
    EXPECT_EQ(first.value(QLatin1StringView("query")).toString(), QStringLiteral("user.fields=id%2Cname"));
    EXPECT_EQ(first.value(QLatin1StringView("status")).toInt(), 200);
    const QJsonArray item{QStringLiteral("user.fields"), QStringLiteral("id,name")};
    EXPECT_EQ(first.value(QLatin1StringView("queryItems")).toArray(), QJsonArray({item}));
    const QJsonArray authorization{QStringLiteral("authorization"),
                                   QStringLiteral("Bearer simulated-access-token")};
    EXPECT_TRUE(first.value(QLatin1StringView("headers")).toArray().contains(authorization));
    EXPECT_EQ(requests[1].toObject().value(QLatin1StringView("body")).toString(), QStringLiteral("a=1&b=2"));
    EXPECT_EQ(simulator.requests().first().queryItem(u"user.fields"), QStringLiteral("id,name"));
    EXPECT_EQ(simulator.requests().first().header(u"authorization"),
              QStringLiteral("Bearer simulated-access-token"));
}

TEST(SimulatorControl, ForgetsRequestsAndProblemsWhenTold)
{
    Simulator simulator;
    simulator.listen();
    const SimulatorClient client(simulator);
    static_cast<void>(client.get("/2/nothing"));
    EXPECT_EQ(list(client.get("/simulator/problems")),
              QJsonArray({QStringLiteral("GET /2/nothing: There is no such endpoint.")}));
    EXPECT_EQ(client.request("DELETE", "/simulator/requests").status, 200);
    EXPECT_TRUE(list(client.get("/simulator/requests")).isEmpty());
    EXPECT_TRUE(simulator.problems().isEmpty());
}

TEST(SimulatorControl, TakesAScenarioOverHTTPAndKeepsTheOldOneWhenItIsBad)
{
    Simulator simulator;
    simulator.listen();
    const SimulatorClient client(simulator);
    const QByteArray good = R"({"faults":[{"action":"status","status":500,"path":"/2/users/me"}]})";
    EXPECT_EQ(client.request("POST", "/simulator/scenario", good).status, 200);
    const ClientAnswer refusal = client.request("POST", "/simulator/scenario", R"({"faults":5})");
    EXPECT_EQ(refusal.status, 400);
    EXPECT_EQ(refusal.json().value(QLatin1StringView("detail")).toString(),
              QStringLiteral("The scenario cannot be used: “faults” must be an array."));
    EXPECT_EQ(client.get("/2/users/me").status, 500);
}

TEST(SimulatorControl, TellsWhatIsInTheAccount)
{
    Simulator simulator({.posts = 12});
    simulator.listen();
    const QJsonObject account = SimulatorClient(simulator).get("/simulator/account").json();
    EXPECT_EQ(account.value(QLatin1StringView("username")).toString(), QStringLiteral("mirel_demo"));
    EXPECT_EQ(account.value(QLatin1StringView("ids")).toArray(),
              QJsonArray::fromStringList(simulator.accountIDs()));
    EXPECT_EQ(simulator.accountIDs().size(), 12);
}

TEST(SimulatorControl, RefusesATakenPortAndAnImpossibleAccount)
{
    Simulator first;
    first.listen();
    Simulator second({.port = static_cast<quint16>(first.apiURL().port())});
    EXPECT_THROW(second.listen(), SimulatorError);
    EXPECT_THROW(Simulator({.posts = -1}), SimulatorError);
    EXPECT_THROW(Simulator({.posts = 50'001}), SimulatorError);
}

} // namespace
} // namespace mirel
