#include "CommandBench.h"

#include "presentation/PostPresentation.h"

namespace mirel {
namespace {

using namespace std::chrono_literals;
using testing::makePost;
using testing::TestModel;

using CommandOutput = testing::CommandBench;

TEST_F(CommandOutput, ListsOneBookmarkALineAlignedByColumns)
{
    SyncedBookmark wide = makePost(1);
    wide.author = {
        .xID = QStringLiteral("43"), .name = QStringLiteral("书"), .username = QStringLiteral("b")};
    wide.text = QStringLiteral("书签书签书签书签书签书签书签书签书签书签");
    store(wide);
    store(makePost(23));
    EXPECT_EQ(lines(ListCommand{}.run(model, forPeople)),
              QStringList({
                  QStringLiteral("100023  2020-09-13  •   @ada  Post number 23"),
                  QStringLiteral("10001   2020-09-13  •   @b    书签书签书签书签书签书签书签…"),
              }));
}

TEST_F(CommandOutput, CutsTheListToTheTerminalAndNotInAPipe)
{
    SyncedBookmark post = makePost(1);
    post.text = QStringLiteral("A post that says more than a line of sixty columns can ever hold");
    post.author.username = QStringLiteral("a_handle_of_more_than_sixteen");
    store(post);
    EXPECT_EQ(lines(ListCommand{}.run(model, forPeople)),
              QStringList({QStringLiteral("10001  2020-09-13  •   @a_handle_of_mo…  A post that says mo…")}));
    EXPECT_EQ(
        lines(ListCommand{}.run(model, forPipes)),
        QStringList({QStringLiteral("10001  2020-09-13  •   @a_handle_of_more_than_sixteen  ") + post.text}));
}

TEST_F(CommandOutput, ListsTitlesOfArticlesAndResolvesEscapes)
{
    SyncedBookmark article = makePost(2);
    article.contentTitle = QStringLiteral("Fish &amp; chips");
    store(article);
    SyncedBookmark lines2 = makePost(1);
    lines2.text = QStringLiteral("one &lt;two&gt;\n\nthree\x1b[2J");
    store(lines2);
    EXPECT_EQ(lines(ListCommand{}.run(model, forPipes)),
              QStringList({
                  QStringLiteral("10002  2020-09-13  •   @ada  Fish & chips"),
                  QStringLiteral("10001  2020-09-13  •   @ada  one <two> three[2J"),
              }));
}

TEST_F(CommandOutput, MarksReadAndFavoriteBookmarks)
{
    store(makePost(1));
    blockOn(model.store()->call([](LocalLibraryStore& library) {
        library.updateLocalState(library.bookmark(QStringLiteral("10001"))->id, {}, true, true, false);
    }));
    EXPECT_EQ(lines(ListCommand{}.run(model, forPipes)),
              QStringList({QStringLiteral("10001  2020-09-13   ★  @ada  Post number 1")}));
    EXPECT_EQ(ListCommand{{.filter = LibraryFilter::archive}}.run(model, forPipes), "No bookmarks.\n");
}

TEST_F(CommandOutput, SaysThatAnEmptyLibraryIsEmpty)
{
    EXPECT_EQ(ListCommand{}.run(model, forPeople), "No bookmarks.\n");
    EXPECT_EQ(ListCommand{}.run(model, forMachines), "[]\n");
}

TEST_F(CommandOutput, ListsFiftyUnlessAskedOtherwise)
{
    for (int number = 1; number <= 60; ++number)
        store(makePost(number));
    EXPECT_EQ(lines(ListCommand{}.run(model, forPipes)).size(), 50);
    const QStringList rest =
        lines(ListCommand{{.sort = LibrarySort::oldest, .limit = 100, .offset = 58}}.run(model, forPipes));
    ASSERT_EQ(rest.size(), 2);
    EXPECT_TRUE(rest[0].endsWith(u"Post number 59"));
    EXPECT_TRUE(rest[1].endsWith(u"Post number 60"));
}

TEST_F(CommandOutput, ReadsLongListingsInBatchesWithoutGapOrRepeat)
{
    blockOn(model.store()->call([now = test.library.clock.now()](LocalLibraryStore& library) {
        for (int number = 1; number <= 1'203; ++number)
            library.upsertFromX(makePost(number), now);
    }));
    const auto list = [&](qint64 limit, qint64 offset) {
        return decodeJSON<QList<Bookmark>>(
            ListCommand{{.sort = LibrarySort::oldest, .limit = limit, .offset = offset}}.run(model,
                                                                                             forMachines));
    };
    EXPECT_EQ(list(1'000, 0).size(), 1'000);
    EXPECT_EQ(list(501, 0).size(), 501);
    const auto rest = list(5'000, 3);
    ASSERT_EQ(rest.size(), 1'200);
    for (qsizetype i = 0; i < rest.size(); ++i)
        ASSERT_EQ(rest[i].text, QStringLiteral("Post number %1").arg(i + 4));
}

TEST_F(CommandOutput, ListsAndShowsRecordsForMachines)
{
    store(makePost(1));
    store(makePost(2));
    const auto stored = blockOn(model.store()->call([](LocalLibraryStore& library) {
        return library.listBookmarks(LibraryFilter::all, 10, 0, LibrarySort::newest);
    }));
    EXPECT_TRUE(decodeJSON<QList<Bookmark>>(ListCommand{}.run(model, forMachines)) == stored);
    EXPECT_TRUE(decodeJSON<Bookmark>(ShowCommand{QStringLiteral("10002")}.run(model, forMachines)) ==
                stored[0]);
}

TEST_F(CommandOutput, ShowsABookmarkWithAllThatItHas)
{
    SyncedBookmark post = makePost(1);
    post.text =
        QStringLiteral("A &amp; B\n\nIs this line longer than the sixty columns that the terminal has?");
    post.media = {{.id = QStringLiteral("3_1"),
                   .kind = MediaKind::photo,
                   .url = QUrl(QStringLiteral("https://pictures.example/1.jpg")),
                   .altText = QStringLiteral("A cat")}};
    post.quotedPost = QuotedPost{.tweetID = QStringLiteral("9"),
                                 .author = SyncedAuthor{.xID = QStringLiteral("8"),
                                                        .name = QStringLiteral("Bob"),
                                                        .username = QStringLiteral("bob")},
                                 .text = QStringLiteral("Quoted\ntext")};
    store(post);
    blockOn(model.store()->call([](LocalLibraryStore& library) {
        const qint64 id = library.bookmark(QStringLiteral("10001"))->id;
        library.updateLocalState(id, QStringLiteral("Read again"), true, true, true);
        const PostMetrics none;
        library.replaceThread(id, {{.tweetID = QStringLiteral("10001"), .text = QStringLiteral("First")},
                                   {.tweetID = QStringLiteral("10002"), .text = QStringLiteral("Second")}});
    }));
    EXPECT_EQ(lines(ShowCommand{QStringLiteral("https://x.com/ada/status/10001")}.run(model, forPeople)),
              QStringList({
                  QStringLiteral("Ada Lovelace (@ada)"),
                  QStringLiteral("2020-09-13 12:26"),
                  QStringLiteral("https://x.com/ada/status/10001"),
                  QString(),
                  QStringLiteral("A & B"),
                  QString(),
                  QStringLiteral("Is this line longer than the sixty columns that the terminal"),
                  QStringLiteral("has?"),
                  QString(),
                  QStringLiteral("Second"),
                  QString(),
                  QStringLiteral("Quotes      Bob (@bob): Quoted text"),
                  QStringLiteral("Media       photo https://pictures.example/1.jpg (A cat)"),
                  QStringLiteral("Counters    6 likes, 2 reposts, 4 replies, 5 quotes, 3 bookmarks, 1 views"),
                  QStringLiteral("State       read, favorite, archived"),
                  QStringLiteral("Note        Read again"),
              }));
}

TEST_F(CommandOutput, ShowRefusesWhatIsNoPostAndWhatIsNotStored)
{
    const auto show = [&](const char* reference) {
        return failureOf([&] { return ShowCommand{QString::fromUtf8(reference)}.run(model, forPeople); });
    };
    EXPECT_EQ(show("nonsense"), QStringLiteral("Enter a valid X post URL or tweet ID."));
    EXPECT_EQ(show("https://x.com/ada/status/abc/status/123"),
              QStringLiteral("Enter a valid X post URL or tweet ID."));
    EXPECT_EQ(show("999"), QStringLiteral("That X post is not in the local library."));
}

TEST_F(CommandOutput, ShowsThePresentationAsJSONInAnyCase)
{
    SyncedBookmark post = makePost(1);
    post.rawJSON = R"({"tweet":{"id":"10001","entities":{"urls":[{"expanded_url":"https://a.example/"}]}}})";
    store(post);
    const auto stored =
        inLibrary([](LocalLibraryStore& library) { return *library.bookmark(QStringLiteral("10001")); });
    QJsonObject expected = PostPresentation(stored).toJSON();
    expected[u"contentType"] = QStringLiteral("externalLink");
    EXPECT_EQ(expected[u"displayLabel"].toString(), QStringLiteral("External link"));
    for (const auto& surroundings : {forPeople, forMachines})
        EXPECT_TRUE(parseJSON(output("show --presentation 10001", surroundings)) == expected);
}

TEST_F(CommandOutput, TellsTheStatusOfAFreshLibrary)
{
    EXPECT_EQ(lines(StatusCommand{}.run(model, forPeople)),
              QStringList({
                  QStringLiteral("Library     /somewhere/mirel.sqlite3"),
                  QStringLiteral("Bookmarks   0 (inbox 0, read 0, favorites 0, archive 0)"),
                  QStringLiteral("Last sync   never"),
                  QStringLiteral("X           connected"),
              }));
    const QJsonObject status = parseJSON(StatusCommand{}.run(model, forMachines)).toObject();
    EXPECT_EQ(status.keys(), QStringList({QStringLiteral("counts"), QStringLiteral("lastRun"),
                                          QStringLiteral("libraryPath"), QStringLiteral("xConfigured")}));
    EXPECT_TRUE(status[u"lastRun"].isNull());
    EXPECT_EQ(status[u"libraryPath"].toString(), forMachines.libraryPath);
    EXPECT_TRUE(status[u"xConfigured"].toBool());
}

TEST_F(CommandOutput, TellsTheStatusWithTheLastRun)
{
    store(makePost(1));
    blockOn(model.store()->call([](LocalLibraryStore& library) {
        const SyncRun run = library.createSyncRun(SyncRun::Kind::manual);
        library.updateSyncRun(run.id, SyncRun::Status::rateLimited, 2, 100, 7, 93,
                              QStringLiteral("X rate limit reached."));
    }));
    const QStringList status = lines(StatusCommand{}.run(model, forPeople));
    EXPECT_EQ(status[1], QStringLiteral("Bookmarks   1 (inbox 1, read 0, favorites 0, archive 0)"));
    EXPECT_EQ(status[2],
              QStringLiteral("Last sync   2023-11-14 22:13, rate limited: 2 pages, 100 received, 7 new. "
                             "X rate limit reached."));
    const QJsonObject json = parseJSON(StatusCommand{}.run(model, forMachines)).toObject();
    const auto run = fromJSON<SyncRun>(json[u"lastRun"]);
    EXPECT_EQ(run.status, SyncRun::Status::rateLimited);
    EXPECT_EQ(run.fetched, 100);
    EXPECT_TRUE(fromJSON<LibraryCounts>(json[u"counts"]) == (LibraryCounts{.all = 1, .inbox = 1}));
}

TEST_F(CommandOutput, SaysThatXDoesNotAnswerAtTheMoment)
{
    test.x->isOffline = true;
    EXPECT_EQ(lines(StatusCommand{}.run(model, forPeople)).last(),
              QStringLiteral("X           not connected, or not reachable at the moment"));
    EXPECT_FALSE(parseJSON(StatusCommand{}.run(model, forMachines)).toObject()[u"xConfigured"].toBool());
}

TEST_F(CommandOutput, DoesNotWaitForASilentXForEver)
{
    test.x->isSilent = true;
    forPeople.patience = 1ms;
    EXPECT_EQ(lines(StatusCommand{}.run(model, forPeople)).last(),
              QStringLiteral("X           no answer within 0.001 seconds"));
    blockOn(model.shutDown());
}

TEST(CommandOutputWithoutAnAccount, SaysThatXIsNotConnected)
{
    TestModel test({}, false);
    EXPECT_TRUE(StatusCommand{}
                    .run(*test.model, {})
                    .endsWith("X           not connected, or not reachable at the moment\n"));
}

TEST(CommandOutputWithoutALibrary, FailsWithASentence)
{
    MirelAppModel model{MirelServices{}};
    EXPECT_THROW((void)ListCommand{}.run(model, {}), CommandError);
    EXPECT_THROW((void)ShowCommand{QStringLiteral("1")}.run(model, {}), CommandError);
    EXPECT_THROW((void)StatusCommand{}.run(model, {}), CommandError);
    EXPECT_THROW((void)SyncCommand{}.run(model, {}), CommandError);
    EXPECT_THROW((void)SearchCommand{}.run(model, {}), CommandError);
    EXPECT_THROW((void)OpenCommand{QStringLiteral("1")}.run(model, {}), CommandError);
    EXPECT_THROW((void)LabelListCommand{}.run(model, {}), CommandError);
    EXPECT_THROW((void)PreferencesSetCommand{}.run(model, {}), CommandError);
}

TEST(CommandOutputWithoutALibrary, SaysFirstThatAReferenceIsNone)
{
    MirelAppModel model{MirelServices{}};
    try {
        (void)OpenCommand{QStringLiteral("nonsense")}.run(model, {});
        FAIL() << "was opened";
    } catch (const CommandError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("Enter a valid X post URL or tweet ID."));
    }
}

} // namespace
} // namespace mirel
