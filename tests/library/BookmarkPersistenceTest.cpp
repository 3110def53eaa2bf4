#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include "library/SQLiteStoreError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace mirel {
namespace {

class BookmarkPersistence : public ::testing::Test
{
protected:
    Bookmark upsert(const SyncedBookmark& post) { return store->upsertFromX(post, library.clock.now()); }

    template <typename Operation>
    void expectError(SQLiteStoreError::Case errorCase, const char* description, Operation operation)
    {
        try {
            operation();
            FAIL() << "nothing was thrown";
        } catch (const SQLiteStoreError& error) {
            EXPECT_EQ(error.errorCase(), errorCase);
            EXPECT_EQ(error.description(), QString::fromLatin1(description));
        }
    }

    testing::TemporaryLibrary library;
    std::unique_ptr<LocalLibraryStore> store = library.open();
    std::unique_ptr<SQLiteConnection> connection = library.connect();
};

SyncedBookmark makeFullPost()
{
    SyncedBookmark post = testing::makePost(7);
    post.contentTitle = QStringLiteral("A title");
    post.contentText = QStringLiteral("A long body 🐻‍❄️");
    post.media = {{.id = QStringLiteral("3_1"),
                   .kind = MediaKind::photo,
                   .url = QUrl(QStringLiteral("https://pictures.example/1.jpg")),
                   .altText = QStringLiteral("A chart"),
                   .width = 1200,
                   .height = 675},
                  {.id = QStringLiteral("7_2"),
                   .kind = MediaKind::video,
                   .url = QUrl(QStringLiteral("https://video.example/2.mp4")),
                   .previewURL = QUrl(QStringLiteral("https://pictures.example/2.jpg"))}};
    post.quotedPost = QuotedPost{
        .tweetID = QStringLiteral("99"),
        .author = SyncedAuthor{.xID = QStringLiteral("5"),
                               .name = QStringLiteral("Q"),
                               .username = QStringLiteral("q")},
        .text = QStringLiteral("Quoted"),
        .contentTitle = QStringLiteral("Quoted title"),
    };
    return post;
}

ThreadPost makeThreadPost(const char* id, double seconds)
{
    return {.tweetID = QString::fromLatin1(id),
            .text = QStringLiteral("Thread ") + QString::fromLatin1(id),
            .createdAt = Instant::fromSecondsSince1970(seconds),
            .metrics = {.likes = 3}};
}

TEST_F(BookmarkPersistence, StoresAPostAndReadsItBackWhole)
{
    const SyncedBookmark post = makeFullPost();
    const Bookmark stored = upsert(post);
    EXPECT_EQ(stored.tweetID, post.tweetID);
    EXPECT_EQ(stored.conversationID, post.conversationID);
    EXPECT_EQ(stored.author.xID, post.author.xID);
    EXPECT_EQ(stored.author.name, post.author.name);
    EXPECT_EQ(stored.author.username, post.author.username);
    EXPECT_EQ(stored.author.profileImageURL, post.author.profileImageURL);
    EXPECT_EQ(stored.text, post.text);
    EXPECT_EQ(stored.contentTitle, post.contentTitle);
    EXPECT_EQ(stored.contentText, post.contentText);
    EXPECT_EQ(stored.language, post.language);
    EXPECT_EQ(stored.sourceURL, post.sourceURL);
    EXPECT_EQ(stored.createdAt, post.createdAt);
    EXPECT_EQ(stored.syncedAt, library.clock.now());
    EXPECT_EQ(stored.metrics, post.metrics);
    EXPECT_EQ(stored.media, post.media);
    EXPECT_EQ(stored.quotedPost, post.quotedPost);
    EXPECT_EQ(stored.rawJSON, post.rawJSON);
    EXPECT_TRUE(stored.thread.isEmpty());
    EXPECT_FALSE(stored.threadEnrichedAt || stored.note || stored.reviewedAt || stored.folder);
    EXPECT_FALSE(stored.isRead || stored.isFavorite || stored.isArchived);
    EXPECT_EQ(store->bookmark(stored.id), stored);
    EXPECT_EQ(store->bookmark(post.tweetID), stored);
}

TEST_F(BookmarkPersistence, ResyncingChangesWhatBelongsToXAndKeepsWhatBelongsToTheUser)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    store->updateLocalState(id, QStringLiteral("my note"), true, true, true);
    store->replaceThread(id, {makeThreadPost("1", 1)});
    connection->execute(
        "INSERT INTO tags (name, slug, color_hex) VALUES ('b', 'b', '#111111'), ('A', 'a', '#222222');"
        "INSERT INTO bookmark_tags SELECT 1, id FROM tags;"
        "INSERT INTO folders (name, slug) VALUES ('Later', 'later');"
        "INSERT INTO bookmark_folders VALUES (1, 1);");
    const Bookmark before = store->bookmark(id);

