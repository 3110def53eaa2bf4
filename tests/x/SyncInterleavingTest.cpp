#include "testing/Printing.h"

#include "testing/Eventually.h"
#include "testing/LibraryChecks.h"
#include "x/HeldTransport.h"
#include "x/MirelSyncBench.h"
#include "x/PageBuilding.h"

#include "credentials/InMemoryCredentialVault.h"
#include "library/SQLiteStoreError.h"
#include "x/XAPIClient.h"
#include "x/XAPIError.h"

namespace mirel {
namespace {

using testing::errorOf;
using testing::eventually;
using testing::makePage;
using testing::makePost;
using testing::makeThread;

// A page in X's shape with the post of that id.
QByteArray pageOf(const QByteArray& id, const QByteArray& nextToken = {})
{
    QByteArray meta = R"("meta":{"result_count":1)";
    if (!nextToken.isEmpty())
        meta += R"(,"next_token":")" + nextToken + '"';
    return testPages::page({testPages::post(id, R"(,"created_at":"2026-01-01T00:00:00.000Z")")}).chopped(1) +
           ',' + meta + "}}";
}

// Syncs over a network on which the test answers each request when it pleases.
class SyncOverHeldNetwork : public testing::SyncTestBench
{
protected:
    static XCredentials account(double secondsLeft)
    {
        XCredentials credentials;
        credentials.clientID = QStringLiteral("client");
        credentials.accessToken = QStringLiteral("access");
        credentials.refreshToken = QStringLiteral("refresh");
        credentials.userID = QStringLiteral("42");
        credentials.expiresAt = Instant::fromSecondsSince1970(1'700'000'000 + secondsLeft);
        return credentials;
    }
    // The next request is due for a new token.
    void letTokenExpire() { blockOn(vault.saveXCredentials(account(-1))); }

    auto startFullSync() { return service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {}); }
    bool asked(qsizetype requests)
    {
        return eventually([this, requests] { return network.count() >= requests; });
    }
    [[nodiscard]] QByteArray path(size_t index) const { return network.request(index).url.path().toUtf8(); }
    [[nodiscard]] QByteArray tokenOf(size_t index) const
    {
        for (const auto& [name, value] : network.request(index).headers) {
            if (name == "Authorization")
                return value;
        }
        return {};
    }
    void answerToken(size_t index, const QByteArray& number)
    {
        network.answer(index, 200,
                       R"({"access_token":"access-)" + number + R"(","refresh_token":"refresh-)" + number +
                           R"(","expires_in":7200})");
    }
    QString storedRefreshToken()
    {
        const auto credentials = blockOn(vault.loadXCredentials());
        return credentials ? credentials->refreshToken.value_or(QString()) : QString();
    }
    SyncRun lastRun()
    {
        return onStore([](LocalLibraryStore& it) { return it.syncRuns(1).value(0); });
    }

    InMemoryCredentialVault vault{account(3600)};
    HeldTransport network;
    XAPIClient client{vault, network, QUrl(QStringLiteral("https://api.example/2")), library.clock.clock()};
    MirelSyncService service{client, *store, library.clock.clock()};
    const QByteArray noFolders = R"({"meta":{"result_count":0}})";
    const QByteArray counters =
        R"({"data":{"id":"1","public_metrics":{"retweet_count":1,"reply_count":2,"like_count":3,)"
        R"("quote_count":4,"bookmark_count":5,"impression_count":6}}})";
};

