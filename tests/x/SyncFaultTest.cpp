#include "testing/Printing.h"

#include "testing/LibraryChecks.h"
#include "testing/TemporaryLibrary.h"

#include "credentials/InMemoryCredentialVault.h"
#include "simulator/Simulator.h"
#include "support/BlockOn.h"
#include "transport/HTTPTransportError.h"
#include "transport/URLSessionHTTPTransport.h"
#include "x/MirelSyncService.h"
#include "x/XAPIClient.h"
#include "x/XAPIError.h"

#include <QFile>

#include <gtest/gtest.h>

// Every request of a full sync with folders and threads fails in turn, in every way. The run then says so,
// what came before is in the library, and the next run brings the rest.

namespace mirel {
namespace {

constexpr int knownPosts = 58;
constexpr int newPosts = 4;
constexpr qint64 resetAt = 1'900'000'000;

// The network, which may lose the answer to one request after a while.
class UnreliableTransport : public HTTPTransport
{
public:
    // The request of that number, counted from 0, fails so, and those after it.
    void failFrom(int request, HTTPTransportError::Case error)
    {
        m_failing = request;
        m_error = error;
    }

    [[nodiscard]] QCoro::Task<HTTPResponse> data(HTTPRequest request) override
    {
        if (m_failing && m_count++ >= *m_failing)
            throw HTTPTransportError(m_error, request.url);
        co_return co_await m_network.data(std::move(request));
    }

private:
    URLSessionHTTPTransport m_network;
    int m_count = 0;
    std::optional<int> m_failing;
    HTTPTransportError::Case m_error = HTTPTransportError::Case::timeout;
};

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

// What of a library comes from X: each post with its folder and its thread, newest first.
QStringList contentOf(LocalLibraryStore& library)
{
    QStringList lines;
    for (const Bookmark& bookmark : library.listBookmarks(LibraryFilter::all, 500, 0, LibrarySort::newest)) {
        QString line = bookmark.tweetID + u' ' + (bookmark.folder ? bookmark.folder->name : QString());
        for (const ThreadPost& post : bookmark.thread)
            line += u' ' + post.tweetID;
        lines.append(line);
    }
    return lines;
}

// A library that knows all but the newest posts of a simulated account, and the services over it.
class Surroundings
{
public:
    // `original` is the library to begin with; empty for a new one.
    Surroundings(const Simulator& simulator, const QString& original)
    {
        if (!original.isEmpty())
            QFile::copy(original, library.path());
        const SimulatedIdentity identity = simulator.identity();
        XCredentials credentials;
        credentials.clientID = identity.clientID;
        credentials.accessToken = identity.accessToken;
        credentials.refreshToken = identity.refreshToken;
        credentials.userID = identity.userID;
        blockOn(vault.saveXCredentials(credentials));
        store.emplace(std::make_shared<ServiceThread>(QStringLiteral("library")),
                      [this] { return library.open(); });
        client.emplace(vault, transport, simulator.apiURL(), Instant::now);
        service.emplace(*client, *store, library.clock.clock());
    }

    // From now on, a token is refreshed before it is used.
    void letTokenExpire()
    {
        XCredentials credentials = *blockOn(vault.loadXCredentials());
        credentials.expiresAt = Instant::fromSecondsSince1970(0);
        blockOn(vault.saveXCredentials(credentials));
    }

    // The description of the failure, or empty.
    QString sync()
    {
        try {
            blockOn(service->sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {}));
        } catch (const Error& error) {
            return error.description();
        }
        return {};
    }

    template <typename Operation>
    auto onStore(Operation operation)
    {
        return blockOn(store->call(operation));
    }
    SyncRun lastRun()
    {
        return onStore([](LocalLibraryStore& it) { return it.syncRuns(1).value(0); });
    }
    QStringList content() { return onStore(contentOf); }

    testing::TemporaryLibrary library;
    InMemoryCredentialVault vault;
    UnreliableTransport transport;
    std::optional<Serial<LocalLibraryStore>> store;
    std::optional<XAPIClient> client;
    std::optional<MirelSyncService> service;
};

// The account, the library before the sync, and how the sync goes when nothing fails.
class Undisturbed
{
public:
    static Undisturbed& instance()
    {
        static Undisturbed undisturbed;
        return undisturbed;
    }