    library.clock.advance(60);
    SyncedBookmark post = testing::makePost(1);
    post.text = QStringLiteral("Edited");
    post.conversationID.reset();
    post.language.reset();
    post.metrics.likes = 1000;
    post.author.profileImageURL.reset();
    const Bookmark after = upsert(post);

    EXPECT_EQ(after.text, QStringLiteral("Edited"));
    EXPECT_EQ(after.conversationID, std::nullopt);
    EXPECT_EQ(after.language, std::nullopt);
    EXPECT_EQ(after.metrics.likes, 1000);
    EXPECT_EQ(after.author.profileImageURL, std::nullopt) << "X's silence erases the picture";
    EXPECT_EQ(after.syncedAt, library.clock.now());
    EXPECT_EQ(after.id, before.id);
    EXPECT_EQ(after.author.id, before.author.id);
    EXPECT_EQ(after.note, QStringLiteral("my note"));
    EXPECT_TRUE(after.isRead && after.isFavorite && after.isArchived);
    EXPECT_EQ(after.reviewedAt, before.reviewedAt);
    EXPECT_EQ(after.thread, before.thread);
    EXPECT_EQ(after.threadEnrichedAt, before.threadEnrichedAt);
    EXPECT_EQ(after.tags, before.tags);
    EXPECT_EQ(after.folder, before.folder);
}

TEST_F(BookmarkPersistence, LabelsComeOrderedByNameWithoutRegardToCase)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    connection->execute("INSERT INTO tags (name, slug, color_hex, source) VALUES "
                        "('beta', 'beta', '#111111', 'generated'), ('Alpha', 'alpha', '#222222', 'stranger');"
                        "INSERT INTO bookmark_tags SELECT 1, id FROM tags;");
    const QList<Tag> tags = store->bookmark(id).tags;
    ASSERT_EQ(tags.size(), 2);
    EXPECT_EQ(tags[0].name, QStringLiteral("Alpha"));
    EXPECT_EQ(tags[0].source, Tag::Source::manual) << "an unknown source reads as manual";
    EXPECT_EQ(tags[1].name, QStringLiteral("beta"));
    EXPECT_EQ(tags[1].source, Tag::Source::generated);
}

TEST_F(BookmarkPersistence, AFolderIsReadWithAllItsFields)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    connection->execute("INSERT INTO folders VALUES (1, 'Top', 'top', NULL, NULL, 'local', NULL), "
                        "(2, 'Sub', 'sub', 'About', 1, 'x', '77');"
                        "INSERT INTO bookmark_folders VALUES (1, 2);");
    EXPECT_EQ(store->bookmark(id).folder, (Folder{.id = 2,
                                                  .name = QStringLiteral("Sub"),
                                                  .slug = QStringLiteral("sub"),
                                                  .description = QStringLiteral("About"),
                                                  .parentID = 1,
                                                  .source = Folder::Source::x,
                                                  .xFolderID = QStringLiteral("77")}));
    connection->execute("UPDATE folders SET source = 'stranger' WHERE id = 2");
    EXPECT_EQ(store->bookmark(id).folder->source, Folder::Source::local);
}

