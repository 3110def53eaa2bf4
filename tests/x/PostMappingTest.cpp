#include "testing/Printing.h"

#include "support/RawJSON.h"
#include "x/PageBuilding.h"
#include "x/XAPIError.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <random>

namespace mirel {
namespace {

using namespace testPages;
using postMapping::parseBookmarkPage;

QUrl url(const char* text)
{
    return QUrl(QString::fromLatin1(text));
}

TEST(BookmarkPage, MapsEveryFieldOfAnOrdinaryPost)
{
    const auto page = parseBookmarkPage(R"({"data":[{"id":"2090126129567156115",
        "edit_history_tweet_ids":["2090126129567156115"],
        "text":"Layer know is pencil! \uD83D\uDC3B https://t.co/1","created_at":"2026-08-19T17:17:56.250Z",
        "author_id":"607710418686687916","conversation_id":"2090126129567156000","lang":"en",
        "possibly_sensitive":false,"reply_settings":"everyone",
        "public_metrics":{"retweet_count":2,"reply_count":4,"like_count":6,"quote_count":5,
                          "bookmark_count":3,"impression_count":1},
        "attachments":{"media_keys":["3_2","3_1"]},
        "entities":{"urls":[{"start":0,"end":1,"url":"https://t.co/1",
                             "expanded_url":"https://youtu.be/abc"}]}}],
        "includes":{"users":[{"id":"607710418686687916","name":"Ada 🧵","username":"ada",
                              "profile_image_url":"https://p.example/ada.jpg","verified":false}],
                    "media":[{"media_key":"3_1","type":"photo","url":"https://p.example/1.jpg"},
                             {"media_key":"3_2","type":"photo","url":"https://p.example/2.jpg"}],
                    "places":[{"id":"p"}]},
        "errors":[{"resource_id":"1801494915027420585","status":9007199254740993}],
        "meta":{"result_count":1,"next_token":"7140dibdnow9c7btw4827c3yb0pfg2mg8qq12dn59k0yt"}})");
    ASSERT_EQ(page.items.size(), 1);
    EXPECT_EQ(page.nextToken, QStringLiteral("7140dibdnow9c7btw4827c3yb0pfg2mg8qq12dn59k0yt"));
    EXPECT_EQ(page.resultCount, 1);
    const SyncedBookmark& item = page.items.first();
    EXPECT_EQ(item.tweetID, QStringLiteral("2090126129567156115"));
    EXPECT_EQ(item.conversationID, QStringLiteral("2090126129567156000"));
    EXPECT_EQ(item.author,
              (SyncedAuthor{QStringLiteral("607710418686687916"), QStringLiteral("Ada \U0001F9F5"),
                            QStringLiteral("ada"), url("https://p.example/ada.jpg")}));
    EXPECT_EQ(item.text, QStringLiteral("Layer know is pencil! \U0001F43B https://t.co/1"));
    EXPECT_EQ(item.contentTitle, std::nullopt);
    EXPECT_EQ(item.contentText, std::nullopt);
    EXPECT_EQ(item.language, QStringLiteral("en"));
    EXPECT_EQ(item.sourceURL, url("https://x.com/ada/status/2090126129567156115"));
    EXPECT_EQ(item.createdAt, Instant::fromSecondsSince1970(1787159876.25));
    EXPECT_EQ(item.metrics, (PostMetrics{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(idsOf(item.media), (QStringList{QStringLiteral("3_2"), QStringLiteral("3_1"),
                                              QStringLiteral("youtube-https://youtu.be/abc")}));
    EXPECT_EQ(item.quotedPost, std::nullopt);
}

TEST(BookmarkPage, LeavesAbsentWhatAnOrdinaryPostDoesNotHave)
{
    const SyncedBookmark item = bookmark(post("1"));
    EXPECT_EQ(item.conversationID, std::nullopt);
    EXPECT_EQ(item.language, std::nullopt);
    EXPECT_EQ(item.createdAt, Instant::fromSecondsSince1970(0));
    EXPECT_EQ(item.metrics, PostMetrics{});
    EXPECT_TRUE(item.media.isEmpty());
    EXPECT_EQ(item.author.profileImageURL, std::nullopt);
}

TEST(BookmarkPage, KeepsTheOrderOfThePosts)
{
    const auto parsed = parseBookmarkPage(page({post("3"), post("1"), post("2", {}, "20")}));
    QStringList ids;
    for (const SyncedBookmark& item : parsed.items)
        ids.append(item.tweetID);
    EXPECT_EQ(ids, (QStringList{QStringLiteral("3"), QStringLiteral("1"), QStringLiteral("2")}));
    EXPECT_EQ(parsed.items[2].author.username, QStringLiteral("bob"));
}

TEST(BookmarkPage, CountsItsItemsWhenXDoesNot)
{
    EXPECT_EQ(parseBookmarkPage(page({post("1"), post("2")})).resultCount, 2);
    const auto parsed = parseBookmarkPage(R"({"data":[],"meta":{"next_token":"n"}})");
    EXPECT_EQ(parsed.resultCount, 0);
    EXPECT_EQ(parsed.nextToken, QStringLiteral("n"));
    EXPECT_EQ(parseBookmarkPage(R"({"data":[],"meta":{"result_count":7}})").resultCount, 7);
    EXPECT_EQ(parseBookmarkPage(R"({"data":[]})").nextToken, std::nullopt);
}

TEST(BookmarkPage, StoresThePlainTextOfAnArticleWhoseTextIsOnlyALink)
{
    const SyncedBookmark item = bookmark(
        R"({"id":"1","text":"https://t.co/a","author_id":"10","lang":"zxx",
            "article":{"title":"A long read","plain_text":"Long body"}})");
    EXPECT_EQ(item.text, QStringLiteral("Long body"));
    EXPECT_EQ(item.contentTitle, QStringLiteral("A long read"));
    EXPECT_EQ(item.contentText, QStringLiteral("Long body"));
}

TEST(BookmarkPage, StoresTheShortTextOfAnArticleWithATitleOnly)
{
    const SyncedBookmark item = bookmark(post("1", R"(,"article":{"title":"A long read"})"));
    EXPECT_EQ(item.text, QStringLiteral("Text of 1"));
    EXPECT_EQ(item.contentTitle, QStringLiteral("A long read"));
    EXPECT_EQ(item.contentText, std::nullopt);
}

TEST(BookmarkPage, StoresTheLongTextOfANoteWithoutContentText)
{
    const SyncedBookmark item = bookmark(post("1", R"(,"note_tweet":{"text":"The note","entities":{}})"));
    EXPECT_EQ(item.text, QStringLiteral("The note"));
    EXPECT_EQ(item.contentText, std::nullopt);
}

TEST(BookmarkPage, PrefersTheNoteToThePlainTextOfAnArticle)
{
    const SyncedBookmark item =
        bookmark(post("1", R"(,"note_tweet":{"text":""},"article":{"plain_text":"Body"})"));
    EXPECT_EQ(item.text, QString());
    EXPECT_EQ(item.contentText, QStringLiteral("Body"));
}

TEST(BookmarkPage, GathersAttachedThenArticleThenLinkedMediaEachOnce)
{
    const QByteArray media = R"("media":[
        {"media_key":"a","type":"photo","url":"https://p.example/a"},
        {"media_key":"c","type":"photo","url":"https://p.example/c"},
        {"media_key":"e","type":"photo","url":"https://p.example/e"}])";
    const SyncedBookmark item = bookmark(post("1", R"(,"attachments":{"media_keys":["a","unknown"]},
                     "article":{"content_state":["c",["e","a"]],"cover_media":"c","media_entities":["c",{"id":"e"}]},
                     "entities":{"urls":[{"url":"https://youtu.be/y"}]})"),
                                         media);
    EXPECT_EQ(idsOf(item.media), (QStringList{QStringLiteral("a"), QStringLiteral("c"), QStringLiteral("e"),
                                              QStringLiteral("youtube-https://youtu.be/y")}));
}

