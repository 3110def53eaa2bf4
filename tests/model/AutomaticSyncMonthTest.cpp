#include "testing/Printing.h"

#include "model/ModelTestBench.h"
#include "testing/RandomChoices.h"

#include "model/SyncChecks.h"
#include "x/XAPIError.h"

#include <gmock/gmock.h>

namespace mirel {
namespace {

using testing::makePost;
using testing::RandomChoices;

struct Month
{
    const char* name;
    unsigned int seed;
    int intervalHours;
    // One request in so many fails; 0: none does.
    int requestsPerFault;
    // Faults leave no gap when they come before the first page of a walk has arrived.
    bool failsOnFirstPagesOnly;
    // A sync also brings the threads of the new posts, each by a request that may fail.
    bool fetchesThreads = false;
};

void PrintTo(const Month& month, std::ostream* out)
{
    *out << month.name;
}

// The bookmarks on X, which outlive the program. Only one thread works at a time.
struct Account
{
    // Numbered from 1.
    int posts = 60;
    QSet<QString> delivered;
    // The posts whose threads were delivered, and how many requests for one failed.
    QSet<QString> deliveredThreads;
    int threadFaults = 0;
    // It grows no more, and no request fails.
    bool isQuiet = false;
};

// An account that grows while it is read, over a connection that fails.
class GrowingAccount : public testing::FakeX
{
public:
    GrowingAccount(const Month& month, unsigned int seed, const testing::ManualClock& clock, Account& account)
        : m_month(month)
        , m_clock(clock)
        , m_random(seed)
        , m_account(account)
    {
    }

    // Called while a walk is on its way.
    std::function<void()> onRequest;

    QCoro::Task<XBookmarkPage> bookmarks(std::optional<QString> token, qint64 maxResults) override
    {
        calls.push_back({token, maxResults});
        passTime();
        if (!(m_month.failsOnFirstPagesOnly && token) && fails())
            throwFault();
        EXPECT_EQ(maxResults, 50);
        co_return page(token ? token->toInt() : 0);
    }

    QCoro::Task<QList<ThreadPost>> conversation(QString conversationID, QString) override
    {
        passTime();
        if (fails()) {
            ++m_account.threadFaults;
            throwFault();
        }
        const int number = conversationID.mid(4).toInt();
        EXPECT_EQ(makePost(number).conversationID, conversationID);
        m_account.deliveredThreads.insert(makePost(number).tweetID);
        co_return testing::makeThread(2);
    }

private:
    // A request takes its time, now and then longer than the pause between two checks.
    void passTime()
    {
        onRequest();
        m_clock.advance(m_random.chance(20) ? 2'000 : m_random.below(30));
    }

    bool fails()
    {
        return !m_account.isQuiet && m_month.requestsPerFault > 0 &&
               m_random.chance(m_month.requestsPerFault);
    }

    [[noreturn]] void throwFault()
    {
        switch (m_random.below(6)) {
        case 0:
            throw XAPIError::http(503, QStringLiteral("Service Unavailable"));
        case 1:
            throw XAPIError::rateLimited(m_clock.now().addingSeconds(900));
        case 2:
            throw XAPIError::rateLimited({});
        case 3:
            throw XAPIError::invalidResponse();
        case 4:
            throw XAPIError::reconnectRequired();
        default:
            throw std::runtime_error("the connection was cut");
        }
    }

    // Newest first; new posts push the others down. The token names how many came before.
    XBookmarkPage page(int offset)
    {
        // X may send fewer than it was asked for.
        constexpr int size = 8;
        if (!m_account.isQuiet && m_random.chance(8))
            m_account.posts += 1 + m_random.below(3);
        XBookmarkPage page;
        const int last = std::max(1, m_account.posts - offset - size + 1);
        for (int number = m_account.posts - offset; number >= last; --number) {
            page.items.append(makePost(number));
            m_account.delivered.insert(page.items.last().tweetID);
        }
        page.resultCount = page.items.size();
        if (last > 1)
            page.nextToken = QString::number(offset + size);
        return page;
    }

    Month m_month;
    testing::ManualClock m_clock;
    RandomChoices m_random;
    Account& m_account;
};

// Thirty days of automatic syncs, a check every quarter of an hour, on a clock that only this test moves.
class AutomaticSyncMonth : public testing::ModelTestBench, public ::testing::WithParamInterface<Month>
{
protected:
    // Takes no time but that of the test's clock.
    class SimulatedPause : public Pause
    {
    public:
        explicit SimulatedPause(AutomaticSyncMonth& month)
            : m_month(month)
        {
        }
        QCoro::Task<> lastFor(std::chrono::milliseconds time) override
        {
            EXPECT_EQ(time, SyncChecks::period);
            m_month.passTime();
            co_return;
        }
        void interrupt() override {}