    Simulator simulator{{.posts = knownPosts, .seed = 5}};
    testing::TemporaryLibrary before;
    QList<RecordedRequest> requests;
    QStringList content;

    // The position of the n-th request (from 0) to a path that ends so.
    [[nodiscard]] int position(QByteArrayView end, int n = 0) const
    {
        for (int i = 0; i < requests.size(); ++i) {
            if (requests[i].path.toUtf8().endsWith(end) && n-- == 0)
                return i;
        }
        return -1;
    }

private:
    Undisturbed()
    {
        simulator.listen();
        prepareLibrary();
        simulator.addPosts(newPosts);
        simulator.clearRequests();
        Surroundings surroundings(simulator, before.path());
        EXPECT_EQ(surroundings.sync(), QString());
        requests = simulator.requests();
        content = surroundings.content();
    }

    void prepareLibrary()
    {
        Surroundings surroundings(simulator, {});
        AppPreferences preferences;
        preferences.ignoreXFolders = true;
        const auto prefer = [&preferences](LocalLibraryStore& it) { it.savePreferences(preferences); };
        surroundings.onStore(prefer);
        EXPECT_EQ(surroundings.sync(), QString());
        preferences.ignoreXFolders = false;
        preferences.threadEnrichment = AppPreferences::ThreadEnrichment::automatic;
        surroundings.onStore(prefer);
        surroundings.onStore([](LocalLibraryStore& it) {
            for (const qint64 id : it.allBookmarkIDs(LibraryFilter::all, LibrarySort::newest))
                it.markThreadEnriched(id, Instant::fromSecondsSince1970(1));
        });
        surroundings.store.reset();
        EXPECT_TRUE(QFile::copy(surroundings.library.path(), before.path()));
    }
};

class SyncFault : public ::testing::TestWithParam<FaultKind>
{
protected:
    void TearDown() override { account.simulator.setScenario({}); }

    // Lets the request of that position in an undisturbed sync fail, and those after it to the same path.
    void arm(Surroundings& surroundings, int position)
    {
        account.simulator.setScenario({});
        const FaultKind& kind = GetParam();
        if (kind.fault.isEmpty()) {
            surroundings.transport.failFrom(position, kind.error);
            return;
        }
        const QString& path = account.requests[position].path;
        int number = 0;
        for (int i = 0; i <= position; ++i)
            number += account.requests[i].path == path ? 1 : 0;
        account.simulator.setScenario(
            Scenario::fromJSON("{\"faults\":[{" + kind.fault + ",\"path\":\"" + path.toUtf8() +
                               "\",\"requests\":{\"from\":" + QByteArray::number(number) + "}}]}"));
    }

    // What a run records whose request of that position failed.
    void expectRecorded(Surroundings& surroundings, int position)
    {
        const FaultKind& kind = GetParam();
        const SyncRun run = surroundings.lastRun();
        EXPECT_EQ(run.status, kind.status);
        EXPECT_EQ(run.errorMessage, kind.message);
        EXPECT_EQ(run.rateLimitResetAt, kind.reset);
        EXPECT_TRUE(run.completedAt);
        const int pages = position >= folders() ? 2 : position >= secondPage() ? 1 : 0;
        EXPECT_EQ(run.pages, pages);
        EXPECT_EQ(run.fetched, std::min(50 * pages, knownPosts + newPosts));
        EXPECT_EQ(run.created, pages == 0 ? 0 : newPosts);
        EXPECT_EQ(run.updated, run.fetched - run.created);
        const qint64 id = run.id;
        const auto entries = [id](LocalLibraryStore& it) { return it.syncLogEntries(id, 100); };
        const QList<SyncLogEntry> log = surroundings.onStore(entries);
        ASSERT_EQ(log.size(), 2 + pages);
        EXPECT_EQ(log.last().event, SyncLogEntry::Event::failed);
        EXPECT_EQ(log.last().message, kind.message);
    }

