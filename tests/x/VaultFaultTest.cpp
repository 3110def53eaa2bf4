#include "testing/Printing.h"

#include "x/SyncFaultBench.h"

// Every call to the vault during a full sync with folders and threads fails in turn.

namespace mirel {
namespace {

using testing::knownPosts;
using testing::newPosts;
using testing::Surroundings;
using testing::SyncFaultBench;
using testing::Undisturbed;

struct TokenLifetime
{
    const char* name;
    int seconds;
    bool isRefreshedBeforeEachRequest;
};

void PrintTo(const TokenLifetime& lifetime, std::ostream* stream)
{
    *stream << lifetime.name;
}

class VaultFault : public SyncFaultBench, public ::testing::WithParamInterface<TokenLifetime>
{
protected:
    enum class Purpose {
        // Reads the tokens for a request.
        load,
        // Looks whether the tokens were removed while X made new ones.
        check,
        // Stores the new tokens, after which X knows no others.
        save
    };

    struct Call
    {
        Purpose purpose;
        // Of the request that the call is for.
        int position;
    };

    // The calls of a sync that begins with a token that has expired.
    static QList<Call> expectedCalls()
    {
        QList<Call> calls;
        for (int position = 0; position < account().requests.size(); ++position) {
            // Uses the token of the page that it completes.
            if (account().requests[position].path.endsWith(u"/2/tweets"))
                continue;
            calls.append({Purpose::load, position});
            if (position == 0 || GetParam().isRefreshedBeforeEachRequest)
                calls.append({{Purpose::check, position}, {Purpose::save, position}});
        }
        return calls;
    }

    // With a simulator of its own, whose tokens it may spend.
    class Attempt
    {
    public:
        // The vault fails at the call of that number, and at no other.
        explicit Attempt(int failing)
        {
            simulator.listen();
            simulator.setScenario(Scenario::fromJSON(R"({"accessTokenLifetimeSeconds":)" +
                                                     QByteArray::number(GetParam().seconds) + '}'));
            simulator.addPosts(newPosts);
            surroundings.emplace(simulator, account().before.path());
            surroundings->letTokenExpire();
            surroundings->vault.calls = 0;
            surroundings->vault.failing = failing;
        }

        Simulator simulator{Undisturbed::options()};
        std::optional<Surroundings> surroundings;
    };

    static void expectNextRunCompletes(Surroundings& surroundings)
    {
        EXPECT_EQ(surroundings.sync(), QString());
        expectComplete(surroundings);
    }

    static void expectFailed(Surroundings& surroundings, int position)
    {
        EXPECT_EQ(surroundings.sync(), locked);
        expectRecorded(surroundings, position, {locked});
        expectKept(surroundings, position);
    }

    // The next run cannot even begin, and says so; it takes nothing from what was stored.
    static void expectConnectionLost(Surroundings& surroundings, int position)
    {
        EXPECT_EQ(surroundings.sync(), testing::spentToken());
        expectRecorded(surroundings, 0, {testing::spentToken()});
        expectKept(surroundings, position);
    }

    static inline const QString locked = VaultLocked().description();
};

TEST_P(VaultFault, AtAnyCallIsRecordedLosesNothingAndTheNextRunCompletesUnlessXForgotTheToken)
{
    const QList<Call> calls = expectedCalls();
    for (int number = 0; number < calls.size(); ++number) {
        const auto [purpose, position] = calls[number];
        SCOPED_TRACE("call " + std::to_string(number) + ", before request " + std::to_string(position));
        Attempt attempt(number);
        Surroundings& surroundings = *attempt.surroundings;
        switch (purpose) {
        case Purpose::load:
            expectFailed(surroundings, position);
            EXPECT_EQ(surroundings.vault.calls, number + 1) << "no further call";
            break;
        case Purpose::check:
            // The new tokens are saved all the same.
            EXPECT_EQ(surroundings.sync(), QString());
            expectComplete(surroundings);
            EXPECT_EQ(surroundings.vault.calls, calls.size());
            break;
        case Purpose::save:
            expectFailed(surroundings, position);
            EXPECT_EQ(surroundings.vault.calls, number + 1) << "no further call";
            expectConnectionLost(surroundings, position);
            surroundings.connect(attempt.simulator.identity());
            break;
        }
        expectNextRunCompletes(surroundings);
        ASSERT_FALSE(HasFailure());
    }
}

TEST_P(VaultFault, ComesFromNoOtherCall)
{
    const auto calls = static_cast<int>(expectedCalls().size());
    Attempt attempt(calls);
    EXPECT_EQ(attempt.surroundings->sync(), QString());
    expectComplete(*attempt.surroundings);
    EXPECT_EQ(attempt.surroundings->vault.calls, calls);
}

INSTANTIATE_TEST_SUITE_P(Tokens, VaultFault,
                         ::testing::Values(TokenLifetime{"ThatLast", 7200, false},
                                           // Never used after the 30 seconds before its end have begun.
                                           TokenLifetime{"ThatAreDueAtOnce", 30, true}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace mirel
