#include "Timing.h"
#include "credentials/InMemoryCredentialVault.h"
#include "library/LocalLibraryStore.h"
#include "simulator/Simulator.h"
#include "simulator/x/Folders.h"
#include "support/BlockOn.h"
#include "support/Serial.h"
#include "transport/URLSessionHTTPTransport.h"
#include "x/MirelSyncService.h"
#include "x/XAPIClient.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QUrlQuery>

#include <cstdio>
#include <map>

// A full sync with folders and threads of a simulated account, over loopback: its time by phase, next to the
// same requests alone, and whether exactly the requests were made that the account needs and all of it
// arrived.

namespace mirel {
namespace {

using TimePoint = std::chrono::steady_clock::time_point;

constexpr quint64 seed = 1;
constexpr int folderCount = 40;
constexpr qsizetype bookmarksOnPage = 50;
constexpr qsizetype postsOnFolderPage = 100;

enum class Kind { bookmarks, quotedArticles, folders, folderPosts, threads, other };

Kind kindOf(const QString& path)
{
    if (path.endsWith(QStringLiteral("/bookmarks")))
        return Kind::bookmarks;
    if (path == QStringLiteral("/2/tweets"))
        return Kind::quotedArticles;
    if (path.endsWith(QStringLiteral("/bookmarks/folders")))
        return Kind::folders;
    if (path.contains(QStringLiteral("/bookmarks/folders/")))
        return Kind::folderPosts;
    if (path == QStringLiteral("/2/tweets/search/recent"))
        return Kind::threads;
    return Kind::other;
}

using Counts = std::map<Kind, qsizetype>;

// Notes when each request was sent and answered.
class TimingTransport : public HTTPTransport
{
public:
    struct Sent
    {
        HTTPRequest request;
        TimePoint at;
        TimePoint answeredAt;
    };

    [[nodiscard]] QCoro::Task<HTTPResponse> data(HTTPRequest request) override
    {
        const TimePoint at = std::chrono::steady_clock::now();
        const HTTPResponse response = co_await m_network.data(request);
        m_sent.append({request, at, std::chrono::steady_clock::now()});
        co_return response;
    }

    [[nodiscard]] QList<Sent> takeSent() { return std::exchange(m_sent, {}); }

private:
    URLSessionHTTPTransport m_network;
    QList<Sent> m_sent;
};

XCredentials accountOf(const Simulator& simulator)
{
    const SimulatedIdentity identity = simulator.identity();
    XCredentials credentials;
    credentials.clientID = identity.clientID;
    credentials.accessToken = identity.accessToken;
    credentials.refreshToken = identity.refreshToken;
    credentials.userID = identity.userID;
    return credentials;
}

// The library and the service, each on its thread as in the program.
class Bench
{
public:
    Bench(const Simulator& simulator, const QString& libraryPath)
        : m_vault(accountOf(simulator))
        , m_store(std::make_shared<ServiceThread>(QStringLiteral("library")),
                  [libraryPath] { return std::make_unique<LocalLibraryStore>(libraryPath); })
        , m_transport(m_thread, [] { return std::make_unique<TimingTransport>(); })
        , m_client(m_thread,
                   [&] {
                       return std::make_unique<XAPIClient>(m_vault, m_transport.unguarded(),
                                                           simulator.apiURL(), Instant::now);
                   })
        , m_service(m_thread,
                    [&] { return std::make_unique<MirelSyncService>(m_client.unguarded(), m_store); })
    {
    }

