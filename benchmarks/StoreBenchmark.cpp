#include "BareLoop.h"
#include "PageGenerator.h"
#include "ReadyPages.h"
#include "Timing.h"
#include "credentials/InMemoryCredentialVault.h"
#include "support/BlockOn.h"
#include "x/MirelSyncService.h"
#include "x/XAPIClient.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <cstdio>
#include <ctime>

namespace mirel {
namespace {

XCredentials account()
{
    return {.clientID = QStringLiteral("client"),
            .accessToken = QStringLiteral("token"),
            .userID = QStringLiteral("1")};
}

// The road of a post from the bytes of its page to the disk, with all that Mirel does on it but the network.
class Sync
{
public:
    Sync(const QString& path, QByteArrayList pages)
        : m_store(std::make_shared<ServiceThread>(QStringLiteral("library")),
                  [path] { return std::make_unique<LocalLibraryStore>(path); })
        , m_vault(account())
        , m_transport(std::move(pages))
        , m_x(m_vault, m_transport, QUrl(QStringLiteral("http://127.0.0.1/2")), Instant::now)
        , m_service(m_x, m_store)
    {
    }

    Duration run()
    {
        return timeOf([this] { blockOn(m_service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {})); });
    }

    // One call that does nothing on the thread of the library.
    Duration hop()
    {
        constexpr int calls = 1000;
        const Duration total = timeOf([this] {
            for (int i = 0; i < calls; ++i)
                blockOn(m_store.call([](LocalLibraryStore&) {}));
        });
        return total / calls;
    }

private:
    Serial<LocalLibraryStore> m_store;
    InMemoryCredentialVault m_vault;
    ReadyPages m_transport;
    XAPIClient m_x;
    MirelSyncService m_service;
};

// The pages of one run, as bytes and mapped.
struct Input
{
    explicit Input(int pageCount)
    {
        const PageGenerator generator;
        for (int i = 0; i < pageCount; ++i) {
            pages.append(generator.page(i));
            posts.append(postMapping::parseBookmarkPage(pages.last()).items);
        }
    }

    [[nodiscard]] qsizetype envelopeSize() const
    {
        qsizetype total = 0;
        for (const SyncedBookmark& post : posts)
            total += post.rawJSON.size();
        return total / posts.size();
    }

    QByteArrayList pages;
    QList<SyncedBookmark> posts;
};

QByteArray findInsert(const QList<StatementTime>& statements)
{
    for (const StatementTime& statement : statements) {
        if (statement.sql.startsWith("INSERT INTO bookmarks "))
            return statement.sql;
    }
    throw std::runtime_error("The library no longer stores a post with INSERT INTO bookmarks.");
}

// Throws unless both libraries hold the same posts, in the table and in the index.
void compare(const QString& path, const QString& barePath, qsizetype postCount)
{
    SQLiteConnection connection(path);
    connection.run("ATTACH ? AS bare", {barePath});
    const auto row = connection.firstRow(
        "SELECT (SELECT count(*) FROM main.bookmarks b JOIN main.authors a ON a.id = b.author_id "
        "JOIN bare.bookmarks o ON (o.tweet_id, o.conversation_id, o.text, o.language, o.source_url, "
        "o.post_created_at, o.view_count, o.repost_count, o.bookmark_count, o.reply_count, o.quote_count, "
        "o.like_count, o.media_json, o.quoted_json, o.raw_json) = (b.tweet_id, b.conversation_id, b.text, "
        "b.language, b.source_url, b.post_created_at, b.view_count, b.repost_count, b.bookmark_count, "
        "b.reply_count, b.quote_count, b.like_count, b.media_json, b.quoted_json, b.raw_json) "
        "AND o.content_title IS b.content_title AND o.content_text IS b.content_text "
        "JOIN bare.authors p ON p.id = o.author_id AND p.x_id = a.x_id) AS same, "
        "(SELECT count(*) FROM main.bookmark_search i JOIN bare.bookmark_search o "
        "ON o.rowid = i.rowid AND o.title = i.title AND o.body = i.body "
        "AND o.author_username = i.author_username) AS found");
    if (row->integer("same") != postCount || row->integer("found") != postCount)
        throw std::runtime_error("The bare loop did not store what the sync stored.");
}

// How fast a run was.
struct Speed
{
    double postsPerSecond = 0;
    // Of the whole process, in microseconds a post.
    double processorTime = 0;
};

double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

template <typename Run>
Speed speedOf(qsizetype postCount, Run runOnce)
{
    const auto posts = static_cast<double>(postCount);
    const double before = processorSeconds();
    const Duration duration = runOnce();
    return {.postsPerSecond = posts / duration.count(),
            .processorTime = (processorSeconds() - before) * 1e6 / posts};
}

class Comparison
{
public:
    // Finds the library's own INSERT and makes sure that both roads store the same.
    Comparison(const Input& input, QString directory)
        : m_input(input)
        , m_directory(std::move(directory))
    {
        const QTemporaryDir folder(m_directory + QStringLiteral("/store-XXXXXX"));
        StatementTimes::start();
        Sync(syncPath(folder), m_input.pages).run();
        m_insertSQL = findInsert(StatementTimes::stop());
        bareLoop(barePath(folder)).run();
        compare(syncPath(folder), barePath(folder), m_input.posts.size());
    }