TEST_F(SyncOverHeldNetwork, TwoCallsMayBothRefreshTheToken)
{
    onStore([](LocalLibraryStore& it) { it.upsertFromX(makePost(1), Instant()); });
    letTokenExpire();
    auto sync = startFullSync();
    auto metrics = service.refreshMetrics(1);
    ASSERT_TRUE(asked(2));
    EXPECT_EQ(path(0), "/2/oauth2/token");
    EXPECT_EQ(path(1), "/2/oauth2/token");
    EXPECT_EQ(network.request(0).body, network.request(1).body);
    answerToken(0, "first");
    answerToken(1, "second");
    ASSERT_TRUE(asked(4));
    EXPECT_EQ(storedRefreshToken(), QStringLiteral("refresh-second")) << "the last one saved";
    const bool isSyncFirst = path(2).endsWith("/bookmarks");
    const size_t bookmarks = isSyncFirst ? 2 : 3;
    const size_t numbers = isSyncFirst ? 3 : 2;
    EXPECT_NE(tokenOf(bookmarks), tokenOf(numbers)) << "each goes on with what it was given";
    network.answer(numbers, 200, counters);
    EXPECT_EQ(blockOn(std::move(metrics)).metrics.likes, 3);
    network.answer(bookmarks, 200, pageOf("77"));
    ASSERT_TRUE(asked(5));
    EXPECT_EQ(tokenOf(4), "Bearer access-second");
    network.answer(4, 200, noFolders);
    EXPECT_EQ(blockOn(std::move(sync)).created, 1);
    EXPECT_EQ(lastRun().status, SyncRun::Status::completed);
}

TEST_F(SyncOverHeldNetwork, WhoseRefreshXRefusesFailsAndTheNextRunHasTheOthersToken)
{
    onStore([](LocalLibraryStore& it) { it.upsertFromX(makePost(1), Instant()); });
    letTokenExpire();
    auto metrics = service.refreshMetrics(1);
    ASSERT_TRUE(asked(1));
    auto sync = startFullSync();
    ASSERT_TRUE(asked(2));
    answerToken(0, "first");
    // X has forgotten the old refresh token by now.
    network.answer(
        1, 400,
        R"({"error":"invalid_request","error_description":"Value passed for the token was invalid."})");
    const auto error = errorOf<XAPIError>([&] { blockOn(std::move(sync)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->errorCase(), XAPIError::Case::http);
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().errorMessage, error->description());
    ASSERT_TRUE(asked(3));
    network.answer(2, 200, counters);
    EXPECT_EQ(blockOn(std::move(metrics)).metrics.likes, 3);
    EXPECT_EQ(storedRefreshToken(), QStringLiteral("refresh-first"));

    auto next = startFullSync();
    ASSERT_TRUE(asked(4));
    EXPECT_EQ(tokenOf(3), "Bearer access-first");
    network.answer(3, 200, pageOf("77"));
    ASSERT_TRUE(asked(5));
    network.answer(4, 200, noFolders);
    EXPECT_EQ(blockOn(std::move(next)).created, 1);
}

TEST_F(SyncOverHeldNetwork, CredentialsThatAreClearedEndTheSyncAtItsNextRequest)
{
    auto sync = startFullSync();
    ASSERT_TRUE(asked(1));
    blockOn(vault.clearAll());
    network.answer(0, 200, pageOf("77", "more"));
    EXPECT_EQ(errorOf<XAPIError>([&] { blockOn(std::move(sync)); }), XAPIError::credentialsMissing());
    EXPECT_EQ(network.count(), 1);
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().errorMessage, QStringLiteral("X credentials are not configured."));
    EXPECT_EQ(lastRun().created, 1) << "the page that was under way is kept";
    EXPECT_EQ(storedCount(), 1);
}

TEST_F(SyncOverHeldNetwork, CredentialsThatAreClearedBetweenThePhasesFailTheRunWithItsCounters)
{
    auto sync = startFullSync();
    ASSERT_TRUE(asked(1));
    network.answer(0, 200, pageOf("77"));
    ASSERT_TRUE(asked(2));
    blockOn(vault.clearAll());
    network.answer(1, 200, R"({"data":[{"id":"900","name":"Kitchen"}]})");
    EXPECT_EQ(errorOf<XAPIError>([&] { blockOn(std::move(sync)); }), XAPIError::credentialsMissing());
    EXPECT_EQ(network.count(), 2);
    EXPECT_EQ(lastRun().created, 1);
    EXPECT_EQ(onStore([](LocalLibraryStore& it) { return it.folders().size(); }), 1);
}

