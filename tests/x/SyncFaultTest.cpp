#include "testing/Printing.h"

#include "x/SyncFaultBench.h"

#include "x/XAPIError.h"

// Every request of a full sync with folders and threads fails in turn, in every way. The run then says so,
// what came before is in the library, and the next run brings the rest.

namespace mirel {
namespace {

using testing::Surroundings;
using testing::SyncFaultBench;

constexpr qint64 resetAt = 1'900'000'000;

struct FaultKind
{
    const char* name;
    // The members of the simulator's fault, or empty for `error` of the transport.
    QByteArray fault;
    QString message;
    SyncRun::Status status = SyncRun::Status::failed;
    HTTPTransportError::Case error = HTTPTransportError::Case::timeout;
    std::optional<Instant> reset = std::nullopt;
};

void PrintTo(const FaultKind& kind, std::ostream* stream)
{
    *stream << kind.name;
}

class SyncFault : public SyncFaultBench, public ::testing::WithParamInterface<FaultKind>
{
protected:
    void TearDown() override { account().simulator.setScenario({}); }

    // Lets the request of that position in an undisturbed sync fail, and those after it to the same path.
    static void arm(Surroundings& surroundings, int position)
    {
        account().simulator.setScenario({});
        const FaultKind& kind = GetParam();
        if (kind.fault.isEmpty()) {
            surroundings.transport.failFrom(position, kind.error);
            return;
        }
        const QString& path = account().requests[position].path;
        int number = 0;
        for (int i = 0; i <= position; ++i)
            number += account().requests[i].path == path ? 1 : 0;
        account().simulator.setScenario(
            Scenario::fromJSON("{\"faults\":[{" + kind.fault + ",\"path\":\"" + path.toUtf8() +
                               "\",\"requests\":{\"from\":" + QByteArray::number(number) + "}}]}"));
    }
};

TEST_P(SyncFault, OfAnyRequestIsRecordedLosesNothingAndTheNextRunCompletes)
{
    const Failure failure{GetParam().message, GetParam().status, GetParam().reset};
    for (int position = 0; position < account().requests.size(); ++position) {
        SCOPED_TRACE(account().requests[position].path.toStdString() + ", request " +
                     std::to_string(position));
        {
            Surroundings surroundings(account().simulator, account().before.path());
            arm(surroundings, position);
            EXPECT_EQ(surroundings.sync(), failure.message);
            expectRecorded(surroundings, position, failure);
            expectKept(surroundings, position);

            account().simulator.setScenario({});
            surroundings.transport.failFrom(1'000'000, {});
            EXPECT_EQ(surroundings.sync(), QString());
            expectComplete(surroundings);
        }
        ASSERT_FALSE(HasFailure());
    }
}

QString rateLimitMessage()
{
    return XAPIError::rateLimited(Instant::fromSecondsSince1970(resetAt)).description();
}

const QString connectionFailed =
    QStringLiteral("The connection to 127.0.0.1 failed. Check the network and try again.");
const QString unreadable = QStringLiteral("X returned an unreadable response.");

INSTANTIATE_TEST_SUITE_P(
    Kinds, SyncFault,
    ::testing::Values(
        FaultKind{"RateLimitWithReset",
                  R"("action":"status","status":429,"rateLimitReset":1900000000)",
                  rateLimitMessage(),
                  SyncRun::Status::rateLimited,
                  {},
                  Instant::fromSecondsSince1970(resetAt)},
        FaultKind{"RateLimitWithoutReset", R"("action":"status","status":429,"body":"text")",
                  QStringLiteral("X rate limit reached."), SyncRun::Status::rateLimited},
        FaultKind{"Unauthorized", R"("action":"status","status":401)",
                  QStringLiteral("X returned HTTP 401: Unauthorized")},
        FaultKind{"Forbidden", R"("action":"status","status":403)",
                  QStringLiteral("X returned HTTP 403: You are not permitted to perform this action.")},
        FaultKind{"NotFound", R"("action":"status","status":404)",
                  QStringLiteral("X returned HTTP 404: Not Found Error")},
        FaultKind{"ServerError", R"("action":"status","status":500,"body":"binary")",
                  QStringLiteral("X returned HTTP 500: Request failed")},
        FaultKind{"Down", R"("action":"status","status":503)",
                  QStringLiteral("X returned HTTP 503: Service Unavailable")},
        FaultKind{"CutBeforeTheAnswer", R"("action":"cutBeforeHeaders")", connectionFailed},
        FaultKind{"CutInTheAnswer", R"("action":"cutInBody")", connectionFailed},
        FaultKind{"Undecodable", R"("action":"undecodable")", unreadable},
        FaultKind{"EmptyBody", R"("action":"status","status":200,"body":"empty")", unreadable},
        FaultKind{"NoJSON", R"("action":"status","status":200,"body":"html")", unreadable},
        FaultKind{"Timeout", {}, QStringLiteral("The request to 127.0.0.1 timed out.")},
        FaultKind{"NoTrust",
                  {},
                  QStringLiteral("A secure connection to 127.0.0.1 could not be made."),
                  SyncRun::Status::failed,
                  HTTPTransportError::Case::tls}),
    [](const auto& row) { return std::string(row.param.name); });

// Each with an account of its own, whose tokens it may spend.
class TokenFault : public ::testing::Test
{
protected:
    void SetUp() override
    {
        simulator.listen();
        surroundings.emplace(simulator, QString());
        surroundings->letTokenExpire();
    }
    void scenario(const QByteArray& fault)
    {
        simulator.setScenario(
            Scenario::fromJSON("{\"faults\":[{" + fault + ",\"path\":\"/2/oauth2/token\"}]}"));
    }
    void expectLastRunWithoutPages(const QString& message, SyncRun::Status status = SyncRun::Status::failed,
                                   std::optional<Instant> reset = {})
    {
        const SyncRun run = surroundings->lastRun();
        EXPECT_EQ(run.status, status);
        EXPECT_EQ(run.errorMessage, message);
        EXPECT_EQ(run.rateLimitResetAt, reset);
        EXPECT_EQ(run.pages, 0);
    }