TEST_F(BookmarkPersistence, ABookmarkThatQuotesNothingStoresTheTextNull)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    EXPECT_EQ(connection->firstRow("SELECT quoted_json FROM bookmarks")->text("quoted_json"),
              QStringLiteral("null"));
    EXPECT_EQ(store->bookmark(id).quotedPost, std::nullopt);
}

TEST_F(BookmarkPersistence, DatesAreStoredAsSecondsSince1970)
{
    upsert(testing::makePost(1));
    const auto row = connection->firstRow("SELECT post_created_at, synced_at FROM bookmarks");
    EXPECT_EQ(row->number("post_created_at"), 1'600'000'001.5);
    EXPECT_EQ(row->number("synced_at"), library.clock.now().secondsSince1970());
}

TEST_F(BookmarkPersistence, DatesInsideJSONAreStoredAsSecondsSince2001)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    store->replaceThread(id, {makeThreadPost("1", 978'307'200 + 12.5)});
    EXPECT_THAT(connection->firstRow("SELECT thread_json FROM bookmarks")->text("thread_json")->toStdString(),
                ::testing::HasSubstr("\"createdAt\":12.5"));
}

TEST_F(BookmarkPersistence, ResyncingADeletedPostReportsItAndLeavesItDeletedWithTheNewText)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    store->deleteBookmarkLocally(id);
    library.clock.advance(60);
    SyncedBookmark post = testing::makePost(1);
    post.text = QStringLiteral("New text");
    expectError(SQLiteStoreError::Case::notFound, "The bookmark no longer exists.", [&] { upsert(post); });
    const auto row = connection->firstRow("SELECT text, synced_at, deleted_at FROM bookmarks");
    EXPECT_EQ(row->text("text"), QStringLiteral("New text"));
    EXPECT_EQ(row->instant("synced_at"), library.clock.now());
    EXPECT_TRUE(row->number("deleted_at"));
    upsert(testing::makePost(2));
}

TEST_F(BookmarkPersistence, ADeletedBookmarkIsHiddenAndItsPostsIdStaysTaken)
{
    const Bookmark bookmark = upsert(testing::makePost(1));
    store->deleteBookmarkLocally(bookmark.id);
    EXPECT_EQ(store->bookmark(bookmark.tweetID), std::nullopt);
    expectError(SQLiteStoreError::Case::notFound, "The bookmark no longer exists.",
                [&] { (void)store->bookmark(bookmark.id); });
    EXPECT_TRUE(store->allBookmarkTweetIDs().isEmpty());
    EXPECT_EQ(connection->firstRow("SELECT deleted_at FROM bookmarks")->instant("deleted_at"),
              library.clock.now());
    EXPECT_EQ(connection->rows("SELECT id FROM bookmarks").size(), 1U);
}

TEST_F(BookmarkPersistence, AMissingBookmarkIsReportedByIdAndAbsentByPost)
{
    expectError(SQLiteStoreError::Case::notFound, "The bookmark no longer exists.",
                [&] { (void)store->bookmark(12); });
    EXPECT_EQ(store->bookmark(QStringLiteral("12")), std::nullopt);
}

TEST_F(BookmarkPersistence, AllPostIdsAreThoseOfLiveRows)
{
    upsert(testing::makePost(1));
    store->deleteBookmarkLocally(upsert(testing::makePost(2)).id);
    upsert(testing::makePost(3));
    EXPECT_EQ(store->allBookmarkTweetIDs(),
              (QSet<QString>{testing::makePost(1).tweetID, testing::makePost(3).tweetID}));
    EXPECT_EQ(store->tweetIDs(),
              (QHash<qint64, QString>{{1, testing::makePost(1).tweetID}, {3, testing::makePost(3).tweetID}}));
}

TEST_F(BookmarkPersistence, TheFirstMarkingAsReadIsRemembered)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    const Instant first = library.clock.now();
    store->updateLocalState(id, {}, true, false, false);
    EXPECT_EQ(store->bookmark(id).reviewedAt, first);
    library.clock.advance(10);
    store->updateLocalState(id, {}, true, false, false);
    EXPECT_EQ(store->bookmark(id).reviewedAt, first);
    store->updateLocalState(id, {}, false, false, false);
    EXPECT_FALSE(store->bookmark(id).isRead);
    EXPECT_EQ(store->bookmark(id).reviewedAt, first);
    store->updateLocalState(id, {}, true, false, false);
    EXPECT_EQ(store->bookmark(id).reviewedAt, first);
}