    // What came before the request of that position is in the library.
    void expectKept(Surroundings& surroundings, int position)
    {
        const auto folderCount = [](LocalLibraryStore& it) { return it.folders().size(); };
        EXPECT_EQ(surroundings.onStore(folderCount), std::clamp(position - folders(), 0, folderRequests()));
        const auto threads = [](LocalLibraryStore& it) {
            return std::ranges::count_if(
                it.listBookmarks(LibraryFilter::all, 500, 0, LibrarySort::newest), [](const Bookmark& each) {
                    return each.threadEnrichedAt && *each.threadEnrichedAt > Instant::fromSecondsSince1970(1);
                });
        };
        EXPECT_EQ(surroundings.onStore(threads), std::max(position - firstThread(), 0));
        EXPECT_EQ(surroundings.content().size(), knownPosts + (position >= secondPage() ? newPosts : 0));
    }

    [[nodiscard]] int secondPage() const { return account.position("/bookmarks", 1); }
    [[nodiscard]] int folders() const { return account.position("/bookmarks/folders"); }
    [[nodiscard]] int firstThread() const { return account.position("/search/recent"); }
    [[nodiscard]] int folderRequests() const { return firstThread() - folders() - 1; }

    Undisturbed& account = Undisturbed::instance();
};

TEST_P(SyncFault, OfAnyRequestIsRecordedLosesNothingAndTheNextRunCompletes)
{
    ASSERT_GE(account.position("/2/tweets"), 0) << "there are quoted articles";
    ASSERT_GT(firstThread(), folders() + 5) << "there are folders with posts";
    ASSERT_GT(account.requests.size(), firstThread() + 2) << "and threads";
    for (int position = 0; position < account.requests.size(); ++position) {
        SCOPED_TRACE(account.requests[position].path.toStdString() + ", request " + std::to_string(position));
        {
            Surroundings surroundings(account.simulator, account.before.path());
            arm(surroundings, position);
            EXPECT_EQ(surroundings.sync(), GetParam().message);
            expectRecorded(surroundings, position);
            expectKept(surroundings, position);
            testing::expectWhole(surroundings.library.path());

            account.simulator.setScenario({});
            surroundings.transport.failFrom(1'000'000, {});
            EXPECT_EQ(surroundings.sync(), QString());
            EXPECT_EQ(surroundings.lastRun().status, SyncRun::Status::completed);
            EXPECT_EQ(surroundings.content(), account.content);
            testing::expectWhole(surroundings.library.path());
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

    Simulator simulator{{.posts = 5}};
    std::optional<Surroundings> surroundings;
};

TEST_F(TokenFault, BeforeXAnswersCostsOneRun)
{
    for (const char* const fault : {R"("action":"status","status":429)", R"("action":"status","status":503)",
                                    R"("action":"status","status":400)"}) {
        SCOPED_TRACE(fault);
        scenario(fault);
        EXPECT_NE(surroundings->sync(), QString());
        EXPECT_EQ(surroundings->lastRun().pages, 0);
        simulator.setScenario({});
        EXPECT_EQ(surroundings->sync(), QString());
        EXPECT_EQ(surroundings->lastRun().status, SyncRun::Status::completed);
        surroundings->letTokenExpire();
    }
}

// X forgets the old token with its answer.
class LostToken : public TokenFault, public ::testing::WithParamInterface<const char*>
{
};

TEST_P(LostToken, NeedsTheAccountToBeConnectedAnew)
{
    scenario(GetParam());
    EXPECT_NE(surroundings->sync(), QString());
    simulator.setScenario({});
    const QString spent = surroundings->sync();
    EXPECT_TRUE(spent.startsWith(QStringLiteral("X returned HTTP 400: "))) << spent.toStdString();
    EXPECT_EQ(surroundings->lastRun().errorMessage, spent);
    EXPECT_EQ(surroundings->lastRun().status, SyncRun::Status::failed);
}

INSTANTIATE_TEST_SUITE_P(Answers, LostToken,
                         ::testing::Values(R"("action":"cutBeforeHeaders")", R"("action":"cutInBody")",
                                           R"("action":"undecodable")"));

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