struct Date
{
    const char* name;
    const char* text;
    std::optional<double> seconds;
    friend void PrintTo(const Date& row, std::ostream* stream) { *stream << row.name; }
};

class BookmarkPageDates : public testing::TestWithParam<Date>
{
};

TEST_P(BookmarkPageDates, AreReadWithAndWithoutFractionsOrEndThePage)
{
    const QByteArray json = post("1", QByteArray(R"(,"created_at":")") + GetParam().text + '"');
    if (GetParam().seconds)
        EXPECT_EQ(bookmark(json).createdAt, Instant::fromSecondsSince1970(*GetParam().seconds));
    else
        EXPECT_THROW(static_cast<void>(bookmark(json)), XAPIError);
}

INSTANTIATE_TEST_SUITE_P(Texts, BookmarkPageDates,
                         testing::Values(Date{"milliseconds", "2026-08-19T17:17:56.000Z", 1787159876.0},
                                         Date{"noFraction", "2026-08-19T17:17:56Z", 1787159876.0},
                                         Date{"offset", "2026-08-19T19:17:56+02:00", 1787159876.0},
                                         Date{"empty", "", {}}, Date{"words", "yesterday", {}},
                                         Date{"noZone", "2026-08-19T17:17:56", {}},
                                         Date{"noSuchDay", "2026-02-31T17:17:56Z", {}}),
                         [](const auto& row) { return std::string(row.param.name); });

// A page that quotes the post "9" of "bob".
QByteArray quotingPage(const QByteArray& quotedMembers, const QByteArray& quotedAuthor = "20")
{
    return page({post("1", R"(,"referenced_tweets":[{"type":"replied_to","id":"8"},{"type":"quoted","id":"9"},
                                                    {"type":"quoted","id":"8"}])")},
                R"("tweets":[)" + post("8") + ',' + post("9", quotedMembers, quotedAuthor) + R"(],"media":[
                    {"media_key":"a","type":"photo","url":"https://p.example/a"},
                    {"media_key":"b","type":"photo","url":"https://p.example/b"}])");
}

