#include "testing/Printing.h"

#include "simulator/SimulatorClient.h"

#include <QImage>
#include <QJsonArray>
#include <QSet>

#include <gtest/gtest.h>

namespace mirel {
namespace {

const QByteArray user = "/2/users/1471900000000000001";

class SimulatedRoutes : public ::testing::Test
{
protected:
    void SetUp() override { simulator.listen(); }

    ClientAnswer get(const QByteArray& target) const { return SimulatorClient(simulator).get(target); }

    Simulator simulator{{.posts = 200, .seed = 21}};
};

QJsonArray data(const ClientAnswer& answer)
{
    return answer.json().value(QLatin1StringView("data")).toArray();
}

TEST_F(SimulatedRoutes, TellsWhoTheAccountBelongsTo)
{
    EXPECT_EQ(get("/2/users/me?user.fields=id,name,username").body,
              R"({"data":{"id":"1471900000000000001","name":"Mirel Demo","username":"mirel_demo"}})");
}

TEST_F(SimulatedRoutes, RefusesAMissingOrWrongTokenAndRemembersIt)
{
    const SimulatorClient client(simulator);
    for (const QByteArray& token : {QByteArray(), QByteArray("stolen")}) {
        const ClientAnswer answer = client.request("GET", "/2/users/me", {}, {}, token);
        EXPECT_EQ(answer.status, 401);
        EXPECT_EQ(answer.body,
                  R"({"title":"Unauthorized","type":"about:blank","status":401,"detail":"Unauthorized"})");
    }
    EXPECT_EQ(simulator.problems().size(), 2);
}

TEST_F(SimulatedRoutes, RefusesRequestsThatAreNotAsTheyShouldBe)
{
    const std::pair<QByteArray, int> rows[] = {
        {"/2/nothing", 404},
        {user + "/bookmarks?max_results=50", 400},
        {SimulatorClient::bookmarks().replace("lang,note_tweet", "lang"), 400},
        {SimulatorClient::bookmarks() + "&extra=1", 400},
        {SimulatorClient::bookmarks() + "&max_results=50", 400},
        {SimulatorClient::bookmarks(0), 400},
        {SimulatorClient::bookmarks(101), 400},
        {SimulatorClient::bookmarks(50, QStringLiteral("zlmade-up")), 400},
        {SimulatorClient::bookmarks().replace("1471900000000000001", "12"), 403},
        {user + "/bookmarks/folders/12", 404},
        {"/2/tweets?" + postQuery(), 400},
        {"/2/tweets/search/recent?query=cats&" + postQuery(), 400},
    };
    int problems = 0;
    for (const auto& [target, status] : rows) {
        EXPECT_EQ(get(target).status, status) << target.toStdString();
        EXPECT_EQ(simulator.problems().size(), ++problems) << target.toStdString();
    }
}

TEST_F(SimulatedRoutes, DeletesABookmarkForGood)
{
    const QStringList before = simulator.accountIDs();
    const ClientAnswer answer =
        SimulatorClient(simulator).request("DELETE", user + "/bookmarks/" + before.at(3).toLatin1());
    EXPECT_EQ(answer.body, R"({"data":{"bookmarked":false}})");
    QStringList expected = before;
    expected.removeAt(3);
    EXPECT_EQ(simulator.accountIDs(), expected);
    EXPECT_FALSE(dataIDs(SimulatorClient(simulator).page(100)).contains(before.at(3)));
}

TEST_F(SimulatedRoutes, PagesThroughFoldersAndTheirPosts)
{
    const ClientAnswer first = get(user + "/bookmarks/folders?max_results=4");
    const ClientAnswer second =
        get(user + "/bookmarks/folders?max_results=4&pagination_token=" + nextToken(first).toLatin1());
    EXPECT_EQ(dataIDs(first).size(), 4);
    EXPECT_EQ(dataIDs(second).size(), 2);
    EXPECT_EQ(nextToken(second), QString());
    const QByteArray folder = user + "/bookmarks/folders/" + dataIDs(first).first().toLatin1();
    QStringList ids;
    QString token;
    do {
        const ClientAnswer page =
            get(folder + "?max_results=5" +
                (token.isEmpty() ? QByteArray() : "&pagination_token=" + token.toLatin1()));
        for (const QJsonValue& element : data(page))
            EXPECT_EQ(element.toObject().keys(), QStringList{QStringLiteral("id")});
        ids += dataIDs(page);
        token = nextToken(page);
    } while (!token.isEmpty());
    EXPECT_EQ(ids, dataIDs(get(folder + "?max_results=100")));
    EXPECT_GT(ids.size(), 5);
    const QStringList account = simulator.accountIDs();
    EXPECT_TRUE(std::all_of(ids.begin(), ids.end(), [&](const QString& id) { return account.contains(id); }));
}

TEST_F(SimulatedRoutes, GivesThePublicMetricsOfOnePost)
{
    const QByteArray id = simulator.accountIDs().first().toLatin1();
    const QJsonObject post = get("/2/tweets/" + id + "?tweet.fields=public_metrics")
                                 .json()
                                 .value(QLatin1StringView("data"))
                                 .toObject();
    EXPECT_EQ(post.value(QLatin1StringView("id")).toString(), QString::fromLatin1(id));
    EXPECT_TRUE(
        post.value(QLatin1StringView("public_metrics")).toObject().contains(QLatin1StringView("like_count")));
    EXPECT_FALSE(post.contains(QLatin1StringView("author_id")));
    const ClientAnswer missing = get("/2/tweets/12?tweet.fields=public_metrics");
    EXPECT_EQ(missing.status, 200);
    EXPECT_FALSE(missing.json().contains(QLatin1StringView("data")));
    EXPECT_TRUE(missing.json().contains(QLatin1StringView("errors")));
}

TEST_F(SimulatedRoutes, BringsTheMediaOfAQuotedArticleOnlyWithTheSecondRequest)
{
    const ClientAnswer page = SimulatorClient(simulator).page();
    const QJsonObject includes = page.json().value(QLatin1StringView("includes")).toObject();
    int articles = 0;
    for (const QJsonValue& quoted : includes.value(QLatin1StringView("tweets")).toArray()) {
        const QJsonObject article = quoted.toObject().value(QLatin1StringView("article")).toObject();
        if (article.isEmpty())
            continue;
        ++articles;
        const QByteArray cover = article.value(QLatin1StringView("cover_media")).toString().toLatin1();
        const QByteArray member = "\"media_key\":\"" + cover + "\",\"type\"";
        EXPECT_FALSE(page.body.contains(member));
        const QByteArray id = quoted.toObject().value(QLatin1StringView("id")).toString().toLatin1();
        EXPECT_TRUE(get("/2/tweets?ids=" + id + "&" + postQuery()).body.contains(member));
    }
    EXPECT_EQ(articles, 1);
}

TEST_F(SimulatedRoutes, FindsTheConversationOfAThreadWithOtherPeoplesReplies)
{
    bool foundThread = false;
    bool foundReply = false;
    for (const ClientAnswer& page : SimulatorClient(simulator).allPages()) {
        for (const QJsonValue& element : data(page)) {
            const QJsonObject post = element.toObject();
            if (!post.value(QLatin1StringView("text")).toString().contains(QStringLiteral("A thread")))
                continue;
            const QByteArray id = post.value(QLatin1StringView("id")).toString().toLatin1();
            const QJsonArray conversation = data(get(
                "/2/tweets/search/recent?max_results=100&query=conversation_id:" + id + "&" + postQuery()));
            qsizetype own = 0;
            for (const QJsonValue& part : conversation) {
                // Some posts lack the field.
                const QJsonValue named = part[QLatin1StringView("conversation_id")];
                EXPECT_EQ(named.toString(QString::fromLatin1(id)).toLatin1(), id);
                own += part[QLatin1StringView("author_id")] == post.value(QLatin1StringView("author_id")) ? 1
                                                                                                          : 0;
            }
            foundThread = foundThread || own > 2;
            foundReply = foundReply || own < conversation.size();
        }
    }
    EXPECT_TRUE(foundThread);
    EXPECT_TRUE(foundReply);
    EXPECT_EQ(get("/2/tweets/search/recent?query=conversation_id:12&" + postQuery()).body,
              "{\"meta\":{\"result_count\":0}}");
}

TEST_F(SimulatedRoutes, ServesThePicturesThatItsPostsName)
{
    const QJsonObject includes =
        SimulatorClient(simulator).page().json().value(QLatin1StringView("includes")).toObject();
    int pictures = 0;
    const auto check = [&](const QJsonValue& address) {
        if (address.isUndefined())
            return;
        const QUrl url(address.toString());
        EXPECT_EQ(url.port(), simulator.apiURL().port());
        EXPECT_FALSE(QImage::fromData(get(url.path().toLatin1()).body).isNull())
            << address.toString().toStdString();
        ++pictures;
    };
    for (const QJsonValue& media : includes.value(QLatin1StringView("media")).toArray()) {
        check(media[QLatin1StringView("url")]);
        check(media[QLatin1StringView("preview_image_url")]);
    }
    for (const QJsonValue& author : includes.value(QLatin1StringView("users")).toArray())
        check(author[QLatin1StringView("profile_image_url")]);
    EXPECT_GT(pictures, 20);
    EXPECT_EQ(get("/media/photo/9-300x200.jpg").body, get("/media/photo/9-300x200.jpg").body);
    EXPECT_EQ(get("/media/photo/strange.jpg").status, 404);
}

} // namespace
} // namespace mirel
