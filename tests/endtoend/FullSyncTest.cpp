#include "EndToEndTest.h"

#include "records/Bookmark.h"
#include "records/SyncRun.h"

#include <QJsonArray>

namespace mirel::testing {
namespace {

const QString user = QStringLiteral("/users/1471900000000000001");

QString idIn(const QJsonValue& object)
{
    return object[u"id"].toString();
}

// A library with folders and threads, and what X itself says of them.
class FullSync : public EndToEndTest
{
protected:
    FullSync()
        : EndToEndTest(70)
    {
    }

    // The requests of that method to a path that begins so, since they were last forgotten.
    [[nodiscard]] QList<QJsonValue> requestsTo(const QString& method, const QString& start) const
    {
        QList<QJsonValue> found;
        for (const QJsonValue& request : simulator.requests()) {
            if (request[u"method"] == method && request[u"path"].toString().startsWith(start))
                found.append(request);
        }
        return found;
    }
    [[nodiscard]] qsizetype threadRequests() const
    {
        return requestsTo(QStringLiteral("GET"), QStringLiteral("/2/tweets/search/recent")).size();
    }

    // "FOLDER POST" for each post in a folder on X, where FOLDER is the name; "FOLDER" for each folder.
    [[nodiscard]] QSet<QString> filedOnX() const
    {
        QSet<QString> filed;
        const QString path = user + QStringLiteral("/bookmarks/folders");
        for (const QJsonValue& folder : simulator.askX(path)[u"data"].toArray()) {
            const QString name = folder[u"name"].toString();
            filed.insert(name);
            const QJsonValue posts =
                simulator.askX(path + u'/' + idIn(folder) + QStringLiteral("?max_results=100"));
            for (const QJsonValue& post : posts[u"data"].toArray())
                filed.insert(name + u' ' + idIn(post));
        }
        return filed;
    }
    // The same of the library.
    [[nodiscard]] QSet<QString> filedHere() const
    {
        const QStringList rows = library().column(
            "SELECT name FROM folders WHERE source = 'x' UNION SELECT f.name || ' ' || b.tweet_id "
            "FROM bookmark_folders bf JOIN folders f ON f.id = bf.folder_id "
            "JOIN bookmarks b ON b.id = bf.bookmark_id");
        return {rows.begin(), rows.end()};
    }