TEST(QuotedPostOfAPage, IsTheFirstQuotedReference)
{
    const auto item = parseBookmarkPage(quotingPage({})).items.first();
    ASSERT_TRUE(item.quotedPost);
    EXPECT_EQ(item.quotedPost->tweetID, QStringLiteral("9"));
    EXPECT_EQ(item.quotedPost->author->username, QStringLiteral("bob"));
    EXPECT_EQ(item.quotedPost->text, QStringLiteral("Text of 9"));
    EXPECT_EQ(item.quotedPost->contentTitle, std::nullopt);
    EXPECT_EQ(item.quotedPost->contentText, std::nullopt);
    EXPECT_TRUE(item.quotedPost->media.isEmpty());
    EXPECT_EQ(item.text, QStringLiteral("Text of 1"));
}

TEST(QuotedPostOfAPage, HasItsArticleAndItsMediaEachOnce)
{
    const auto item = parseBookmarkPage(quotingPage(R"(,"attachments":{"media_keys":["a"]},
        "article":{"title":"T","plain_text":"P","cover_media":"b","media_entities":["a","missing"]},
        "entities":{"urls":[{"url":"https://youtu.be/y"}]})"))
                          .items.first();
    EXPECT_EQ(item.quotedPost->text, QStringLiteral("P"));
    EXPECT_EQ(item.quotedPost->contentTitle, QStringLiteral("T"));
    EXPECT_EQ(item.quotedPost->contentText, QStringLiteral("P"));
    EXPECT_EQ(idsOf(item.quotedPost->media), (QStringList{QStringLiteral("a"), QStringLiteral("b"),
                                                          QStringLiteral("youtube-https://youtu.be/y")}));
    EXPECT_TRUE(item.media.isEmpty());
}

TEST(QuotedPostOfAPage, HasItsNoteAsText)
{
    const auto item = parseBookmarkPage(quotingPage(R"(,"note_tweet":{"text":"note"})")).items.first();
    EXPECT_EQ(item.quotedPost->text, QStringLiteral("note"));
}

TEST(QuotedPostOfAPage, MayLackItsAuthor)
{
    const auto item = parseBookmarkPage(quotingPage({}, "404")).items.first();
    ASSERT_TRUE(item.quotedPost);
    EXPECT_EQ(item.quotedPost->author, std::nullopt);
}

TEST(QuotedPostOfAPage, IsAbsentWhenThePageDoesNotIncludeIt)
{
    const auto quoting =
        post("1", R"(,"referenced_tweets":[{"type":"quoted","id":"404"},{"type":"quoted","id":"9"}])");
    EXPECT_EQ(bookmark(quoting, R"("tweets":[)" + post("9") + ']').quotedPost, std::nullopt);
    EXPECT_EQ(bookmark(post("1", R"(,"referenced_tweets":[{"type":"retweeted","id":"9"}])"),
                       R"("tweets":[)" + post("9") + ']')
                  .quotedPost,
              std::nullopt);
}

TEST(QuotedPostOfAPage, NamesTheMediaOfItsArticleAsItsEnvelopeDoes)
{
    const auto parsed = parseBookmarkPage(
        quotingPage(R"(,"article":{"cover_media":"b","media_entities":["x",{"media_key":"b"}]})"));
    const QStringList expected{QStringLiteral("b"), QStringLiteral("x")};
    EXPECT_EQ(parsed.quotedArticleMediaKeys, QList<QStringList>{expected});
    EXPECT_EQ(postMapping::articleMediaKeys(QStringLiteral("9"), parsed.items.first().rawJSON), expected);
}

struct BrokenPage
{
    const char* name;
    QByteArray json;
    friend void PrintTo(const BrokenPage& row, std::ostream* stream) { *stream << row.name; }
};

class BookmarkPageFailures : public testing::TestWithParam<BrokenPage>
{
};

TEST_P(BookmarkPageFailures, AreInvalidResponses)
{
    try {
        static_cast<void>(parseBookmarkPage(GetParam().json));
        FAIL() << "no failure";
    } catch (const XAPIError& error) {
        EXPECT_EQ(error, XAPIError::invalidResponse());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Pages, BookmarkPageFailures,
    testing::Values(
        BrokenPage{"empty", ""}, BrokenPage{"hypertext", "<html>503</html>"},
        BrokenPage{"cut", page({post("1")}).chopped(3)}, BrokenPage{"array", "[]"},
        BrokenPage{"notUTF8", page({post("1", ",\"x\":\"\xFF\"")})},
        BrokenPage{"noData", R"({"meta":{"result_count":0}})"}, BrokenPage{"nullData", R"({"data":null})"},
        BrokenPage{"errorsOnly", R"({"errors":[{"title":"Not Found Error"}]})"},
        BrokenPage{"dataIsAnObject", R"({"data":{}})"}, BrokenPage{"postIsAText", R"({"data":["1"]})"},
        BrokenPage{"missingTextOfASecondPost", page({post("1"), R"({"id":"2","author_id":"10"})"})},
        BrokenPage{"numericID", page({R"({"id":1,"text":"t","author_id":"10"})"})},
        BrokenPage{"missingAuthorName", R"({"data":[],"includes":{"users":[{"id":"1","username":"u"}]}})"},
        BrokenPage{"missingMediaType", page({}, R"("media":[{"media_key":"3_1"}])")},
        BrokenPage{"missingFieldOfAnIncludedPost", page({}, R"("tweets":[{"id":"9","text":"t"}])")},
        BrokenPage{"includesIsAnArray", R"({"data":[],"includes":[]})"},
        BrokenPage{"countWithFraction", R"({"data":[],"meta":{"result_count":1.5}})"},
        BrokenPage{"optionalOfTheWrongType", page({post("1", R"(,"lang":7)")})},
        BrokenPage{"entityWithoutIdentifier", page({post("1", R"(,"article":{"media_entities":[{}]})")})},
        BrokenPage{"authorNotIncluded", page({post("1"), post("2", {}, "404")})},
        BrokenPage{"noIncludes", R"({"data":[)" + post("1") + "]}"},
        BrokenPage{"unreadableDate", page({post("1", R"(,"created_at":"Wed Aug 19 2026")")})},
        BrokenPage{"repeatedUser",
                   R"({"data":[],"includes":{"users":[)" + user("10", "a") + ',' + user("10", "b") + "]}}"},
        BrokenPage{"repeatedMedium", page({}, R"("media":[{"media_key":"k","type":"photo"},
                                                          {"media_key":"k","type":"photo"}])")},
        BrokenPage{"repeatedPost", page({}, R"("tweets":[)" + post("9") + ',' + post("9") + ']')},
        BrokenPage{"tooDeep", page({post("1", R"(,"x":)" + QByteArray(400, '[') + QByteArray(400, ']'))})}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(BookmarkPage, ReadsHalfASurrogatePairWithoutFailing)
{
    const SyncedBookmark item = bookmark(R"({"id":"1","text":"cut \uD83D","author_id":"10"})");
    EXPECT_EQ(item.text, QStringLiteral("cut \uFFFD"));
    EXPECT_TRUE(item.rawJSON.contains(R"("text":"cut \uD83D")"));
}

struct Username
{
    const char* name;
    const char* username;
    const char* url;
    friend void PrintTo(const Username& row, std::ostream* stream) { *stream << row.name; }
};

class BookmarkPageUsernames : public testing::TestWithParam<Username>
{
};

TEST_P(BookmarkPageUsernames, MakeAURLWhateverTheyHold)
{
    const QByteArray json =
        R"({"data":[)" + post("1") + R"(],"includes":{"users":[)" + user("10", GetParam().username) + "]}}";
    const QUrl source = parseBookmarkPage(json).items.first().sourceURL;
    EXPECT_TRUE(source.isValid());
    EXPECT_EQ(source.toEncoded(), GetParam().url);
}

INSTANTIATE_TEST_SUITE_P(Names, BookmarkPageUsernames,
                         testing::Values(Username{"ordinary", "Ada_99", "https://x.com/Ada_99/status/1"},
                                         Username{"empty", "", "https://x.com//status/1"},
                                         Username{"space", "a b", "https://x.com/a%20b/status/1"},
                                         Username{"delimiters", "a/b?c#d",
                                                  "https://x.com/a%2Fb%3Fc%23d/status/1"},
                                         Username{"percent", "100%", "https://x.com/100%25/status/1"},
                                         Username{"brackets", "[x]", "https://x.com/%5Bx%5D/status/1"},
                                         Username{"lineEnd", "a\\nb", "https://x.com/a%0Ab/status/1"},
                                         Username{"otherScript", "学", "https://x.com/%E5%AD%A6/status/1"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(RawEnvelopes, HoldThePostAndTheWholeIncludesWithSortedKeysAsSent)
{
    const auto envelopes = postMapping::rawEnvelopes(R"({"meta":{}, "data":[
        {"text":"t\u0041", "id":"1", "big":123456789012345678901234567890, "real": 1.0, "b":{"z":1,"a":[ ]} },
        {"id":"2"}], "includes":{"users":[ {"name":"n","id":"10"} ],"places":[]}})");
    EXPECT_EQ(envelopes.size(), 2);
    EXPECT_EQ(
        envelopes.value(QStringLiteral("1")),
        R"({"includes":{"places":[],"users":[{"id":"10","name":"n"}]},"tweet":{"b":{"a":[],"z":1},"big":123456789012345678901234567890,"id":"1","real":1.0,"text":"t\u0041"}})");
    EXPECT_EQ(envelopes.value(QStringLiteral("2")),
              R"({"includes":{"places":[],"users":[{"id":"10","name":"n"}]},"tweet":{"id":"2"}})");
}

TEST(RawEnvelopes, LeaveOutIncludesThatThePageDoesNotHave)
{
    const QByteArray expected = R"({"tweet":{"id":"1"}})";
    for (const char* const page : {R"({"data":[{"id":"1"}]})", R"({"data":[{"id":"1"}],"includes":null})",
                                   R"({"data":[{"id":"1"}],"includes":[1]})"})
        EXPECT_EQ(postMapping::rawEnvelopes(page).value(QStringLiteral("1")), expected) << page;
}

TEST(RawEnvelopes, KeepTheIncludesOfAPageThatIncludesNothing)
{
    EXPECT_EQ(postMapping::rawEnvelopes(R"({"data":[{"id":"1"}],"includes":{}})").value(QStringLiteral("1")),
              R"({"includes":{},"tweet":{"id":"1"}})");
}

TEST(RawEnvelopes, AreNoneForWhatIsNoPage)
{
    for (const char* const page :
         {"", "{", "[]", "7", "{}", R"({"data":{}})", R"({"data":[{"id":"1"},"2"]})"})
        EXPECT_TRUE(postMapping::rawEnvelopes(page).isEmpty()) << page;
}

TEST(RawEnvelopes, SkipPostsWithoutATextAsID)
{
    const auto envelopes = postMapping::rawEnvelopes(R"({"data":[{"id":7},{},{"id":"1"}]})");
    EXPECT_EQ(envelopes.keys(), QStringList{QStringLiteral("1")});
}

TEST(RawEnvelopes, HoldTheLastOfTwoPostsWithOneID)
{
    const auto parsed = parseBookmarkPage(page({post("1", R"(,"lang":"de")"), post("1", R"(,"lang":"en")")}));
    ASSERT_EQ(parsed.items.size(), 2);
    EXPECT_TRUE(parsed.items[0].rawJSON.contains(R"("lang":"en")"));
    EXPECT_EQ(parsed.items[0].rawJSON, parsed.items[1].rawJSON);
}

TEST(BookmarkPage, GivesEachItemTheEnvelopeOfItsPost)
{
    const QByteArray json = page({post("1"), post("2", R"(,"unknown":[1.0,{"deep":null}])")},
                                 R"("tweets":[],"polls":[{"id":"p"}])");
    const auto envelopes = postMapping::rawEnvelopes(json);
    const auto parsed = parseBookmarkPage(json);
    ASSERT_EQ(envelopes.size(), 2);
    for (const SyncedBookmark& item : parsed.items)
        EXPECT_EQ(item.rawJSON, envelopes.value(item.tweetID));
}

// A page with `count` posts of random unknown members.
QByteArray randomPage(std::mt19937& generator, int count)
{
    const auto below = [&](quint64 limit) { return generator() % limit; };
    const auto members = [&] {
        QByteArray text;
        for (quint64 i = below(5); i > 0; --i)
            text += ",\"k" + QByteArray::number(below(100)) + R"(":[{"z":)" + QByteArray::number(below(9)) +
                    R"(.50,"a":"\u00e9\uD83D\uDC3B"},null, "学"])";
        return text;
    };
    QByteArrayList posts;
    for (int i = 0; i < count; ++i)
        posts.append(post(QByteArray::number(i + 1), members()));
    return page(posts,
                R"("tweets":[)" + post("900", members()) + R"(],"places":[{"id":"p")" + members() + "}]");
}

TEST(BookmarkPage, GivesEveryPostThePagesIncludesAndItsOwnPostWithNothingLost)
{
    std::mt19937 generator(7);
    for (int round = 0; round < 200; ++round) {
        const QByteArray json = randomPage(generator, 1 + round % 7);
        const QJsonObject sent = QJsonDocument::fromJson(json).object();
        const QByteArray includes = RawJSON::parse(json).root().member("includes")->canonical();
        const auto parsed = parseBookmarkPage(json);
        for (qsizetype i = 0; i < parsed.items.size(); ++i) {
            const QByteArray& rawJSON = parsed.items[i].rawJSON;
            const QJsonObject envelope = QJsonDocument::fromJson(rawJSON).object();
            ASSERT_EQ(envelope.keys(), (QStringList{QStringLiteral("includes"), QStringLiteral("tweet")}));
            ASSERT_EQ(envelope.value(u"includes"), sent.value(u"includes"));
            ASSERT_EQ(envelope.value(u"tweet"), sent.value(u"data").toArray().at(i));
            ASSERT_TRUE(rawJSON.startsWith("{\"includes\":" + includes + ",\"tweet\":{"));
            ASSERT_EQ(RawJSON::parse(rawJSON).root().canonical(), rawJSON);
        }
    }
}

TEST(ThreadPosts, AreThoseOfTheAuthorEarliestFirst)
{
    const auto posts = postMapping::threadPosts(
        page({post("3", R"(,"created_at":"2026-08-19T17:17:58Z","public_metrics":{"like_count":4})"),
              post("2", R"(,"created_at":"unreadable")", "20"),
              post("1", R"(,"created_at":"2026-08-19T17:17:56.500Z")"),
              post("5", R"(,"created_at":"2026-08-19T17:17:58.000Z")"), post("4")}),
        QStringLiteral("10"));
    QStringList ids;
    for (const ThreadPost& threadPost : posts)
        ids.append(threadPost.tweetID);
    EXPECT_EQ(ids, (QStringList{QStringLiteral("4"), QStringLiteral("1"), QStringLiteral("3"),
                                QStringLiteral("5")}));
    EXPECT_EQ(posts[1].createdAt, Instant::fromSecondsSince1970(1787159876.5));
    EXPECT_EQ(posts[2].metrics, (PostMetrics{.likes = 4}));
    EXPECT_EQ(posts[2].text, QStringLiteral("Text of 3"));
}

TEST(ThreadPosts, HaveTheirLongTextsAndTheirAttachedAndLinkedMediaAlsoWhenTheyRepeat)
{
    const auto posts = postMapping::threadPosts(
        page({post("1", R"(,"note_tweet":{"text":"note"},"attachments":{"media_keys":["a"]},
                           "article":{"plain_text":"body","cover_media":"b"},
                           "entities":{"urls":[{"url":"https://youtu.be/y"},{"url":"https://youtu.be/y"}]})")},
             R"("media":[{"media_key":"a","type":"photo","url":"https://p.example/a"},
                         {"media_key":"b","type":"photo","url":"https://p.example/b"}])"),
        QStringLiteral("10"));
    EXPECT_EQ(posts.first().text, QStringLiteral("note"));
    EXPECT_EQ(idsOf(posts.first().media),
              (QStringList{QStringLiteral("a"), QStringLiteral("youtube-https://youtu.be/y"),
                           QStringLiteral("youtube-https://youtu.be/y")}));
}

TEST(ThreadPosts, NeedNoAuthorAmongTheIncludes)
{
    EXPECT_EQ(postMapping::threadPosts(R"({"data":[)" + post("1") + "]}", QStringLiteral("10")).size(), 1);
}

TEST(ThreadPosts, OfAnUnreadablePageAreAnInvalidResponse)
{
    for (const QByteArray& json :
         {QByteArray(R"({"meta":{"result_count":0}})"), QByteArray("<html>"),
          page({post("1", R"(,"created_at":"soon")")}),
          page({}, R"("media":[{"media_key":"k","type":"photo"},{"media_key":"k","type":"photo"}])")}) {
        try {
            static_cast<void>(postMapping::threadPosts(json, QStringLiteral("10")));
            ADD_FAILURE() << json.toStdString();
        } catch (const XAPIError& error) {
            EXPECT_EQ(error, XAPIError::invalidResponse());
        }
    }
}

} // namespace
} // namespace mirel