TEST_F(SyncOverHeldNetwork, AnotherAccountThatIsConnectedMeanwhileIsAskedFromTheNextRequestOn)
{
    auto sync = startFullSync();
    ASSERT_TRUE(asked(1));
    XCredentials other = account(3600);
    other.userID = QStringLiteral("43");
    other.accessToken = QStringLiteral("other");
    blockOn(vault.saveXCredentials(other));
    network.answer(0, 200, pageOf("77"));
    ASSERT_TRUE(asked(2));
    EXPECT_EQ(path(1), "/2/users/43/bookmarks/folders");
    EXPECT_EQ(tokenOf(1), "Bearer other");
    network.answer(1, 200, noFolders);
    EXPECT_EQ(blockOn(std::move(sync)).created, 1);
}

// Syncs during which something else happens.
class SyncInterleaving : public testing::MirelSyncBench
{
protected:
    void SetUp() override
    {
        bookmarkPosts(1, 4);
        x.folders = [](std::optional<QString>) {
            return XPage<XBookmarkFolder>{.items = {{QStringLiteral("F1"), QStringLiteral("Kitchen")}}};
        };
        x.folderPosts = [](const QString&, std::optional<QString>) {
            return XPage<QString>{.items = {makePost(1).tweetID, makePost(2).tweetID}};
        };
        x.thread = [](const QString&) { return makeThread(2); };
        preferThreads();
    }

    // While X is asked for `question`, the user does `edit(LocalLibraryStore&)`.
    template <typename Edit>
    void meanwhile(const QString& question, Edit edit)
    {
        x.meanwhile = [this, question, edit](const QString& asked) -> QCoro::Task<> {
            if (asked == question)
                co_await store->call(edit);
        };
    }
    void expectCompleteNextRun()
    {
        x.meanwhile = {};
        syncFully();
        EXPECT_EQ(lastRun().status, SyncRun::Status::completed);
        testing::expectWhole(library.path());
    }
    static qint64 idOf(LocalLibraryStore& library, int number)
    {
        return library.bookmark(makePost(number).tweetID)->id;
    }
};

TEST_F(SyncInterleaving, ASecondSyncLeavesARunOfItsOwn)
{
    Gate first;
    bool isHeld = false;
    x.meanwhile = [&](const QString& asked) -> QCoro::Task<> {
        if (asked == u"bookmarks" && !std::exchange(isHeld, true))
            co_await first.opened();
    };
    auto task = service.sync(SyncRun::Kind::initial, BookmarkSyncMode::full, {});
    ASSERT_TRUE(eventually([&] { return isHeld; }));
    syncQuickly();
    const QList<SyncRun> during = onStore([](LocalLibraryStore& it) { return it.syncRuns(10); });
    ASSERT_EQ(during.size(), 2);
    EXPECT_EQ(during[0].status, SyncRun::Status::completed);
    EXPECT_EQ(during[0].created, 4);
    EXPECT_EQ(during[1].status, SyncRun::Status::running);
    first.open();
    const BookmarkSyncSummary summary = blockOn(std::move(task));
    EXPECT_EQ(summary.created, 0);
    EXPECT_EQ(summary.updated, 4);
    const QList<SyncRun> after = onStore([](LocalLibraryStore& it) { return it.syncRuns(10); });
    EXPECT_EQ(after[0], during[0]) << "each writes to its own run";
    EXPECT_EQ(after[1].status, SyncRun::Status::completed);
    EXPECT_EQ(after[1].kind, SyncRun::Kind::initial);
    EXPECT_EQ(after[1].updated, 4);
}

TEST_F(SyncInterleaving, CancelingOneSyncLeavesTheOtherAlone)
{
    Gate gate;
    bool isHeld = false;
    x.meanwhile = [&](const QString& asked) -> QCoro::Task<> {
        if (asked == u"bookmarks" && !std::exchange(isHeld, true))
            co_await gate.opened();
    };
    const SyncCancellation cancellation;
    auto task = service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {}, cancellation);
    ASSERT_TRUE(eventually([&] { return isHeld; }));
    cancellation.request();
    EXPECT_EQ(syncFully().created, 4);
    EXPECT_TRUE(errorOf<SyncCanceled>([&] { blockOn(std::move(task)); }));
    gate.open();
    blockOn(cancellation.leftBehind());
    const QList<SyncRun> runs = onStore([](LocalLibraryStore& it) { return it.syncRuns(10); });
    EXPECT_EQ(runs[0].status, SyncRun::Status::completed);
    EXPECT_EQ(runs[1].status, SyncRun::Status::failed);
}