    void run(int rounds)
    {
        std::printf("%10s%24s%24s%8s\n", "", "sync", "bare loop", "");
        std::printf("%10s%12s%12s%12s%12s%8s\n", "", "posts/s", "CPU us/post", "posts/s", "CPU us/post",
                    "ratio");
        std::vector<Speed> sync;
        std::vector<Speed> bare;
        std::vector<double> ratios;
        for (int i = 0; i < rounds; ++i) {
            const QTemporaryDir folder(m_directory + QStringLiteral("/store-XXXXXX"));
            sync.push_back(measureSync(syncPath(folder)));
            bare.push_back(measureBare(barePath(folder)));
            ratios.push_back(sync.back().postsPerSecond / bare.back().postsPerSecond);
            print("", sync.back(), bare.back(), ratios.back());
        }
        print("median", medianOf(sync), medianOf(bare), median(ratios));
    }

private:
    static void print(const char* name, Speed sync, Speed bare, double ratio)
    {
        std::printf("%-10s%12.0f%12.0f%12.0f%12.0f%8.2f\n", name, sync.postsPerSecond, sync.processorTime,
                    bare.postsPerSecond, bare.processorTime, ratio);
    }

    [[nodiscard]] static Speed medianOf(const std::vector<Speed>& speeds)
    {
        std::vector<double> postsPerSecond;
        std::vector<double> processorTimes;
        for (const Speed& speed : speeds) {
            postsPerSecond.push_back(speed.postsPerSecond);
            processorTimes.push_back(speed.processorTime);
        }
        return {.postsPerSecond = median(postsPerSecond), .processorTime = median(processorTimes)};
    }

    [[nodiscard]] static QString syncPath(const QTemporaryDir& folder)
    {
        return folder.filePath(QStringLiteral("library.sqlite3"));
    }
    [[nodiscard]] static QString barePath(const QTemporaryDir& folder)
    {
        return folder.filePath(QStringLiteral("bare.sqlite3"));
    }

    [[nodiscard]] BareLoop bareLoop(const QString& path) const
    {
        const LocalLibraryStore empty(path);
        return {path, m_insertSQL, m_input.posts};
    }

    [[nodiscard]] Speed measureSync(const QString& path) const
    {
        Sync sync(path, m_input.pages);
        return speedOf(m_input.posts.size(), [&sync] { return sync.run(); });
    }

    [[nodiscard]] Speed measureBare(const QString& path) const
    {
        BareLoop loop = bareLoop(path);
        return speedOf(m_input.posts.size(), [&loop] { return loop.run(); });
    }

    const Input& m_input;
    QString m_directory;
    QByteArray m_insertSQL;
};

// Where the time of a sync goes, in microseconds a post.
class Breakdown
{
public:
    Breakdown(const Input& input, const QString& directory)
        : m_input(input)
        , m_folder(directory + QStringLiteral("/store-XXXXXX"))
        , m_path(m_folder.filePath(QStringLiteral("library.sqlite3")))
    {
    }