TEST_F(BookmarkPersistence, UpdatingWhatDoesNotExistIsNoError)
{
    EXPECT_NO_THROW(store->updateLocalState(99, QStringLiteral("a"), true, true, true));
    EXPECT_NO_THROW(store->replaceThread(99, {}));
    EXPECT_NO_THROW(store->markThreadEnriched(99, library.clock.now()));
    EXPECT_NO_THROW(store->updateMetrics(99, {}));
    EXPECT_NO_THROW(store->deleteBookmarkLocally(99));
}

TEST_F(BookmarkPersistence, AThreadIsStoredEarliestFirstAndPostsOfOneDateKeepTheirOrder)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    store->replaceThread(id, {makeThreadPost("c", 30), makeThreadPost("a", 10), makeThreadPost("b", 30)});
    QStringList order;
    for (const ThreadPost& post : store->bookmark(id).thread)
        order.append(post.tweetID);
    EXPECT_EQ(order.join(u' '), QStringLiteral("a c b"));
    EXPECT_EQ(store->bookmark(id).threadEnrichedAt, library.clock.now());
}

TEST_F(BookmarkPersistence, AnEmptyThreadStillMarksTheBookmarkEnriched)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    store->replaceThread(id, {});
    EXPECT_EQ(connection->firstRow("SELECT thread_json FROM bookmarks")->text("thread_json"),
              QStringLiteral("[]"));
    EXPECT_EQ(store->bookmark(id).threadEnrichedAt, library.clock.now());
}

TEST_F(BookmarkPersistence, MarkingEnrichedLeavesTheThreadAlone)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    store->replaceThread(id, {makeThreadPost("a", 1)});
    store->markThreadEnriched(id, Instant::fromSecondsSince1970(5));
    EXPECT_EQ(store->bookmark(id).thread.size(), 1);
    EXPECT_EQ(store->bookmark(id).threadEnrichedAt, Instant::fromSecondsSince1970(5));
}

TEST_F(BookmarkPersistence, UpdatingTheCountersLeavesTheSyncTimeAlone)
{
    const Bookmark before = upsert(testing::makePost(1));
    library.clock.advance(10);
    const PostMetrics metrics{1, 2, 3, 4, 5, 6};
    store->updateMetrics(before.id, metrics);
    EXPECT_EQ(store->bookmark(before.id).metrics, metrics);
    EXPECT_EQ(store->bookmark(before.id).syncedAt, before.syncedAt);
}

TEST_F(BookmarkPersistence, AnUpsertReturnsWhatTheLibraryHolds)
{
    const Bookmark first = upsert(makeFullPost());
    EXPECT_EQ(first, store->bookmark(1));

    SyncedBookmark odd = makeFullPost();
    odd.text = QStringLiteral("before") + QChar::Null + QStringLiteral("after");
    odd.author.name = QStringLiteral("half ") + QChar(0xD83D);
    odd.author.profileImageURL.reset();
    odd.contentTitle.reset();
    odd.rawJSON = QByteArrayLiteral("{\"a\":1}\0x");
    const Bookmark again = upsert(odd);
    EXPECT_EQ(again, store->bookmark(1));
    EXPECT_EQ(again.text, QStringLiteral("before"));
    EXPECT_EQ(again.rawJSON, "{\"a\":1}");

    connection->execute("INSERT INTO tags (id, name, slug, color_hex) VALUES (4, 'Art', 'art', '#fff');"
                        "INSERT INTO bookmark_tags (bookmark_id, tag_id) VALUES (1, 4);"
                        "INSERT INTO folders (id, name, slug) VALUES (5, 'Later', 'later');"
                        "INSERT INTO bookmark_folders (bookmark_id, folder_id) VALUES (1, 5)");
    store->updateLocalState(1, QStringLiteral("mine"), true, true, true);
    store->replaceThread(1, {makeThreadPost("a", 1), makeThreadPost("b", 2)});
    const Bookmark filed = upsert(makeFullPost());
    EXPECT_EQ(filed, store->bookmark(1));
    EXPECT_EQ(filed.tags.size(), 1);
    EXPECT_TRUE(filed.folder);
    EXPECT_EQ(filed.thread.size(), 2);
}

