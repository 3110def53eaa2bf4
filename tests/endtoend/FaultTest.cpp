#include "EndToEndTest.h"

#include <QDateTime>
#include <QLocale>

namespace mirel::testing {
namespace {

constexpr qint64 resetAt = 1'900'000'000;

QByteArray resetMessage()
{
    const QDateTime reset = QDateTime::fromSecsSinceEpoch(resetAt, Qt::UTC);
    return "X rate limit reached until " + QLocale::c().toString(reset, QLocale::ShortFormat).toUtf8() + '.';
}

// A fault of X and how a sync that runs into it ends.
struct FaultRow
{
    const char* name;
    // The members of the fault, from the second request for bookmarks on unless it says otherwise.
    const char* fault;
    QByteArray message;
    const char* status = "failed";
    int pages = 1;
    const char* reset = "NULL";
};

void PrintTo(const FaultRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class Fault : public EndToEndTest, public ::testing::WithParamInterface<FaultRow>
{
};

TEST_P(Fault, EndsTheSyncWithItsMessageAndLosesNothing)
{
    const FaultRow& row = GetParam();
    const QByteArray fault = row.fault;
    const QByteArray requests = fault.contains("\"requests\"") ? QByteArray() : ",\"requests\":{\"from\":2}";
    simulator.setScenario("{\"faults\":[{" + fault + requests + "}]}");
    expectFailure(mirelctl("sync"), row.message);

    const QString message = QString::fromUtf8(row.message);
    const QString posts = QString::number(std::min(50 * row.pages, 120));
    EXPECT_EQ(lastRun(), QStringList({QString::fromLatin1(row.status), message, QString::number(row.pages),
                                      posts, posts, QStringLiteral("0")}));
    EXPECT_EQ(library().column("SELECT rate_limit_reset_at FROM sync_runs"),
              QStringList(QString::fromLatin1(row.reset)));
    EXPECT_EQ(library().column("SELECT kind FROM sync_runs"), QStringList(QStringLiteral("initial")));
    QList<QStringList> log{
        {QStringLiteral("started"),
         QStringLiteral("Started incremental initial bookmark sync with 50-item X pages.")}};
    for (int page = 1; page <= row.pages; ++page)
        log.append({QStringLiteral("page"), QStringLiteral("Bookmark page %1").arg(page)});
    log.append({QStringLiteral("failed"), message});
    EXPECT_EQ(lastLog(), log);
    EXPECT_EQ(library().postIDs(), newestPosts(50 * row.pages));
    EXPECT_EQ(library().damage(), QStringList());

    simulator.setScenario();
    EXPECT_EQ(mirelctl("sync").exitStatus, 0);
    EXPECT_EQ(lastRun().value(0), QStringLiteral("completed"));
    EXPECT_EQ(mirelctl("sync --full").exitStatus, 0);
    EXPECT_EQ(library().postIDs(), allPosts());
    EXPECT_EQ(library().damage(), QStringList());
}

const QByteArray connectionFailed = "The connection to 127.0.0.1 failed. Check the network and try again.";
const QByteArray unreadable = "X returned an unreadable response.";

INSTANTIATE_TEST_SUITE_P(
    OfX, Fault,
    ::testing::Values(
        FaultRow{"Unauthorized", R"("action":"status","status":401)", "X returned HTTP 401: Unauthorized"},
        FaultRow{"UnauthorizedAtOnce", R"("action":"status","status":401,"requests":1)",
                 "X returned HTTP 401: Unauthorized", "failed", 0},
        FaultRow{
            "NoCredits", R"("action":"status","status":402)",
            "X returned HTTP 402: Your enrolled account does not have any credits to fulfill this request."},
        FaultRow{"Forbidden", R"("action":"status","status":403)",
                 "X returned HTTP 403: You are not permitted to perform this action."},
        FaultRow{"RateLimitWithReset", R"("action":"status","status":429,"rateLimitReset":1900000000)",
                 resetMessage(), "rate_limited", 1, "1900000000.0"},
        FaultRow{"RateLimitOnTheThirdPage",
                 R"("action":"status","status":429,"rateLimitReset":1900000000,"requests":3)", resetMessage(),
                 "rate_limited", 2, "1900000000.0"},
        FaultRow{"RateLimitWithoutReset", R"("action":"status","status":429,"body":"text")",
                 "X rate limit reached.", "rate_limited"},
        FaultRow{"RateLimitWithUnreadableReset",
                 R"("action":"status","status":429,"body":"errors","rateLimitReset":"soon")",
                 "X rate limit reached.", "rate_limited"},
        FaultRow{"DownWithJSON", R"("action":"status","status":503)",
                 "X returned HTTP 503: Service Unavailable"},
        FaultRow{"DownWithHTML", R"("action":"status","status":502,"body":"html")",
                 "X returned HTTP 502: <!DOCTYPE html><html><head><title>Internal Server Error</title></head>"
                 "<body><h1>Something went wrong</h1></body></html>"},
        FaultRow{"DownWithBytesThatAreNoText", R"("action":"status","status":500,"body":"binary")",
                 "X returned HTTP 500: Request failed"},
        FaultRow{"CutBeforeTheAnswer", R"("action":"cutBeforeHeaders")", connectionFailed},
        FaultRow{"CutInTheAnswer", R"("action":"cutInBody")", connectionFailed},
        FaultRow{"CutInAChunkedAnswer", R"("action":"cutInBody","chunked":true)", connectionFailed},
        FaultRow{"RepeatedPageToken", R"("action":"repeatedToken")",
                 "X returned a repeated bookmark page token.", "failed", 2},
        FaultRow{"PageWithoutData", R"("action":"noData")", unreadable},
        FaultRow{"UndecodablePage", R"("action":"undecodable")", unreadable},
        FaultRow{"PageWithoutAnAuthor", R"("action":"missingAuthor")", unreadable},
        FaultRow{"BodyAboveTheLimit", R"("action":"hugeBody","requests":2)",
                 "The response from 127.0.0.1 is too large."}),
    [](const auto& row) { return std::string(row.param.name); });

// Each waits for the transport's time limit of one minute.
INSTANTIATE_TEST_SUITE_P(OfXThatTakesLong, Fault,
                         ::testing::Values(FaultRow{"Stalled", R"("action":"stall","requests":2)",
                                                    "The request to 127.0.0.1 timed out."},
                                           FaultRow{"StalledInTheAnswer",
                                                    R"("action":"stallInBody","requests":2)",
                                                    "The request to 127.0.0.1 timed out."}),
                         [](const auto& row) { return std::string(row.param.name); });

using FaultyAccount = EndToEndTest;

TEST_F(FaultyAccount, RedirectToAnotherOriginCarriesNoToken)
{
    const SimulatorProcess other(10);
    simulator.setScenario("{\"faults\":[{\"action\":\"redirect\",\"requests\":2,\"location\":\"" +
                          other.apiURL().toUtf8() + "/users/1471900000000000001/bookmarks\"}]}");
    expectFailure(mirelctl("sync"), "X returned HTTP 401: Unauthorized");
    EXPECT_EQ(lastRun().value(0), QStringLiteral("failed"));
    EXPECT_EQ(library().postIDs(), newestPosts(50));
    const QJsonArray requests = other.requests();
    ASSERT_EQ(requests.size(), 1);
    EXPECT_FALSE(QString::fromUtf8(writeJSON(requests)).contains(u"authorization", Qt::CaseInsensitive));
    simulator.setScenario();
    EXPECT_EQ(mirelctl("sync --full").exitStatus, 0);
    EXPECT_EQ(library().postIDs(), allPosts());
}

TEST_F(FaultyAccount, AnEmptyPageEndsAQuickSyncButNoFullOne)
{
    simulator.setScenario(R"({"faults":[{"action":"emptyPage","requests":2}]})");
    expectSuccess(mirelctl("sync"), "Quick sync checked 50 recent bookmarks across 2 page(s), 50 new.\n");
    EXPECT_EQ(library().postIDs(), newestPosts(50));
    simulator.setScenario(R"({"faults":[{"action":"emptyPage","requests":2}]})");
    expectSuccess(mirelctl("sync --full"),
                  "Full sync checked every page X made available: 120 bookmarks across 4 page(s), 70 new.\n");
    EXPECT_EQ(library().postIDs(), allPosts());
}

TEST_F(FaultyAccount, PostsAddedDuringASyncComeWithTheNext)
{
    const QSet<QString> before = allPosts();
    simulator.setScenario(R"({"faults":[{"action":"addPosts","count":10,"requests":2}]})");
    expectSuccess(mirelctl("sync"), "Quick sync checked 120 recent bookmarks across 3 page(s), 120 new.\n");
    EXPECT_EQ(library().postIDs(), before);
    EXPECT_EQ(simulator.accountIDs().size(), 130);
    expectSuccess(mirelctl("sync"), "Quick sync checked 100 recent bookmarks across 2 page(s), 10 new.\n");
    EXPECT_EQ(library().postIDs(), allPosts());
}

TEST_F(FaultyAccount, PostsRemovedDuringASyncLoseNoOtherPost)
{
    const QSet<QString> before = allPosts();
    simulator.setScenario(R"({"faults":[{"action":"removePosts","count":5,"requests":2}]})");
    expectSuccess(mirelctl("sync"), "Quick sync checked 120 recent bookmarks across 3 page(s), 120 new.\n");
    EXPECT_EQ(library().postIDs(), before);
    simulator.setScenario();
    EXPECT_EQ(mirelctl("sync --full").exitStatus, 0);
    EXPECT_EQ(library().postIDs(), before);
}

TEST_F(FaultyAccount, PostsRemovedBeforeASyncReachesThemAreNotMissed)
{
    simulator.setScenario(R"({"faults":[{"action":"removePosts","count":30,"end":"oldest","requests":2}]})");
    expectSuccess(mirelctl("sync"), "Quick sync checked 90 recent bookmarks across 2 page(s), 90 new.\n");
    EXPECT_EQ(library().postIDs(), allPosts());
}

} // namespace
} // namespace mirel::testing