    Simulator simulator{{.posts = 5}};
    std::optional<Surroundings> surroundings;
};

// X sends no token, and forgets none.
class RefusedToken : public TokenFault, public ::testing::WithParamInterface<FaultKind>
{
};

TEST_P(RefusedToken, CostsOneRun)
{
    scenario(GetParam().fault);
    EXPECT_EQ(surroundings->sync(), GetParam().message);
    expectLastRunWithoutPages(GetParam().message, GetParam().status, GetParam().reset);
    simulator.setScenario({});
    EXPECT_EQ(surroundings->sync(), QString());
    EXPECT_EQ(surroundings->lastRun().status, SyncRun::Status::completed);
    EXPECT_EQ(surroundings->lastRun().created, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, RefusedToken,
    ::testing::Values(FaultKind{"RateLimitWithReset",
                                R"("action":"status","status":429,"rateLimitReset":1900000000)",
                                rateLimitMessage(),
                                SyncRun::Status::rateLimited,
                                {},
                                Instant::fromSecondsSince1970(resetAt)},
                      FaultKind{"RateLimitWithoutReset", R"("action":"status","status":429)",
                                QStringLiteral("X rate limit reached."), SyncRun::Status::rateLimited},
                      FaultKind{"Down", R"("action":"status","status":503)",
                                QStringLiteral("X returned HTTP 503: Service Unavailable")},
                      FaultKind{"Refused", R"("action":"status","status":400)",
                                QStringLiteral("X returned HTTP 400: Invalid Request")}),
    [](const auto& row) { return std::string(row.param.name); });

// X forgets the old token with its answer.
class LostToken : public TokenFault, public ::testing::WithParamInterface<FaultKind>
{
};

TEST_P(LostToken, NeedsTheAccountToBeConnectedAnew)
{
    scenario(GetParam().fault);
    EXPECT_EQ(surroundings->sync(), GetParam().message);
    expectLastRunWithoutPages(GetParam().message);
    simulator.setScenario({});
    EXPECT_EQ(surroundings->sync(), testing::spentToken());
    expectLastRunWithoutPages(testing::spentToken());
    surroundings->connect(simulator.identity());
    EXPECT_EQ(surroundings->sync(), QString());
    EXPECT_EQ(surroundings->lastRun().created, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, LostToken,
    ::testing::Values(FaultKind{"CutBeforeTheAnswer", R"("action":"cutBeforeHeaders")", connectionFailed},
                      FaultKind{"CutInTheAnswer", R"("action":"cutInBody")", connectionFailed},
                      FaultKind{"Undecodable", R"("action":"undecodable")", unreadable}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(TokenFault, DuringASyncKeepsWhatCame)
{
    // Tokens end at once, so each request fetches another.
    simulator.setScenario(
        Scenario::fromJSON(R"({"accessTokenLifetimeSeconds":1,"faults":[{"action":"status","status":503,)"
                           R"("path":"/2/oauth2/token","requests":{"from":2}}]})"));
    EXPECT_EQ(surroundings->sync(), QStringLiteral("X returned HTTP 503: Service Unavailable"));
    EXPECT_EQ(surroundings->lastRun().pages, 1);
    EXPECT_EQ(surroundings->lastRun().created, 5);
    EXPECT_EQ(surroundings->content().size(), 5);
}

} // namespace
} // namespace mirel
