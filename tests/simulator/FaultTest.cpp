#include "testing/Printing.h"

#include "simulator/SimulatorClient.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QUrl>

#include <gtest/gtest.h>

namespace mirel {
namespace {

class SimulatedFault : public ::testing::Test
{
protected:
    void SetUp() override { simulator.listen(); }

    // A scenario with one fault, given by its members.
    void spoil(const QByteArray& members)
    {
        simulator.setScenario(Scenario::fromJSON("{\"faults\":[{" + members + "}]}"));
    }

    Simulator simulator{
        {.posts = 120, .seed = 9, .clock = [] { return Instant::fromSecondsSince1970(1000.5); }}};
    SimulatorClient client() const { return SimulatorClient(simulator); }
};

struct StatusRow
{
    const char* name;
    QByteArray members;
    int status;
    QByteArray body;
    QByteArray reset;
};

TEST_F(SimulatedFault, AnswersWithTheStatusAndBodyOfTheScenario)
{
    const StatusRow rows[] = {
        {"unauthorized",
         R"("status":401)",
         401,
         R"({"title":"Unauthorized","type":"about:blank","status":401,"detail":"Unauthorized"})",
         {}},
        {"no credits", R"("status":402)", 402, "\"title\":\"CreditsDepleted\"", {}},
        {"forbidden", R"("status":403)", 403, "\"reason\":\"client-not-enrolled\"", {}},
        {"limit with reset", R"("status":429,"rateLimitReset":1787248800)", 429, "Too Many Requests",
         "1787248800"},
        {"limit with a broken reset", R"("status":429,"rateLimitReset":"soon")", 429, "Too Many", "soon"},
        {"limit with a reset from now", R"("status":429,"rateLimitResetInSeconds":60)", 429, "Too Many",
         "1060"},
        {"limit without reset", R"("status":429,"body":"text")", 429, "Rate limit exceeded", {}},
        {"limit in the old form", R"("status":429,"body":"errors")", 429, "\"code\":88", {}},
        {"down with JSON", R"("status":503)", 503, "\"title\":\"Service Unavailable\"", {}},
        {"down with HTML", R"("status":502,"body":"html")", 502, "<!DOCTYPE html>", {}},
        {"down with bytes", R"("status":500,"body":"binary")", 500, QByteArray("\xff\xfe\x80", 3), {}},
        {"down with nothing", R"("status":500,"body":"empty")", 500, "", {}},
        {"own text", R"("status":418,"bodyText":"teapot")", 418, "teapot", {}},
    };
    for (const StatusRow& row : rows) {
        spoil("\"action\":\"status\"," + row.members);
        const ClientAnswer answer = client().page();
        EXPECT_EQ(answer.status, row.status) << row.name;
        EXPECT_TRUE(answer.body.contains(row.body)) << row.name << answer.body.toStdString();
        EXPECT_EQ(answer.header("x-rate-limit-reset"), row.reset) << row.name;
    }
    EXPECT_EQ(simulator.problems(), QStringList());
}

TEST_F(SimulatedFault, CutsTheConnectionBeforeTheHeaders)
{
    spoil(R"("action":"cutBeforeHeaders")");
    const ClientAnswer answer = client().page();
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.body, "");
    EXPECT_EQ(simulator.requests().size(), 1);
}

TEST_F(SimulatedFault, CutsTheConnectionInTheMiddleOfABody)
{
    const ClientAnswer whole = client().page();
    spoil(R"("action":"cutInBody")");
    const ClientAnswer half = client().page();
    EXPECT_EQ(half.status, 200);
    EXPECT_TRUE(half.isCut);
    EXPECT_EQ(half.body, whole.body.left(whole.body.size() / 2));
    spoil(R"("action":"cutInBody","bytes":17)");
    EXPECT_EQ(client().page().body, whole.body.left(17));
}

TEST_F(SimulatedFault, StallsWithoutAnAnswer)
{
    spoil(R"("action":"stall","requests":1)");
    const auto silent = client().send(SimulatorClient::bookmarks());
    // Requests are handled one after the other, so the first is done with when the second was answered.
    while (simulator.requests().isEmpty())
        QThread::msleep(1);
    EXPECT_EQ(client().page().status, 200);
    EXPECT_FALSE(silent->waitForReadyRead(0));
    EXPECT_EQ(silent->bytesAvailable(), 0);
    EXPECT_EQ(silent->state(), QAbstractSocket::ConnectedState);
}

TEST_F(SimulatedFault, StallsInTheMiddleOfABody)
{
    spoil(R"("action":"stallInBody","bytes":100,"requests":1)");
    const auto silent = client().send(SimulatorClient::bookmarks());
    QByteArray received;
    while (!received.contains("\r\n\r\n") || received.size() - received.indexOf("\r\n\r\n") < 104) {
        ASSERT_TRUE(silent->waitForReadyRead(20'000));
        received += silent->readAll();
    }
    EXPECT_EQ(received.size() - received.indexOf("\r\n\r\n") - 4, 100);
    EXPECT_EQ(client().page().status, 200);
    EXPECT_FALSE(silent->waitForReadyRead(0));
    EXPECT_EQ(silent->state(), QAbstractSocket::ConnectedState);
}

TEST_F(SimulatedFault, RepeatsThePageToken)
{
    const QString token = nextToken(client().page());
    spoil(R"("action":"repeatedToken","requests":{"from":2})");
    EXPECT_EQ(nextToken(client().page()), token);
    const ClientAnswer second = client().page(50, token);
    EXPECT_EQ(nextToken(second), token);
    EXPECT_EQ(dataIDs(client().page(50, token)), dataIDs(second));
}

TEST_F(SimulatedFault, GivesAnEmptyPageWhoseTokenLeadsToThePostsThatWereDue)
{
    const QString token = nextToken(client().page());
    const QStringList due = dataIDs(client().page(50, token));
    spoil(R"("action":"emptyPage","requests":1)");
    const ClientAnswer empty = client().page(50, token);
    EXPECT_EQ(empty.json().value(QLatin1StringView("data")), QJsonValue(QJsonArray()));
    EXPECT_NE(nextToken(empty), token);
    EXPECT_EQ(dataIDs(client().page(50, nextToken(empty))), due);
}

TEST_F(SimulatedFault, LeavesTheDataOut)
{
    spoil(R"("action":"noData")");
    EXPECT_EQ(client().page().body, "{\"meta\":{\"result_count\":0}}");
}

TEST_F(SimulatedFault, SendsAPageThatCannotBeDecoded)
{
    spoil(R"("action":"undecodable")");
    const ClientAnswer answer = client().page();
    EXPECT_EQ(answer.status, 200);
    EXPECT_FALSE(answer.isCut);
    QJsonParseError error;
    static_cast<void>(QJsonDocument::fromJson(answer.body, &error));
    EXPECT_NE(error.error, QJsonParseError::NoError);
}

TEST_F(SimulatedFault, LeavesOneAuthorOutOfTheIncludes)
{
    spoil(R"("action":"missingAuthor")");
    const QJsonObject page = client().page().json();
    QSet<QString> users;
    for (const QJsonValue& user :
         page.value(QLatin1StringView("includes")).toObject().value(QLatin1StringView("users")).toArray())
        users.insert(user.toObject().value(QLatin1StringView("id")).toString());
    const QJsonObject first = page.value(QLatin1StringView("data")).toArray().first().toObject();
    EXPECT_FALSE(users.contains(first.value(QLatin1StringView("author_id")).toString()));
}

TEST_F(SimulatedFault, RedirectsToAnotherOrigin)
{
    spoil(R"("action":"redirect","location":"http://127.0.0.1:9/elsewhere")");
    const ClientAnswer answer = client().page();
    EXPECT_EQ(answer.status, 302);
    EXPECT_EQ(answer.header("location"), "http://127.0.0.1:9/elsewhere");
}

TEST_F(SimulatedFault, StreamsABodyLargerThanAnyoneShouldRead)
{
    spoil(R"("action":"hugeBody")");
    const ClientAnswer answer = client().page();
    EXPECT_EQ(answer.body.size(), 64 * 1024 * 1024 + 1);
    EXPECT_EQ(answer.header("content-length"), QByteArray::number(64 * 1024 * 1024 + 1));
}

TEST_F(SimulatedFault, StreamsABodyWithoutSayingItsLength)
{
    spoil(R"("action":"hugeBody","bytes":300000,"chunked":true)");
    const auto socket = client().send(SimulatorClient::bookmarks());
    QByteArray received;
    while (!received.endsWith("\r\n0\r\n\r\n")) {
        ASSERT_TRUE(socket->waitForReadyRead(20'000));
        received += socket->readAll();
    }
    EXPECT_TRUE(received.contains("Transfer-Encoding: chunked"));
    EXPECT_FALSE(received.contains("Content-Length"));
    EXPECT_GE(received.size(), 300'000);
}

TEST_F(SimulatedFault, ChangesTheAccountWhileItIsRead)
{
    const QStringList before = simulator.accountIDs();
    spoil(R"("action":"addPosts","count":3,"requests":2)");
    const ClientAnswer first = client().page();
    EXPECT_EQ(dataIDs(first), before.mid(0, 50));
    EXPECT_EQ(dataIDs(client().page(50, nextToken(first))), before.mid(50, 50));
    EXPECT_EQ(simulator.accountIDs().mid(3), before);
    EXPECT_EQ(simulator.accountIDs().size(), 123);
    spoil(R"("action":"removePosts","count":60,"end":"oldest","requests":1)");
    EXPECT_EQ(dataIDs(client().page(50)).size(), 50);
    EXPECT_EQ(simulator.accountIDs().size(), 63);
    spoil(R"("action":"removePosts","count":3,"end":"newest","requests":1)");
    EXPECT_EQ(dataIDs(client().page(50)), before.mid(0, 50));
}

TEST_F(SimulatedFault, DelaysAnAnswerAndStillGivesIt)
{
    const ClientAnswer whole = client().page();
    simulator.setScenario(Scenario::fromJSON(
        R"({"delayMilliseconds":5,"faults":[{"delayMilliseconds":5,"requests":"every"}]})"));
    EXPECT_EQ(client().page().body, whole.body);
}

TEST_F(SimulatedFault, MeetsOnlyTheRequestsThatItsPathMethodAndNumbersName)
{
    spoil(R"("action":"status","status":500,"path":"/2/users/me","requests":[2,4])");
    QList<int> statuses;
    for (int i = 0; i < 5; ++i) {
        statuses.append(client().get("/2/users/me").status);
        EXPECT_EQ(client().page().status, 200);
    }
    EXPECT_EQ(statuses, QList<int>({200, 500, 200, 500, 200}));
    spoil(R"("action":"status","status":500,"path":"/2/*/me","method":"DELETE")");
    EXPECT_EQ(client().get("/2/users/me").status, 200);
}

TEST_F(SimulatedFault, RefusesTokensThatItExpired)
{
    spoil(R"("action":"expireTokens","requests":2)");
    EXPECT_EQ(client().page().status, 200);
    EXPECT_EQ(client().page().status, 401);
}

} // namespace
} // namespace mirel
