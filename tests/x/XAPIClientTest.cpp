#include "testing/Printing.h"

#include "x/XAPIClientTest.h"

namespace mirel {
namespace {

using namespace testPages;

const QByteArray wholePostQuery =
    "expansions=author_id,attachments.media_keys,referenced_tweets.id,referenced_tweets.id.author_id,"
    "referenced_tweets.id.attachments.media_keys,article.cover_media,article.media_entities";
const QByteArray wholePostFields =
    "media.fields=media_key,type,url,preview_image_url,width,height,alt_text,variants,duration_ms";
const QByteArray tweetFields =
    "tweet.fields=id,text,article,author_id,created_at,entities,public_metrics,attachments,conversation_id,"
    "in_reply_to_user_id,referenced_tweets,lang,note_tweet";
const QByteArray userFields = "user.fields=id,name,username,profile_image_url";

TEST_F(XAPIClientTest, AsksForAPageOfBookmarksWithEverythingOfAPost)
{
    transport.answer(200, page({post("1")}));
    const auto result = blockOn(client.bookmarks(QStringLiteral("token+1"), 50));
    EXPECT_EQ(result.items.size(), 1);
    EXPECT_EQ(result.resultCount, 1);
    EXPECT_EQ(result.nextToken, std::nullopt);
    ASSERT_EQ(transport.requests().size(), 1);
    const HTTPRequest& request = transport.requests().first();
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    EXPECT_EQ(request.body, QByteArray());
    EXPECT_EQ(request.headers,
              (QList<HTTPHeader>{{"Authorization", "Bearer access"}, {"Accept", "application/json"}}));
    EXPECT_EQ(urlOf(0), "https://api.example/2/users/42/bookmarks?" + wholePostQuery + "&max_results=50&" +
                            wholePostFields + "&pagination_token=token+1&" + tweetFields + '&' + userFields);
}

TEST_F(XAPIClientTest, PassesOnTheNextTokenAndTheCount)
{
    transport.answer(200, R"({"data":[],"meta":{"result_count":3,"next_token":"n"}})");
    const auto result = blockOn(client.bookmarks({}, 50));
    EXPECT_EQ(result.nextToken, QStringLiteral("n"));
    EXPECT_EQ(result.resultCount, 3);
}

struct MaxResults
{
    qint64 given;
    const char* sent;
};

TEST_F(XAPIClientTest, KeepsTheSizeOfAPageBetween1And100)
{
    for (const auto& [given, sent] :
         {MaxResults{0, "1"}, MaxResults{-5, "1"}, MaxResults{1, "1"}, MaxResults{100, "100"},
          MaxResults{500, "100"}, MaxResults{std::numeric_limits<qint64>::min(), "1"}}) {
        transport.answer(200, "{}");
        static_cast<void>(blockOn(client.bookmarkFolders({}, given)));
        EXPECT_EQ(urlOf(transport.requests().size() - 1),
                  QByteArray("https://api.example/2/users/42/bookmarks/folders?max_results=") + sent);
    }
}

TEST_F(XAPIClientTest, SendsNoEmptyPaginationToken)
{
    transport.answer(200, page({}));
    static_cast<void>(blockOn(client.bookmarks(QString(), 50)));
    EXPECT_FALSE(urlOf(0).contains("pagination_token"));
}

TEST_F(XAPIClientTest, ReadsTheCurrentUser)
{
    transport.answer(200, R"({"data":{"id":"42","name":"Ada","username":"ada","extra":1}})");
    EXPECT_EQ(blockOn(client.currentUser()),
              (XUser{QStringLiteral("42"), QStringLiteral("Ada"), QStringLiteral("ada")}));
    EXPECT_EQ(urlOf(0), "https://api.example/2/users/me?user.fields=id,name,username");
}

TEST_F(XAPIClientTest, ReadsAPageOfFolders)
{
    transport.answer(200, R"({"data":[{"id":"1","name":"Reading"},{"id":"2","name":"学"}],
                              "meta":{"next_token":"n","result_count":9}})");
    const auto folders = blockOn(client.bookmarkFolders(QStringLiteral("p"), 30));
    EXPECT_EQ(folders.items, (QList<XBookmarkFolder>{{QStringLiteral("1"), QStringLiteral("Reading")},
                                                     {QStringLiteral("2"), QStringLiteral("学")}}));
    EXPECT_EQ(folders.nextToken, QStringLiteral("n"));
    EXPECT_EQ(folders.resultCount, 9);
    EXPECT_EQ(urlOf(0), "https://api.example/2/users/42/bookmarks/folders?max_results=30&pagination_token=p");
}

TEST_F(XAPIClientTest, ReadsThePostsOfAFolderAlsoWithoutMeta)
{
    transport.answer(200, R"({"data":[{"id":"1"},{"id":"2","text":"ignored"}]})");
    const auto ids = blockOn(client.folderPostIDs(QStringLiteral("a b/c"), {}, 100));
    EXPECT_EQ(ids.items, (QList<QString>{QStringLiteral("1"), QStringLiteral("2")}));
    EXPECT_EQ(ids.nextToken, std::nullopt);
    EXPECT_EQ(ids.resultCount, 2);
    EXPECT_EQ(urlOf(0), "https://api.example/2/users/42/bookmarks/folders/a%20b%2Fc?max_results=100");
}

TEST_F(XAPIClientTest, ReadsAFolderPageWithoutDataAsEmpty)
{
    transport.answer(200, R"({"meta":{"result_count":0}})");
    EXPECT_EQ(blockOn(client.bookmarkFolders({}, 50)), XPage<XBookmarkFolder>{});
    transport.answer(200, "{}");
    EXPECT_EQ(blockOn(client.folderPostIDs(QStringLiteral("1"), {}, 50)), XPage<QString>{});
}

TEST_F(XAPIClientTest, ReadsTheCountersOfAPost)
{
    transport.answer(200, R"({"data":{"id":"7","public_metrics":{"impression_count":1,"retweet_count":2,
        "bookmark_count":3,"reply_count":4,"quote_count":5,"like_count":6}}})");
    EXPECT_EQ(blockOn(client.metrics(QStringLiteral("7/8"))), (PostMetrics{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(urlOf(0), "https://api.example/2/tweets/7%2F8?tweet.fields=public_metrics");
}

TEST_F(XAPIClientTest, TakesMissingCountersForAnInvalidResponseNotForZeros)
{
    transport.answer(200, R"({"data":{"id":"7"}})");
    EXPECT_EQ(failure(client.metrics(QStringLiteral("7"))), XAPIError::invalidResponse());
}

TEST_F(XAPIClientTest, SearchesOnePageOfAConversationAndKeepsItsAuthor)
{
    transport.answer(200, page({post("3", R"(,"created_at":"2026-08-19T17:17:58Z")"), post("2", {}, "20"),
                                post("1", R"(,"created_at":"2026-08-19T17:17:56Z")")}));
    const auto posts = blockOn(client.conversation(QStringLiteral("1"), QStringLiteral("10")));
    ASSERT_EQ(posts.size(), 2);
    EXPECT_EQ(posts[0].tweetID, QStringLiteral("1"));
    EXPECT_EQ(posts[1].tweetID, QStringLiteral("3"));
    EXPECT_EQ(transport.requests().size(), 1);
    EXPECT_EQ(urlOf(0), "https://api.example/2/tweets/search/recent?" + wholePostQuery + "&max_results=100&" +
                            wholePostFields + "&query=conversation_id:1&" + tweetFields + '&' + userFields);
}

TEST_F(XAPIClientTest, TakesAnEmptySearchForAnInvalidResponse)
{
    transport.answer(200, R"({"meta":{"result_count":0}})");
    EXPECT_EQ(failure(client.conversation(QStringLiteral("1"), QStringLiteral("10"))),
              XAPIError::invalidResponse());
}

TEST_F(XAPIClientTest, DeletesABookmarkWithoutReadingTheAnswer)
{
    transport.answer(204, "\xFF not JSON");
    blockOn(client.deleteBookmark(QStringLiteral("7 8")));
    const HTTPRequest& request = transport.requests().first();
    EXPECT_EQ(request.method, "DELETE");
    EXPECT_EQ(urlOf(0), "https://api.example/2/users/42/bookmarks/7%208");
    EXPECT_EQ(request.headers,
              (QList<HTTPHeader>{{"Authorization", "Bearer access"}, {"Accept", "application/json"}}));
    EXPECT_EQ(request.timeout, std::chrono::seconds(60));
}

TEST_F(XAPIClientTest, AppendsPathsToARootWithATrailingSlash)
{
    XAPIClient other(vault, transport, QUrl(QStringLiteral("http://127.0.0.1:8080/2/")), Instant::now);
    transport.answer(204, {});
    blockOn(other.deleteBookmark(QStringLiteral("7")));
    EXPECT_EQ(urlOf(0), "http://127.0.0.1:8080/2/users/42/bookmarks/7");
}

TEST_F(XAPIClientTest, FailsWithoutCredentialsAndWithoutARequest)
{
    InMemoryCredentialVault empty;
    XAPIClient other(empty, transport, QUrl(QStringLiteral("https://api.example/2")), Instant::now);
    EXPECT_EQ(failure(other.bookmarks({}, 50)), XAPIError::credentialsMissing());
    EXPECT_EQ(failure(other.currentUser()), XAPIError::credentialsMissing());
    EXPECT_EQ(failure(other.bookmarkFolders({}, 50)), XAPIError::credentialsMissing());
    EXPECT_EQ(failure(other.folderPostIDs({}, {}, 50)), XAPIError::credentialsMissing());
    EXPECT_EQ(failure(other.metrics({})), XAPIError::credentialsMissing());
    EXPECT_EQ(failure(other.conversation({}, {})), XAPIError::credentialsMissing());
    EXPECT_EQ(failure(other.deleteBookmark({})), XAPIError::credentialsMissing());
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(XAPIClientTest, AsksToReconnectWhenTokenOrUserAreEmpty)
{
    XCredentials credentials = standardCredentials();
    credentials.accessToken.clear();
    store(credentials);
    EXPECT_EQ(failure(client.currentUser()), XAPIError::reconnectRequired());
    credentials = standardCredentials();
    credentials.userID.clear();
    store(credentials);
    EXPECT_EQ(failure(client.currentUser()), XAPIError::reconnectRequired());
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(XAPIClientTest, UsesCredentialsSavedElsewhereFromTheNextCallOn)
{
    transport.answer(204, {});
    transport.answer(204, {});
    blockOn(client.deleteBookmark(QStringLiteral("7")));
    XCredentials credentials = standardCredentials();
    credentials.accessToken = QStringLiteral("other");
    credentials.userID = QStringLiteral("43");
    store(credentials);
    blockOn(client.deleteBookmark(QStringLiteral("7")));
    EXPECT_EQ(transport.requests()[1].header("Authorization"), "Bearer other");
    EXPECT_EQ(urlOf(1), "https://api.example/2/users/43/bookmarks/7");
}

struct Failure
{
    const char* name;
    int status;
    QByteArray body;
    XAPIError expected;
    friend void PrintTo(const Failure& row, std::ostream* stream) { *stream << row.name; }
};

class XAPIClientFailures : public XAPIClientTest, public testing::WithParamInterface<Failure>
{
};

TEST_P(XAPIClientFailures, AreReportedByEveryOperationWithoutASecondTry)
{
    const auto answer = [&] { transport.answer(GetParam().status, GetParam().body); };
    const auto expected = std::optional(GetParam().expected);
    answer();
    EXPECT_EQ(failure(client.bookmarks({}, 50)), expected);
    answer();
    EXPECT_EQ(failure(client.currentUser()), expected);
    answer();
    EXPECT_EQ(failure(client.bookmarkFolders({}, 50)), expected);
    answer();
    EXPECT_EQ(failure(client.folderPostIDs(QStringLiteral("1"), {}, 50)), expected);
    answer();
    EXPECT_EQ(failure(client.metrics(QStringLiteral("1"))), expected);
    answer();
    EXPECT_EQ(failure(client.conversation(QStringLiteral("1"), QStringLiteral("2"))), expected);
    EXPECT_EQ(transport.requests().size(), 6);
    if (GetParam().status == 200)
        return;
    answer();
    EXPECT_EQ(failure(client.deleteBookmark(QStringLiteral("1"))), expected);
    EXPECT_EQ(transport.requests().size(), 7);
}

XAPIError http(int status, const char* message)
{
    return XAPIError::http(status, QString::fromUtf8(message));
}

INSTANTIATE_TEST_SUITE_P(
    Answers, XAPIClientFailures,
    testing::Values(
        Failure{"unauthorized", 401,
                R"({"title":"Unauthorized","type":"about:blank","status":401,"detail":"No such token"})",
                http(401, "No such token")},
        Failure{"forbidden", 403, R"({"title":"Forbidden","detail":"App not enrolled","reason":"x"})",
                http(403, "App not enrolled")},
        Failure{"noCredits", 402, R"({"title":"CreditsDepleted"})", http(402, "CreditsDepleted")},
        Failure{"emptyDetail", 500, R"({"title":"T","detail":""})", http(500, "")},
        Failure{"nullDetail", 500, R"({"title":"T","detail":null})", http(500, "T")},
        Failure{"otherJSON", 500, R"({"errors":[{"code":88}]})", http(500, R"({"errors":[{"code":88}]})")},
        Failure{"detailOfTheWrongType", 500, R"({"title":"T","detail":7})",
                http(500, R"({"title":"T","detail":7})")},
        Failure{"hypertext", 503, "<html>Über capacity</html>", http(503, "<html>Über capacity</html>")},
        Failure{"notUTF8", 500, "\xFF\xFE oops", http(500, "Request failed")},
        Failure{"cutUTF8", 500, "oops \xE5\xAD", http(500, "Request failed")},
        Failure{"emptyBody", 500, "", http(500, "")}, Failure{"redirect", 302, "Found", http(302, "Found")},
        Failure{"tooManyRequests", 429, R"({"detail":"unread"})", XAPIError::rateLimited(std::nullopt)},
        Failure{"unreadableAnswer", 200, "<html>", XAPIError::invalidResponse()},
        Failure{"emptyAnswer", 200, "", XAPIError::invalidResponse()},
        Failure{"answerOfTheWrongShape", 200, "[]", XAPIError::invalidResponse()}),
    [](const auto& row) { return std::string(row.param.name); });

struct Reset
{
    const char* name;
    std::optional<QByteArray> header;
    std::optional<double> seconds;
    friend void PrintTo(const Reset& row, std::ostream* stream) { *stream << row.name; }
};

class XAPIClientRateLimits : public XAPIClientTest, public testing::WithParamInterface<Reset>
{
};

TEST_P(XAPIClientRateLimits, EndAtTheInstantThatXTells)
{
    QList<HTTPHeader> headers;
    if (GetParam().header)
        headers.append(HTTPHeader("X-Rate-Limit-Reset", *GetParam().header));
    transport.answer(429, "Rate limit exceeded", headers);
    const auto error = failure(client.bookmarks({}, 50));
    ASSERT_TRUE(error);
    const auto expected =
        GetParam().seconds ? std::optional(Instant::fromSecondsSince1970(*GetParam().seconds)) : std::nullopt;
    EXPECT_EQ(*error, XAPIError::rateLimited(expected));
    if (!expected) {
        EXPECT_EQ(error->description(), QStringLiteral("X rate limit reached."));
    }
}

INSTANTIATE_TEST_SUITE_P(Headers, XAPIClientRateLimits,
                         testing::Values(Reset{"whole", "1787159876", 1787159876.0},
                                         Reset{"fraction", "1787159876.5", 1787159876.5},
                                         Reset{"zero", "0", 0.0}, Reset{"none", {}, {}},
                                         Reset{"empty", "", {}}, Reset{"leadingBlank", " 123", {}},
                                         Reset{"trailingBlank", "123 ", {}}, Reset{"words", "soon", {}},
                                         Reset{"unit", "123s", {}}, Reset{"infinite", "inf", {}},
                                         Reset{"notANumber", "nan", {}},
                                         Reset{"beyondAllCalendars", "1e300", {}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(XAPIClientTest, PassesFailuresOfTheTransportOn)
{
    EXPECT_THROW(static_cast<void>(blockOn(client.bookmarks({}, 50))), ConnectionLost);
    EXPECT_THROW(blockOn(client.deleteBookmark(QStringLiteral("1"))), ConnectionLost);
}

} // namespace
} // namespace mirel
