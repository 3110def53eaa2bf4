#include "testing/Printing.h"

#include "x/XAPIClientTest.h"

namespace mirel {
namespace {

using namespace testPages;

QByteArray medium(const QByteArray& key)
{
    return R"({"media_key":")" + key + R"(","type":"photo","url":"https://p.example/)" + key + R"("})";
}

QByteArray quoting(const QByteArray& id, const QByteArray& quoted)
{
    return post(id, R"(,"referenced_tweets":[{"type":"quoted","id":")" + quoted + R"("}])");
}

// A post that is an article which names the cover "cover" and the medium "inner".
QByteArray article(const QByteArray& id, const QByteArray& members = {})
{
    return post(id,
                R"(,"article":{"title":"Old title","cover_media":"cover","media_entities":[{"id":"inner"}])" +
                    members + '}',
                "20");
}

class XAPIClientQuotedArticles : public XAPIClientTest
{
protected:
    QList<SyncedBookmark> bookmarks() { return blockOn(client.bookmarks({}, 50)).items; }

    void answerWithMedia()
    {
        transport.answer(200, R"({"data":[)" +
                                  post("9", R"(,"article":{"title":"New title","plain_text":"New body",
                                       "cover_media":"cover","media_entities":["inner","absent"]},
                                       "entities":{"urls":[{"url":"https://youtu.be/y"}]})",
                                       "20") +
                                  R"(],"includes":{"media":[)" + medium("cover") + ',' + medium("inner") +
                                  "]}}");
    }
};

TEST_F(XAPIClientQuotedArticles, AreCompletedWithOneRequestForTheWholePage)
{
    const QByteArray includes = R"("tweets":[)" + article("9") + ',' + article("8") + ',' + post("7") +
                                R"(],"media":[)" + medium("cover") + ']';
    transport.answer(200, page({quoting("1", "9"), quoting("2", "8"), quoting("3", "9"), quoting("4", "7"),
                                post("5"), quoting("6", "404")},
                               includes));
    answerWithMedia();
    const auto items = bookmarks();
    ASSERT_EQ(transport.requests().size(), 2);
    EXPECT_TRUE(urlOf(1).startsWith("https://api.example/2/tweets?expansions=author_id,"));
    EXPECT_TRUE(urlOf(1).contains("&ids=9,8&"));
    EXPECT_TRUE(urlOf(1).contains("&tweet.fields=id,text,article,"));
    EXPECT_EQ(transport.requests()[1].header("Authorization"), "Bearer access");
    const QStringList completed{QStringLiteral("cover"), QStringLiteral("inner"),
                                QStringLiteral("youtube-https://youtu.be/y")};
    EXPECT_EQ(idsOf(items[0].quotedPost->media), completed);
    EXPECT_EQ(idsOf(items[2].quotedPost->media), completed);
    // X did not return the post "8".
    EXPECT_EQ(idsOf(items[1].quotedPost->media), QStringList{QStringLiteral("cover")});
    EXPECT_EQ(items[1].quotedPost->contentTitle, QStringLiteral("Old title"));
    EXPECT_TRUE(items[3].quotedPost->media.isEmpty());
    EXPECT_EQ(items[5].quotedPost, std::nullopt);
}

TEST_F(XAPIClientQuotedArticles, TakeTitleAndTextButKeepEverythingElse)
{
    const QByteArray json = page({quoting("1", "9")}, R"("tweets":[)" + article("9") + ']');
    transport.answer(200, json);
    answerWithMedia();
    const auto items = bookmarks();
    const SyncedBookmark before = postMapping::parseBookmarkPage(json).items.first();
    const QuotedPost& quoted = *items.first().quotedPost;
    EXPECT_EQ(quoted.contentTitle, QStringLiteral("New title"));
    EXPECT_EQ(quoted.contentText, QStringLiteral("New body"));
    EXPECT_EQ(quoted.text, QStringLiteral("Text of 9"));
    EXPECT_EQ(quoted.author, before.quotedPost->author);
    EXPECT_EQ(items.first().rawJSON, before.rawJSON);
    SyncedBookmark restored = items.first();
    restored.quotedPost = before.quotedPost;
    EXPECT_EQ(restored, before);
}

TEST_F(XAPIClientQuotedArticles, KeepTitleAndTextThatTheAnswerLacks)
{
    transport.answer(
        200, page({quoting("1", "9")}, R"("tweets":[)" + article("9", R"(,"plain_text":"Old body")") + ']'));
    transport.answer(200, R"({"data":[)" + post("9", R"(,"article":{"cover_media":"cover"})") +
                              R"(],"includes":{"media":[)" + medium("cover") + "]}}");
    const QuotedPost quoted = *bookmarks().first().quotedPost;
    EXPECT_EQ(quoted.contentTitle, QStringLiteral("Old title"));
    EXPECT_EQ(quoted.contentText, QStringLiteral("Old body"));
    EXPECT_EQ(idsOf(quoted.media), QStringList{QStringLiteral("cover")});
}

TEST_F(XAPIClientQuotedArticles, MayComeBackWithoutAnArticle)
{
    transport.answer(200, page({quoting("1", "9")}, R"("tweets":[)" + article("9") + ']'));
    transport.answer(200, R"({"data":[)" + post("9") + "]}");
    const QuotedPost quoted = *bookmarks().first().quotedPost;
    EXPECT_EQ(quoted.contentTitle, QStringLiteral("Old title"));
    EXPECT_TRUE(quoted.media.isEmpty());
}

TEST_F(XAPIClientQuotedArticles, AreLeftAloneWhenNothingIsMissing)
{
    transport.answer(
        200, page({quoting("1", "9"), quoting("2", "7"), post("3", R"(,"article":{"cover_media":"x"})")},
                  R"("tweets":[)" + article("9") + ',' + post("7") + R"(],"media":[)" + medium("cover") +
                      ',' + medium("inner") + ']'));
    EXPECT_EQ(bookmarks().size(), 3);
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_F(XAPIClientQuotedArticles, FailTheWholeCallWhenTheirRequestFails)
{
    const QByteArray json = page({quoting("1", "9"), post("2")}, R"("tweets":[)" + article("9") + ']');
    const auto failureAfter = [&](int status, const QByteArray& body) {
        transport.answer(200, json);
        transport.answer(status, body, {{"x-rate-limit-reset", "123"}});
        return failure(client.bookmarks({}, 50));
    };
    EXPECT_EQ(failureAfter(429, {}), XAPIError::rateLimited(Instant::fromSecondsSince1970(123)));
    EXPECT_EQ(failureAfter(503, "down"), XAPIError::http(503, QStringLiteral("down")));
    EXPECT_EQ(failureAfter(200, R"({"errors":[{"title":"Not Found Error"}]})"), XAPIError::invalidResponse());
    EXPECT_EQ(failureAfter(200, "<html>"), XAPIError::invalidResponse());
    EXPECT_EQ(
        failureAfter(200, R"({"data":[],"includes":{"media":[)" + medium("a") + ',' + medium("a") + "]}}"),
        XAPIError::invalidResponse());
    EXPECT_EQ(failureAfter(200, R"({"data":[)" + post("9") + ',' + post("9") + "]}"),
              XAPIError::invalidResponse());
    transport.answer(200, json);
    EXPECT_THROW(static_cast<void>(bookmarks()), ConnectionLost);
}

} // namespace
} // namespace mirel