TEST_F(BookmarkPersistence, AnAuthorFollowsTheLatestPost)
{
    SyncedBookmark post = testing::makePost(1);
    const qint64 author = upsert(post).author.id;
    EXPECT_EQ(upsert(post).author.id, author);
    for (const auto change : {+[](SyncedAuthor& a) { a.name = QStringLiteral("Ada King"); },
                              +[](SyncedAuthor& a) { a.username = QStringLiteral("countess"); },
                              +[](SyncedAuthor& a) { a.profileImageURL.reset(); }}) {
        change(post.author);
        const Bookmark changed = upsert(post);
        EXPECT_EQ(changed.author.id, author);
        EXPECT_EQ(changed.author.name, post.author.name);
        EXPECT_EQ(changed.author.username, post.author.username);
        EXPECT_EQ(changed.author.profileImageURL, post.author.profileImageURL);
        EXPECT_EQ(changed, store->bookmark(changed.id));
    }
}

TEST_F(BookmarkPersistence, AFailedUpsertLeavesNothingBehindAndReportsTheFirstError)
{
    connection->execute(
        "CREATE TRIGGER refuse BEFORE INSERT ON bookmarks BEGIN SELECT RAISE(ABORT, 'refused'); END");
    expectError(SQLiteStoreError::Case::execute, "Local library command failed: refused",
                [&] { upsert(testing::makePost(1)); });
    EXPECT_TRUE(connection->rows("SELECT id FROM authors").empty());
    connection->execute("DROP TRIGGER refuse");
    upsert(testing::makePost(1));
}

TEST_F(BookmarkPersistence, AnAuthorThatCannotBeFoundAgainIsReported)
{
    connection->execute("CREATE TRIGGER vanish AFTER INSERT ON authors BEGIN DELETE FROM authors; END");
    expectError(SQLiteStoreError::Case::notFound, "The synchronized author could not be loaded.",
                [&] { upsert(testing::makePost(1)); });
}

TEST_F(BookmarkPersistence, ABookmarkThatCannotBeFoundAgainIsReported)
{
    connection->execute("CREATE TRIGGER vanish AFTER INSERT ON bookmarks BEGIN DELETE FROM bookmarks; END");
    expectError(SQLiteStoreError::Case::notFound, "The synchronized bookmark could not be loaded.",
                [&] { upsert(testing::makePost(1)); });
    EXPECT_TRUE(connection->rows("SELECT id FROM authors").empty()) << "the transaction was rolled back";
}

struct DamageCase
{
    const char* name;
    const char* sql;
};

class DamagedRequiredData : public BookmarkPersistence, public ::testing::WithParamInterface<DamageCase>
{
};

TEST_P(DamagedRequiredData, FailsTheBookmarkAndEveryPageWithIt)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    upsert(testing::makePost(2));
    connection->execute("PRAGMA ignore_check_constraints = ON");
    connection->execute(GetParam().sql);
    const char* description = "Local library command failed: A bookmark contains invalid required data.";
    expectError(SQLiteStoreError::Case::execute, description, [&] { (void)store->bookmark(id); });
    expectError(SQLiteStoreError::Case::execute, description,
                [&] { (void)store->listBookmarks(LibraryFilter::all, 50, 0, LibrarySort::newest); });
}