    void print()
    {
        Sync sync(m_path, m_input.pages);
        StatementTimes::start();
        const Duration total = sync.run();
        const QList<StatementTime> statements = StatementTimes::stop();
        line("a post, all in all", total);
        for (const StatementTime& statement : statements)
            part(statement.sql.left(52), statement.total);
        part("preparing these statements", preparing(statements));
        part("mapping", mapping());
        part("encoding media and quoted posts", encoding());
        // The library is called once for the posts of a page and twice for its history.
        part("changing threads", sync.hop() * 3 * m_input.pages.size());
        line("  the rest: binding, decoding, copying", total - m_parts);
    }

private:
    void line(const QByteArray& name, Duration duration) const
    {
        std::printf("%-56s %8.1f us\n", name.constData(),
                    duration.count() * 1e6 / static_cast<double>(m_input.posts.size()));
    }

    void part(const QByteArray& name, Duration duration)
    {
        m_parts += duration;
        line("  " + name, duration);
    }

    [[nodiscard]] Duration preparing(const QList<StatementTime>& statements) const
    {
        constexpr int repetitions = 200;
        SQLiteConnection library(m_path);
        Duration total{0};
        for (const StatementTime& statement : statements) {
            if (statement.sql == "checkpoint")
                continue;
            const Duration duration = timeOf([&] {
                for (int i = 0; i < repetitions; ++i) {
                    sqlite3_stmt* prepared = nullptr;
                    sqlite3_prepare_v2(library.handle(), statement.sql.constData(), -1, &prepared, nullptr);
                    sqlite3_finalize(prepared);
                }
            });
            total += duration / repetitions * statement.runs;
        }
        return total;
    }

    [[nodiscard]] Duration mapping() const
    {
        return timeOf([this] {
            for (const QByteArray& page : m_input.pages)
                (void)postMapping::parseBookmarkPage(page);
        });
    }

    [[nodiscard]] Duration encoding() const
    {
        return timeOf([this] {
            for (const SyncedBookmark& post : m_input.posts) {
                (void)encodeJSON(post.media);
                (void)encodeJSON(post.quotedPost);
            }
        });
    }

    const Input& m_input;
    QTemporaryDir m_folder;
    QString m_path;
    Duration m_parts{0};
};

void run(const QString& directory, int pages, int rounds)
{
    if (!QDir().mkpath(directory))
        throw std::runtime_error("The directory cannot be made.");
    {
        // As in the programs, the library is the first to use SQLite.
        const QTemporaryDir folder(directory + QStringLiteral("/store-XXXXXX"));
        const SQLiteConnection first(folder.filePath(QStringLiteral("first.sqlite3")));
    }
    StatementTimes::install();
    const Input input(pages);
    const bool isInMemory = QStorageInfo(directory).fileSystemType() == "tmpfs";
    std::printf("%lld posts a run, envelopes of %lld KB, %s\n", static_cast<long long>(input.posts.size()),
                static_cast<long long>(input.envelopeSize() / 1000),
                isInMemory ? "in memory, where nothing is durable: the computing alone"
                           : "each post durable when its write returns");
    Comparison(input, directory).run(rounds);
    std::printf("\n");
    Breakdown(input, directory).print();
}

} // namespace
} // namespace mirel

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Compares mapping and storing ready pages with a bare loop of the same inserts."));
    parser.addHelpOption();
    const QCommandLineOption pages(QStringLiteral("pages"), QStringLiteral("Pages of 50 posts in a run."),
                                   QStringLiteral("N"), QStringLiteral("20"));
    const QCommandLineOption rounds(QStringLiteral("rounds"), QStringLiteral("Runs of each of the two."),
                                    QStringLiteral("N"), QStringLiteral("5"));
    parser.addOptions({pages, rounds});
    parser.addPositionalArgument(QStringLiteral("DIRECTORY"),
                                 QStringLiteral("Where the libraries are made."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(EXIT_FAILURE);
    try {
        mirel::run(parser.positionalArguments().first(), std::max(1, parser.value(pages).toInt()),
                   std::max(1, parser.value(rounds).toInt()));
        return EXIT_SUCCESS;
    } catch (...) {
        std::fprintf(stderr, "store-benchmark: %s\n", qPrintable(mirel::describe(std::current_exception())));
        return EXIT_FAILURE;
    }
}