    private:
        AutomaticSyncMonth& m_month;
    };

    static constexpr int checksOfAMonth = 30 * 24 * 4;

    std::unique_ptr<testing::FakeX> makeX() override
    {
        const auto seed = static_cast<unsigned int>(m_random.below(1'000'000));
        auto account = std::make_unique<GrowingAccount>(GetParam(), seed, library.clock, m_account);
        // Somebody else asks too, from the main thread, while a sync is on its way.
        account->onRequest = [this] {
            QMetaObject::invokeMethod(
                model.get(),
                [this] {
                    EXPECT_TRUE(model->isSyncing());
                    model->syncIfDue();
                },
                Qt::QueuedConnection);
        };
        return account;
    }

    void startProgram()
    {
        makeModel();
        blockOn(model->start());
        // A sync that is due has begun by the time the connection is known.
        runUntil([this] { return model->xConfigured() && !model->isSyncing(); });
    }

    // One life of the program: it starts, checks for a while, and is closed.
    void live(int checks)
    {
        m_checksLeft = checks;
        expectCheck();
        startProgram();
        m_loop.emplace(*model, m_pause);
        blockOn(m_loop->run());
        blockOn(model->shutDown());
        verifyCheck();
        m_isExpecting = false;
        model.reset();
    }

    // Verifies what the last check did, and foretells the next.
    void passTime()
    {
        verifyCheck();
        library.clock.advance(900);
        if (!m_account.isQuiet && m_random.chance(24))
            m_account.posts += m_random.below(8);
        if (--m_checksLeft <= 0)
            m_loop->end();
        expectCheck();
    }

    // By the tables alone, not by what the model holds.
    void expectCheck()
    {
        m_isExpecting = true;
        m_runsBefore = countOf("SELECT COUNT(*) AS n FROM sync_runs");
        const auto last =
            tables().firstRow("SELECT completed_at FROM sync_runs WHERE status IN ('completed', "
                              "'rate_limited', 'failed') ORDER BY id DESC LIMIT 1");
        m_expectsRun = !last || library.clock.now().secondsSince1970() - *last->number("completed_at") >=
                                    GetParam().intervalHours * 3600;
    }

    void verifyCheck()
    {
        if (!m_isExpecting)
            return;
        EXPECT_EQ(countOf("SELECT COUNT(*) AS n FROM sync_runs") - m_runsBefore, m_expectsRun ? 1 : 0)
            << "at " << library.clock.now().secondsSince1970();
        EXPECT_EQ(countOf("SELECT COUNT(*) AS n FROM sync_runs WHERE status IN ('queued', 'running')"),
                  m_crashes);
        if (m_expectsRun) {
            EXPECT_EQ(storedPosts(), m_account.delivered) << "nothing that arrived is lost";
            EXPECT_EQ(postsWithThreads(), m_account.deliveredThreads);
        }
        EXPECT_FALSE(model && model->isSyncing());
    }

    // What a process that was killed during a sync leaves behind.
    void crash()
    {
        const auto opened = library.open();
        const SyncRun run = opened->createSyncRun(SyncRun::Kind::automatic);
        opened->updateSyncRun(run.id, SyncRun::Status::running, 1, 50, 0, 50);
        ++m_crashes;
    }

