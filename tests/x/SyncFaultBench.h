#pragma once

#include "testing/LibraryChecks.h"
#include "testing/TemporaryLibrary.h"
#include "x/FailingVault.h"

#include "simulator/Simulator.h"
#include "support/BlockOn.h"
#include "transport/HTTPTransportError.h"
#include "transport/URLSessionHTTPTransport.h"
#include "x/MirelSyncService.h"
#include "x/XAPIClient.h"

#include <QFile>

#include <gtest/gtest.h>

namespace mirel::testing {

inline constexpr int knownPosts = 58;
inline constexpr int newPosts = 4;

// What X says of a refresh token that it has forgotten.
inline QString spentToken()
{
    return QStringLiteral("X returned HTTP 400: {\"error\":\"invalid_request\","
                          "\"error_description\":\"Value passed for the token was invalid.\"}");
}

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

// What of a library comes from X: each post with its folder and its thread, newest first.
inline QStringList contentOf(LocalLibraryStore& library)
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
        connect(simulator.identity());
        store.emplace(std::make_shared<ServiceThread>(QStringLiteral("library")),
                      [this] { return library.open(); });
        client.emplace(vault, transport, simulator.apiURL(), Instant::now);
        service.emplace(*client, *store, library.clock.clock());
    }

    // Stores tokens of which nobody knows when they expire.
    void connect(const SimulatedIdentity& identity)
    {
        XCredentials credentials;
        credentials.clientID = identity.clientID;
        credentials.accessToken = identity.accessToken;
        credentials.refreshToken = identity.refreshToken;
        credentials.userID = identity.userID;
        blockOn(vault.saveXCredentials(credentials));
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

    TemporaryLibrary library;
    FailingVault vault;
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

    // The account that all play: as the library knows it, and with the newest posts.
    static SimulatorOptions options() { return {.posts = knownPosts, .seed = 5}; }

    Simulator simulator{options()};
    TemporaryLibrary before;
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

// Lets full syncs over the library of Undisturbed fail, and knows what they leave then. A position is that of
// a request in an undisturbed sync.
class SyncFaultBench : public ::testing::Test
{
protected:
    struct Failure
    {
        QString message;
        SyncRun::Status status = SyncRun::Status::failed;
        std::optional<Instant> reset = std::nullopt;
    };

    // What a run records that ended with `failure` in place of the request of that position.
    static void expectRecorded(Surroundings& surroundings, int position, const Failure& failure)
    {
        const SyncRun run = surroundings.lastRun();
        EXPECT_EQ(run.status, failure.status);
        EXPECT_EQ(run.errorMessage, failure.message);
        EXPECT_EQ(run.rateLimitResetAt, failure.reset);
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
        EXPECT_EQ(log.last().message, failure.message);
    }

    // What came before the request of that position is in the library.
    static void expectKept(Surroundings& surroundings, int position)
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
        expectWhole(surroundings.library.path());
    }

    // The run that has just ended without an error brought all that there is.
    static void expectComplete(Surroundings& surroundings)
    {
        EXPECT_EQ(surroundings.lastRun().status, SyncRun::Status::completed);
        EXPECT_EQ(surroundings.lastRun().errorMessage, std::nullopt);
        EXPECT_EQ(surroundings.content(), account().content);
        expectWhole(surroundings.library.path());
    }

    static void SetUpTestSuite()
    {
        ASSERT_GE(account().position("/2/tweets"), 0) << "there are quoted articles";
        ASSERT_GT(firstThread(), folders() + 5) << "there are folders with posts";
        ASSERT_GT(account().requests.size(), firstThread() + 2) << "and threads";
    }

    [[nodiscard]] static Undisturbed& account() { return Undisturbed::instance(); }
    [[nodiscard]] static int secondPage() { return account().position("/bookmarks", 1); }
    [[nodiscard]] static int folders() { return account().position("/bookmarks/folders"); }
    [[nodiscard]] static int firstThread() { return account().position("/search/recent"); }
    [[nodiscard]] static int folderRequests() { return firstThread() - folders() - 1; }
};

} // namespace mirel::testing