TEST_F(SyncInterleaving, WhatTheUserWritesMeanwhileStays)
{
    syncFully();
    meanwhile(QStringLiteral("bookmarks"), [](LocalLibraryStore& it) {
        it.updateLocalState(idOf(it, 1), QStringLiteral("My note"), true, true, false);
        it.addTag(it.createTag(QStringLiteral("Mine"), QStringLiteral("#123456"), Tag::Source::manual).id,
                  idOf(it, 1));
    });
    library.clock.advance(60);
    syncFully();
    const Bookmark bookmark = stored(1);
    EXPECT_EQ(bookmark.note, QStringLiteral("My note"));
    EXPECT_TRUE(bookmark.isRead);
    EXPECT_TRUE(bookmark.isFavorite);
    ASSERT_EQ(bookmark.tags.size(), 1);
    EXPECT_EQ(bookmark.syncedAt, library.clock.now());
}

TEST_F(SyncInterleaving, ABookmarkThatIsTakenOutOfItsFolderDuringTheThreadsStaysOutUntilTheNextFullSync)
{
    meanwhile(QStringLiteral("conversation 20004 of 42"),
              [](LocalLibraryStore& it) { it.unassignFolder(idOf(it, 1)); });
    syncFully();
    EXPECT_EQ(folderOf(1), "");
    EXPECT_EQ(folderOf(2), "Kitchen");
    expectCompleteNextRun();
    EXPECT_EQ(folderOf(1), "Kitchen");
}

TEST_F(SyncInterleaving, AFolderThatIsDeletedWhileItsPostsArriveFailsTheRun)
{
    meanwhile(QStringLiteral("folder F1"),
              [](LocalLibraryStore& it) { it.deleteFolder(it.folders().first().id); });
    EXPECT_TRUE(errorOf<SQLiteStoreError>([this] { syncFully(); }));
    EXPECT_EQ(lastRun().status, SyncRun::Status::failed);
    EXPECT_EQ(lastRun().created, 4);
    expectCompleteNextRun();
    EXPECT_EQ(folderOf(1), "Kitchen");
}

TEST_F(SyncInterleaving, AFolderThatIsRenamedWhileItsPostsArriveIsFilledAllTheSame)
{
    meanwhile(QStringLiteral("folder F1"), [](LocalLibraryStore& it) {
        it.updateFolder(it.folders().first().id, QStringLiteral("Cooking"), {}, {});
    });
    syncFully();
    EXPECT_EQ(folderOf(1), "Cooking");
}

TEST_F(SyncInterleaving, ABookmarkThatIsDeletedBeforeItsThreadIsAskedForFailsTheRun)
{
    meanwhile(QStringLiteral("conversation 20004 of 42"),
              [](LocalLibraryStore& it) { it.deleteBookmarkLocally(idOf(it, 3)); });
    EXPECT_TRUE(errorOf<SQLiteStoreError>([this] { syncFully(); }));
    EXPECT_EQ(lastRun().errorMessage, QStringLiteral("The bookmark no longer exists."));
    EXPECT_EQ(lastRun().created, 4);
    EXPECT_EQ(stored(4).thread.size(), 2);
    // It is gone on X as well.
    x.answer = [](int) {
        XBookmarkPage page = makePage(1, 4);
        page.items.removeAt(2);
        return page;
    };
    expectCompleteNextRun();
    EXPECT_EQ(stored(1).thread.size(), 2);
}

TEST_F(SyncInterleaving, ABookmarkThatIsDeletedWhileItsThreadIsFetchedIsNotRevived)
{
    meanwhile(QStringLiteral("conversation 20003 of 42"),
              [](LocalLibraryStore& it) { it.deleteBookmarkLocally(idOf(it, 3)); });
    EXPECT_TRUE(errorOf<SQLiteStoreError>([this] { syncFully(); }));
    EXPECT_EQ(lastRun().errorMessage, QStringLiteral("The bookmark no longer exists."));
    EXPECT_FALSE(onStore([](LocalLibraryStore& it) { return it.bookmark(makePost(3).tweetID); }));
}