    void sync()
    {
        blockOn(m_service.call([](MirelSyncService& service) {
            return service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {});
        }));
    }
    // What was sent since the last call.
    [[nodiscard]] QList<TimingTransport::Sent> takeSent()
    {
        return blockOn(m_transport.call([](TimingTransport& network) { return network.takeSent(); }));
    }
    // Sends requests again, one after the other, and forgets them. Returns the bodies of the answers.
    QByteArrayList send(const QList<TimingTransport::Sent>& requests)
    {
        const auto sendEach = [requests](TimingTransport& network) -> QCoro::Task<QByteArrayList> {
            QByteArrayList bodies;
            for (const auto& sent : requests) {
                const HTTPResponse response = co_await network.data(sent.request);
                bodies.append(response.body);
            }
            static_cast<void>(network.takeSent());
            co_return bodies;
        };
        return blockOn(m_transport.call(sendEach));
    }
    template <typename Operation>
    auto onStore(Operation operation)
    {
        return blockOn(m_store.call(operation));
    }

private:
    std::shared_ptr<ServiceThread> m_thread = std::make_shared<ServiceThread>(QStringLiteral("services"));
    InMemoryCredentialVault m_vault;
    Serial<LocalLibraryStore> m_store;
    Serial<TimingTransport> m_transport;
    Serial<XAPIClient> m_client;
    Serial<MirelSyncService> m_service;
};

qsizetype pagesFor(qsizetype elements, qsizetype onPage)
{
    return std::max((elements + onPage - 1) / onPage, qsizetype{1});
}

// Whether X's page leaves out media of the article that the post quotes.
bool needsQuotedArticle(const Bookmark& bookmark)
{
    if (!bookmark.quotedPost)
        return false;
    const QJsonValue includes = parseJSON(bookmark.rawJSON)[u"includes"];
    QSet<QString> known;
    for (const QJsonValue& media : includes[u"media"].toArray())
        known.insert(media[u"media_key"].toString());
    for (const QJsonValue& post : includes[u"tweets"].toArray()) {
        if (post[u"id"].toString() != bookmark.quotedPost->tweetID)
            continue;
        QJsonArray keys = post[u"article"][u"media_entities"].toArray();
        if (const QJsonValue cover = post[u"article"][u"cover_media"]; cover.isString())
            keys.append(cover);
        if (std::ranges::any_of(keys, [&](const QJsonValue& key) { return !known.contains(key.toString()); }))
            return true;
    }
    return false;
}

// What a full sync has to ask, by the account and by what X's pages leave out.
Counts neededRequests(Bench& bench, const QStringList& accountIDs, qsizetype threads)
{
    Counts needed;
    needed[Kind::bookmarks] = pagesFor(accountIDs.size(), bookmarksOnPage);
    needed[Kind::folders] = 1;
    const simulator::Folders folders(seed, folderCount);
    const simulator::Account account(static_cast<int>(accountIDs.size()));
    for (int folder = 0; folder < folderCount; ++folder)
        needed[Kind::folderPosts] += pagesFor(folders.serials(folder, account).size(), postsOnFolderPage);
    needed[Kind::threads] = threads;
    needed[Kind::quotedArticles] = bench.onStore([accountIDs](LocalLibraryStore& library) {
        QSet<qsizetype> pages;
        for (qsizetype i = 0; i < accountIDs.size(); ++i) {
            const auto bookmark = library.bookmark(accountIDs[i]);
            if (bookmark && needsQuotedArticle(*bookmark))
                pages.insert(i / bookmarksOnPage);
        }
        return pages.size();
    });
    needed[Kind::other] = 0;
    return needed;
}

// Throws unless each bookmark is in the folder that it is in on X.
void requireFolders(Bench& bench, const QStringList& accountIDs)
{
    const simulator::Folders folders(seed, folderCount);
    const simulator::Account account(static_cast<int>(accountIDs.size()));
    QHash<QString, QString> onX;
    for (int folder = 0; folder < folderCount; ++folder) {
        for (const int serial : folders.serials(folder, account))
            onX.insert(accountIDs[account.serials().indexOf(serial)], folders.all()[folder].name);
    }
    const auto here = bench.onStore([accountIDs](LocalLibraryStore& library) {
        QHash<QString, QString> filed;
        for (const QString& id : accountIDs) {
            if (const auto bookmark = library.bookmark(id); bookmark && bookmark->folder)
                filed.insert(id, bookmark->folder->name);
        }
        return filed;
    });
    if (onX.isEmpty() || here != onX)
        throw std::runtime_error("The bookmarks are not in the folders that they are in on X.");
}

// Throws unless there are the threads that X answers to `asked` with, and no others. Of several bookmarks in
// a conversation one may have been asked for.
void requireThreads(Bench& bench, const QStringList& accountIDs, const QList<TimingTransport::Sent>& asked)
{
    QHash<QString, QJsonArray> conversations;
    const QByteArrayList answers = bench.send(asked);
    for (qsizetype i = 0; i < asked.size(); ++i) {
        const QString query = QUrlQuery(asked[i].request.url).queryItemValue(QStringLiteral("query"));
        conversations.insert(query.section(u':', 1), parseJSON(answers[i])[u"data"].toArray());
    }
    const auto threadOnX = [conversations](const Bookmark& bookmark) {
        QStringList ids;
        for (const QJsonValue& post : conversations.value(bookmark.conversationID.value_or(QString()))) {
            if (post[u"author_id"] == bookmark.author.xID)
                ids.prepend(post[u"id"].toString());
        }
        return ids.size() < 2 ? QStringList() : ids;
    };
    QSet<QString> onX;
    QSet<QString> here;
    bench.onStore([&](LocalLibraryStore& library) {
        for (const QString& id : accountIDs) {
            const Bookmark bookmark = library.bookmark(id).value();
            QStringList thread;
            for (const ThreadPost& post : bookmark.thread)
                thread.append(post.tweetID);
            const QStringList expected = threadOnX(bookmark);
            if (!thread.isEmpty() && thread != expected)
                throw std::runtime_error("The thread of " + id.toStdString() + " is not that of X.");
            if (!thread.isEmpty())
                here.insert(*bookmark.conversationID);
            if (!expected.isEmpty())
                onX.insert(*bookmark.conversationID);
        }
    });
    std::printf("%-36s %9lld\n", "threads of several posts", static_cast<long long>(here.size()));
    if (here != onX)
        throw std::runtime_error("Threads of X did not arrive.");
    if (!asked.isEmpty() && here.isEmpty())
        throw std::runtime_error("None of the threads has several posts.");
}

Counts countsOf(const QList<TimingTransport::Sent>& sent)
{
    Counts counts;
    for (const auto& each : sent)
        ++counts[kindOf(each.request.url.path())];
    return counts;
}

void printPhase(const char* name, TimePoint start, TimePoint end)
{
    std::printf("%-36s %9.2f s\n", name, Duration(end - start).count());
}

// The time of the first request of that kind, or `otherwise`.
TimePoint firstOf(const QList<TimingTransport::Sent>& sent, Kind kind, TimePoint otherwise)
{
    const auto found = std::ranges::find_if(
        sent, [kind](const auto& each) { return kindOf(each.request.url.path()) == kind; });
    return found == sent.end() ? otherwise : found->at;
}

// Returns whether every kind of request was made as often as needed.
bool compare(Counts made, Counts needed)
{
    static constexpr std::array kinds{
        std::pair{Kind::bookmarks, "pages of bookmarks"},
        std::pair{Kind::quotedArticles, "quoted articles of a page"},
        std::pair{Kind::folders, "pages of folders"},
        std::pair{Kind::folderPosts, "pages of what is in a folder"},
        std::pair{Kind::threads, "threads"},
        std::pair{Kind::other, "anything else"},
    };
    bool areEqual = true;
    std::printf("%-36s %9s %9s\n", "requests", "made", "needed");
    for (const auto& [kind, name] : kinds) {
        std::printf("%-36s %9lld %9lld\n", name, static_cast<long long>(made[kind]),
                    static_cast<long long>(needed[kind]));
        areEqual = areEqual && made[kind] == needed[kind];
    }
    return areEqual;
}

// Syncs once, prints where the time went, and returns whether the requests were those needed. Throws when the
// folders or threads of the account did not arrive.
bool measure(const char* title, Bench& bench, Simulator& simulator, qsizetype threads)
{
    simulator.clearRequests();
    const TimePoint start = std::chrono::steady_clock::now();
    bench.sync();
    const TimePoint end = std::chrono::steady_clock::now();
    const QList<TimingTransport::Sent> sent = bench.takeSent();
    const TimePoint folders = firstOf(sent, Kind::folders, end);
    // What the last answer brings, a thread or an empty folder, takes no time to store.
    const TimePoint rules = sent.last().answeredAt;
    const TimePoint threadsStart = firstOf(sent, Kind::threads, rules);
    std::printf("\n%s\n", title);
    printPhase("bookmarks", start, folders);
    printPhase("folders", folders, threadsStart);
    printPhase("threads", threadsStart, rules);
    printPhase("rules", rules, end);
    printPhase("all in all", start, end);
    const Duration bare = timeOf([&] { static_cast<void>(bench.send(sent)); });
    std::printf("%-36s %9.2f s\n", "the same requests alone", bare.count());
    if (!simulator.problems().isEmpty())
        throw std::runtime_error(simulator.problems().first().toStdString());
    const QStringList ids = simulator.accountIDs();
    requireFolders(bench, ids);
    QList<TimingTransport::Sent> askedThreads = sent;
    askedThreads.removeIf([](const auto& each) { return kindOf(each.request.url.path()) != Kind::threads; });
    requireThreads(bench, ids, askedThreads);
    return compare(countsOf(sent), neededRequests(bench, ids, threads));
}

// Leaves the newest `count` posts that tell their conversation without a thread; earlier syncs have looked
// for the others'.
void leaveWithoutThread(LocalLibraryStore& library, qsizetype count)
{
    AppPreferences preferences = library.preferences();
    preferences.threadEnrichment = AppPreferences::ThreadEnrichment::automatic;
    library.savePreferences(preferences);
    for (const qint64 id : library.allBookmarkIDs(LibraryFilter::all, LibrarySort::newest)) {
        if (count > 0 && library.bookmark(id).conversationID)
            --count;
        else
            library.markThreadEnriched(id, Instant::now());
    }
}

bool run(const QString& directory, int posts, qsizetype threads)
{
    const QTemporaryDir place(directory + QStringLiteral("/full-sync-XXXXXX"));
    if (!place.isValid())
        throw std::runtime_error("The directory cannot be used: " + place.errorString().toStdString());
    Simulator simulator({.posts = posts, .seed = seed, .folders = folderCount});
    simulator.listen();
    Bench bench(simulator, place.filePath(QStringLiteral("mirel.sqlite3")));
    std::printf("%d posts, %d folders\n", posts, folderCount);
    bool areEqual = measure("Everything new, no threads", bench, simulator, 0);
    bench.onStore([threads](LocalLibraryStore& library) { leaveWithoutThread(library, threads); });
    const QByteArray title = "Again, with threads for " + QByteArray::number(threads) + " posts";
    areEqual = measure(title.constData(), bench, simulator, threads) && areEqual;
    const QStringList ids = simulator.accountIDs();
    const auto stored =
        bench.onStore([](LocalLibraryStore& library) { return library.allBookmarkTweetIDs(); });
    if (stored != QSet<QString>(ids.begin(), ids.end()))
        throw std::runtime_error("The library does not hold what the account does.");
    if (!areEqual)
        std::fputs("full-sync-benchmark: Other requests were made than needed.\n", stderr);
    return areEqual;
}

int main(const QCoreApplication& application)
{
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("posts"), QStringLiteral("In the account."), QStringLiteral("N"),
                        QStringLiteral("10000")},
                       {QStringLiteral("threads"), QStringLiteral("Posts whose thread is fetched."),
                        QStringLiteral("N"), QStringLiteral("500")}});
    parser.addPositionalArgument(QStringLiteral("DIRECTORY"), QStringLiteral("Where the library is made."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(EXIT_FAILURE);
    const bool isRight =
        run(parser.positionalArguments().first(), parser.value(QStringLiteral("posts")).toInt(),
            parser.value(QStringLiteral("threads")).toLongLong());
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace mirel

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    try {
        return mirel::main(application);
    } catch (...) {
        std::fprintf(stderr, "full-sync-benchmark: %s\n",
                     qUtf8Printable(mirel::describe(std::current_exception())));
        return EXIT_FAILURE;
    }
}