    // The ids of the posts of each thread of two or more, earliest first, by the bookmark's conversation. X
    // is asked again what it was asked in the sync.
    [[nodiscard]] QHash<QString, QStringList> threadsOnX(const QList<QJsonValue>& asked) const
    {
        QHash<QString, QString> authors;
        for (const QStringList& row : library().rows("SELECT b.conversation_id, a.x_id FROM bookmarks b "
                                                     "JOIN authors a ON a.id = b.author_id"))
            authors.insert(row[0], row[1]);
        QHash<QString, QStringList> threads;
        for (const QJsonValue& request : asked) {
            const QString query = request[u"query"].toString();
            const QJsonValue answer = simulator.askX(QStringLiteral("/tweets/search/recent?") + query);
            for (const QJsonValue& post : answer[u"data"].toArray()) {
                const QString conversation = post[u"conversation_id"].toString();
                if (post[u"author_id"] == authors[conversation])
                    threads[conversation].prepend(idIn(post));
            }
        }
        threads.removeIf([](const auto& thread) { return thread.value().size() < 2; });
        return threads;
    }
    [[nodiscard]] QHash<QString, QStringList> threadsHere() const
    {
        QHash<QString, QStringList> threads;
        for (const QStringList& row :
             library().rows("SELECT conversation_id, thread_json FROM bookmarks WHERE thread_json != '[]'")) {
            for (const QJsonValue& post : parseJSON(row[1].toUtf8()).toArray())
                threads[row[0]].append(post[u"tweetID"].toString());
        }
        return threads;
    }
};

TEST_F(FullSync, AFullSyncWithFoldersAndThreadsLeavesTheLibraryEqualToTheAccount)
{
    ASSERT_EQ(mirelctl("preferences set threadEnrichment automatic").exitStatus, 0);
    expectSuccess(mirelctl("sync --full"),
                  "Full sync checked every page X made available: 70 bookmarks across 2 page(s), 70 new.\n");
    const QString get = QStringLiteral("GET");
    const QList<QJsonValue> threads = requestsTo(get, QStringLiteral("/2/tweets/search/recent"));
    const QString folders = QStringLiteral("/2") + user + QStringLiteral("/bookmarks/folders");
    EXPECT_EQ(requestsTo(get, folders).size(), 1 + 6) << "the list, and each folder once";
    EXPECT_EQ(threads.size(),
              library().rows("SELECT id FROM bookmarks WHERE conversation_id IS NOT NULL").size());
    EXPECT_EQ(simulator.problems(), QJsonArray());

    EXPECT_EQ(library().postIDs(), allPosts());
    EXPECT_GT(filedOnX().size(), 20);
    EXPECT_EQ(filedHere(), filedOnX());
    const auto expectedThreads = threadsOnX(threads);
    EXPECT_GT(expectedThreads.size(), 1);
    EXPECT_EQ(threadsHere(), expectedThreads);
    EXPECT_EQ(library().damage(), QStringList());
    EXPECT_EQ(lastRun().value(0), QStringLiteral("completed"));

    simulator.forgetRequests();
    EXPECT_EQ(mirelctl("sync --full").exitStatus, 0);
    EXPECT_EQ(threadRequests(), 0) << "a thread is fetched once";
    EXPECT_EQ(requestsTo(get, folders).size(), 7);
    EXPECT_EQ(filedHere(), filedOnX());
    EXPECT_EQ(threadsHere(), expectedThreads);
}

TEST_F(FullSync, AFullSyncThatIsStoppedByAFolderTellsItInTheHistory)
{
    simulator.setScenario(R"({"faults":[{"action":"status","status":429,"rateLimitReset":1900000000,)"
                          R"("path":"/2/users/*/bookmarks/folders/*","requests":{"from":2}}]})");
    const ProgramResult failed = mirelctl("sync --full");
    EXPECT_EQ(failed.exitStatus, 1);
    EXPECT_TRUE(failed.errors.startsWith("mirelctl: X rate limit reached until "))
        << failed.errors.constData();
    EXPECT_EQ(library().postIDs(), allPosts());

    const ProgramResult runs = mirelctl("history");
    EXPECT_EQ(runs.exitStatus, 0);
    EXPECT_TRUE(runs.output.contains("  initial  rate limited  2 pages, 70 received, 70 new. X rate limit "
                                     "reached until "))
        << runs.output.constData();
    const ProgramResult story = mirelctl("history 1");
    EXPECT_EQ(story.exitStatus, 0);
    EXPECT_EQ(story.output.count('\n'), 4) << "started, two pages, failed";
    EXPECT_TRUE(
        story.output.contains("  started  Started full initial bookmark sync with 50-item X pages.\n"));
    const auto entries = decodeJSON<QList<SyncLogEntry>>(mirelctl("--json history 1").output);
    ASSERT_EQ(entries.size(), 4);
    EXPECT_EQ(entries[3].event, SyncLogEntry::Event::failed);
    expectFailure(mirelctl("history 2"), "There is no sync \"2\".");

    simulator.setScenario();
    EXPECT_EQ(mirelctl("sync --full").exitStatus, 0);
    EXPECT_EQ(filedHere(), filedOnX());
    const auto history = decodeJSON<QList<SyncRun>>(mirelctl("--json history").output);
    ASSERT_EQ(history.size(), 2);
    EXPECT_EQ(history[0].status, SyncRun::Status::completed);
    EXPECT_EQ(history[1].rateLimitResetAt, Instant::fromSecondsSince1970(1'900'000'000));
}

TEST_F(FullSync, FetchesAThreadOnceOnDemand)
{
    ASSERT_EQ(mirelctl("sync").exitStatus, 0);
    EXPECT_EQ(threadRequests(), 0);
    const QString reference = library().column("SELECT tweet_id FROM bookmarks WHERE text LIKE '1/_ %'")[0];
    const QByteArray command = "thread " + reference.toUtf8();
    const ProgramResult first = mirelctl(command);
    EXPECT_EQ(first.exitStatus, 0);
    EXPECT_TRUE(first.output.startsWith("The thread has ")) << first.output.constData();
    EXPECT_EQ(threadRequests(), 1);
    expectSuccess(mirelctl(command), first.output);
    EXPECT_EQ(threadRequests(), 1);
    const auto bookmark = decodeJSON<Bookmark>(mirelctl("--json " + command).output);
    EXPECT_GE(bookmark.thread.size(), 2);
    EXPECT_TRUE(threadsHere().contains(*bookmark.conversationID));
}

TEST_F(FullSync, FetchesThePresentCountersOfAPost)
{
    ASSERT_EQ(mirelctl("sync").exitStatus, 0);
    const QString id = simulator.accountIDs().first();
    const auto metrics = decodeJSON<PostMetrics>(mirelctl("--json metrics " + id.toUtf8()).output);
    const QJsonValue onX =
        simulator.askX(QStringLiteral("/tweets/") + id + QStringLiteral("?tweet.fields=public_metrics"));
    const QJsonValue counters = onX[u"data"][u"public_metrics"];
    EXPECT_EQ(metrics.likes, counters[u"like_count"].toInteger(-1));
    EXPECT_EQ(metrics.reposts, counters[u"retweet_count"].toInteger(-1));
    simulator.setScenario(R"({"faults":[{"action":"status","status":404,"path":"/2/tweets/*"}]})");
    expectFailure(mirelctl("metrics " + id.toUtf8()), "X returned HTTP 404: Not Found Error");
}

TEST_F(FullSync, DeletesABookmarkHereAndOnXOrHereAlone)
{
    ASSERT_EQ(mirelctl("sync").exitStatus, 0);
    const QStringList before = simulator.accountIDs();
    const QByteArray first = before[0].toUtf8();
    const QByteArray second = before[1].toUtf8();
    simulator.setScenario(R"({"faults":[{"action":"status","status":403,"method":"DELETE",)"
                          R"("path":"/2/users/*/bookmarks/*"}]})");
    expectFailure(mirelctl("delete " + first),
                  "X returned HTTP 403: You are not permitted to perform this action.");
    EXPECT_EQ(mirelctl("show " + first).exitStatus, 0) << "it stays here too";

    simulator.setScenario();
    simulator.forgetRequests();
    expectSuccess(mirelctl("delete " + first), "Deleted the bookmark here and on X.\n");
    EXPECT_EQ(requestsTo(QStringLiteral("DELETE"), QStringLiteral("/2/")).size(), 1);
    expectSuccess(mirelctl("delete --keep-on-x " + second), "Deleted the bookmark here; it stays on X.\n");
    EXPECT_EQ(simulator.accountIDs(), before.sliced(1));
    expectFailure(mirelctl("show " + first), "That X post is not in the local library.");
    expectFailure(mirelctl("delete " + second), "That X post is not in the local library.");
    EXPECT_EQ(library().damage(), QStringList());
    EXPECT_EQ(simulator.problems(), QJsonArray());
}

} // namespace
} // namespace mirel::testing