TEST_F(SyncInterleaving, ABookmarkThatIsDeletedWhileItsCountersAreFetchedIsAnError)
{
    syncFully();
    meanwhile(QStringLiteral("metrics 10003"),
              [](LocalLibraryStore& it) { it.deleteBookmarkLocally(idOf(it, 3)); });
    const auto error = errorOf<SQLiteStoreError>([this] { blockOn(service.refreshMetrics(stored(3).id)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description(), QStringLiteral("The bookmark no longer exists."));
}

TEST_F(SyncInterleaving, TheSameThreadMayBeAskedForTwiceAtOnce)
{
    prefer([](AppPreferences& it) { it.threadEnrichment = AppPreferences::ThreadEnrichment::onDemand; });
    syncFully();
    const qint64 id = stored(1).id;
    Gate gate;
    bool isHeld = false;
    x.meanwhile = [&](const QString&) -> QCoro::Task<> {
        if (!std::exchange(isHeld, true))
            co_await gate.opened();
    };
    auto late = service.enrichThread(id);
    ASSERT_TRUE(eventually([&] { return isHeld; }));
    EXPECT_EQ(blockOn(service.enrichThread(id)).thread.size(), 2);
    gate.open();
    EXPECT_EQ(blockOn(std::move(late)).thread.size(), 2);
    EXPECT_EQ(x.asked.filter(QStringLiteral("conversation")).size(), 2);
}

TEST_F(SyncInterleaving, AThreadThatTheReaderFetchedDuringASyncIsNotFetchedAgain)
{
    bool isFetched = false;
    x.meanwhile = [&](const QString& asked) -> QCoro::Task<> {
        if (asked == u"folders" && !std::exchange(isFetched, true)) {
            const auto id = [](LocalLibraryStore& it) { return idOf(it, 2); };
            co_await service.enrichThread(co_await store->call(id));
        }
    };
    syncFully();
    EXPECT_EQ(x.asked.count(QStringLiteral("conversation 20002 of 42")), 1);
}

// Edits one after the other, for as long as the sync runs.
QCoro::Task<> editUntil(const bool* isOver, Serial<LocalLibraryStore>* store, int* edits)
{
    while (!*isOver) {
        const QString note = QStringLiteral("Note %1").arg(++*edits);
        const auto edit = [note](LocalLibraryStore& it) {
            const Tag label = it.createTag(note, QStringLiteral("#123456"), Tag::Source::manual);
            for (const qint64 id : it.allBookmarkIDs(LibraryFilter::all, LibrarySort::newest)) {
                it.updateLocalState(id, note, true, false, false);
                it.addTag(label.id, id);
            }
        };
        co_await store->call(edit);
    }
}

TEST_F(SyncInterleaving, ManyEditsDuringASyncAndTheSyncItselfLoseNothing)
{
    bookmarkPosts(1, 40);
    syncFully();
    x.folderPosts = [](const QString&, std::optional<QString>) {
        return XPage<QString>{.items = {makePost(3).tweetID, makePost(4).tweetID}};
    };
    onStore([](LocalLibraryStore& it) {
        it.createRule(
            QStringLiteral("Filed"), QStringLiteral("folder:kitchen"), BookmarkRule::Action::tag,
            it.createTag(QStringLiteral("Filed"), QStringLiteral("#123456"), Tag::Source::manual).id, true);
    });
    bookmarkPosts(1, 60);
    bool isOver = false;
    int edits = 0;
    auto user = editUntil(&isOver, store.get(), &edits);
    syncFully();
    isOver = true;
    blockOn(std::move(user));
    EXPECT_GT(edits, 20) << "there were edits during the sync";
    EXPECT_EQ(lastRun().status, SyncRun::Status::completed);
    EXPECT_EQ(storedCount(), 60);
    EXPECT_EQ(folderOf(3), "Kitchen");
    EXPECT_EQ(stored(60).thread.size(), 2);
    // Each label is on what was there when it was made.
    EXPECT_GE(stored(1).tags.size(), edits);
    EXPECT_EQ(stored(1).note, QStringLiteral("Note %1").arg(edits));
    testing::expectWhole(library.path());
}

} // namespace
} // namespace mirel