INSTANTIATE_TEST_SUITE_P(
    Columns, DamagedRequiredData,
    ::testing::Values(
        DamageCase{"TweetID", "UPDATE bookmarks SET tweet_id = x'00' WHERE id = 1"},
        DamageCase{"AuthorXID", "UPDATE authors SET x_id = x'00'"},
        DamageCase{"AuthorName", "UPDATE authors SET name = x'00'"},
        DamageCase{"AuthorUsername", "UPDATE authors SET username = x'00'"},
        DamageCase{"Text", "UPDATE bookmarks SET text = x'00' WHERE id = 1"},
        DamageCase{"SourceURL", "UPDATE bookmarks SET source_url = x'00' WHERE id = 1"},
        DamageCase{"SourceURLThatIsNone", "UPDATE bookmarks SET source_url = 'http://[' WHERE id = 1"},
        DamageCase{"EmptySourceURL", "UPDATE bookmarks SET source_url = '' WHERE id = 1"},
        DamageCase{"PostCreatedAt", "UPDATE bookmarks SET post_created_at = 'soon' WHERE id = 1"},
        DamageCase{"SyncedAt", "UPDATE bookmarks SET synced_at = 'soon' WHERE id = 1"}),
    [](const auto& row) { return row.param.name; });

class DamagedJSON : public BookmarkPersistence, public ::testing::WithParamInterface<DamageCase>
{
};

TEST_P(DamagedJSON, FailsTheBookmarkWithTheErrorOfTheDecoder)
{
    const qint64 id = upsert(testing::makePost(1)).id;
    connection->execute(GetParam().sql);
    EXPECT_THROW((void)store->bookmark(id), JSONCodingError);
}

INSTANTIATE_TEST_SUITE_P(
    Columns, DamagedJSON,
    ::testing::Values(DamageCase{"EmptyMedia", "UPDATE bookmarks SET media_json = ''"},
                      DamageCase{"UnknownKindOfMedia",
                                 "UPDATE bookmarks SET media_json = "
                                 "'[{\"id\":\"1\",\"kind\":\"hologram\",\"url\":\"https://a.example\"}]'"},
                      DamageCase{"MediaWithoutURL",
                                 "UPDATE bookmarks SET media_json = '[{\"id\":\"1\",\"kind\":\"photo\"}]'"},
                      DamageCase{"Quoted", "UPDATE bookmarks SET quoted_json = '{}'"},
                      DamageCase{"QuotedWithoutMedia",
                                 "UPDATE bookmarks SET quoted_json = '{\"tweetID\":\"1\",\"text\":\"a\"}'"},
                      DamageCase{"Thread", "UPDATE bookmarks SET thread_json = '[{}]'"},
                      DamageCase{"TruncatedThread", "UPDATE bookmarks SET thread_json = '['"}),
    [](const auto& row) { return row.param.name; });

TEST_F(BookmarkPersistence, OptionalColumnsOfAnotherTypeReadAsAbsentAndCountersAsZero)
{
    const qint64 id = upsert(makeFullPost()).id;
    store->updateLocalState(id, QStringLiteral("note"), true, false, false);
    connection->execute("PRAGMA ignore_check_constraints = ON;"
                        "UPDATE authors SET profile_image_url = 'http://[';"
                        "UPDATE bookmarks SET conversation_id = x'00', content_title = x'00', "
                        "content_text = x'00', language = x'00', note = x'00', thread_enriched_at = 'a', "
                        "reviewed_at = 'a', view_count = 'many', like_count = 1.5, media_json = x'00', "
                        "quoted_json = x'00', thread_json = x'00', raw_json = x'00', is_read = 2, "
                        "is_favorite = 'yes';");
    const Bookmark bookmark = store->bookmark(id);
    EXPECT_EQ(bookmark.author.profileImageURL, std::nullopt);
    EXPECT_FALSE(bookmark.conversationID || bookmark.contentTitle || bookmark.contentText ||
                 bookmark.language || bookmark.note || bookmark.threadEnrichedAt || bookmark.reviewedAt);
    EXPECT_EQ(bookmark.metrics.views, 0);
    EXPECT_EQ(bookmark.metrics.likes, 0);
    EXPECT_TRUE(bookmark.media.isEmpty() && bookmark.thread.isEmpty() && !bookmark.quotedPost);
    EXPECT_EQ(bookmark.rawJSON, QByteArray("{}"));
    EXPECT_FALSE(bookmark.isRead || bookmark.isFavorite);
}

} // namespace
} // namespace mirel