    SQLiteConnection& tables()
    {
        if (!m_tables)
            m_tables = library.connect();
        return *m_tables;
    }
    qint64 countOf(const char* query) { return tables().firstRow(query)->integer("n").value(); }
    QSet<QString> storedPosts() { return idsOf("SELECT tweet_id FROM bookmarks"); }
    QSet<QString> postsWithThreads()
    {
        return idsOf("SELECT tweet_id FROM bookmarks WHERE json_array_length(thread_json) = 2");
    }
    QSet<QString> idsOf(const char* query)
    {
        QSet<QString> ids;
        for (const SQLiteRow& row : tables().rows(query))
            ids.insert(row.text("tweet_id").value());
        return ids;
    }
    QSet<QString> accountPosts() const
    {
        QSet<QString> ids;
        for (int number = 1; number <= m_account.posts; ++number)
            ids.insert(makePost(number).tweetID);
        return ids;
    }

    // Runs follow one another: none begins before the one before it has ended.
    void expectNoOverlap()
    {
        double lastEnd = 0;
        for (const SQLiteRow& row : tables().rows(
                 "SELECT kind, started_at, completed_at FROM sync_runs WHERE completed_at IS NOT NULL "
                 "ORDER BY id")) {
            EXPECT_GE(*row.number("started_at"), lastEnd);
            lastEnd = *row.number("completed_at");
        }
    }

    RandomChoices m_random{GetParam().seed};
    Account m_account;
    SimulatedPause m_pause{*this};
    std::unique_ptr<SQLiteConnection> m_tables;
    std::optional<SyncChecks> m_loop;
    int m_checksLeft = 0;
    int m_crashes = 0;
    bool m_isExpecting = false;
    bool m_expectsRun = false;
    qint64 m_runsBefore = 0;
};

TEST_P(AutomaticSyncMonth, KeepsToTheRuleAndBringsWhatTheAccountHolds)
{
    syncsAutomatically = true;
    library.open();
    prefer([](AppPreferences& preferences) {
        preferences.automaticSyncIntervalHours = GetParam().intervalHours;
        if (GetParam().fetchesThreads)
            preferences.threadEnrichment = AppPreferences::ThreadEnrichment::automatic;
    });
    for (int left = checksOfAMonth; left > 0;) {
        const int checks = std::min(left, 200 + m_random.below(800));
        live(checks);
        left -= checks;
        if (left > 0 && m_random.chance(2))
            crash();
    }
    // Long enough for one more sync.
    m_account.isQuiet = true;
    live(GetParam().intervalHours * 4 + 1);
    if (GetParam().requestsPerFault > 0 && !GetParam().failsOnFirstPagesOnly) {
        // What a walk did not get to, only a full sync brings.
        startProgram();
        blockOn(model->syncNow({}, true));
        EXPECT_EQ(model->lastError(), std::nullopt);
    }
    EXPECT_EQ(storedPosts(), accountPosts());
    EXPECT_EQ(postsWithThreads(), GetParam().fetchesThreads ? accountPosts() : QSet<QString>());
    EXPECT_EQ(m_account.threadFaults > 0, GetParam().fetchesThreads);
    expectNoOverlap();
    const qint64 mostRuns = 31 * 24 / GetParam().intervalHours + 1;
    const qint64 runs =
        countOf("SELECT COUNT(*) AS n FROM sync_runs WHERE kind = 'automatic' AND completed_at "
                "IS NOT NULL");
    EXPECT_GT(runs, mostRuns / 2);
    EXPECT_LE(runs, mostRuns);
    const qint64 faults =
        countOf("SELECT COUNT(*) AS n FROM sync_runs WHERE status IN ('failed', 'rate_limited')");
    EXPECT_EQ(faults > 0, GetParam().requestsPerFault > 0);
}

INSTANTIATE_TEST_SUITE_P(, AutomaticSyncMonth,
                         ::testing::Values(Month{"WithoutFaults", 1, 6, 0, false},
                                           Month{"DailyWithFaults", 2, 24, 4, false},
                                           Month{"EverySixHoursWithFaults", 3, 6, 5, false},
                                           Month{"TwiceADayWithFaultsOnFirstPages", 4, 12, 3, true},
                                           Month{"TwiceADayWithThreadsAndFaults", 5, 12, 12, false, true}),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
} // namespace mirel
