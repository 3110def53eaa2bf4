#include "testing/Printing.h"

#include "simulator/SimulatorClient.h"

#include <QJsonArray>
#include <QSet>

#include <gtest/gtest.h>

namespace mirel {
namespace {

QStringList idsOf(const QList<ClientAnswer>& pages)
{
    QStringList ids;
    for (const ClientAnswer& page : pages)
        ids += dataIDs(page);
    return ids;
}

TEST(SimulatedPaging, GivesEveryPostExactlyOnceInTheAccountsOrder)
{
    for (const int posts : {1, 49, 50, 51, 237}) {
        Simulator simulator({.posts = posts, .seed = 11});
        simulator.listen();
        const QStringList ids = idsOf(SimulatorClient(simulator).allPages());
        EXPECT_EQ(ids, simulator.accountIDs()) << posts;
        EXPECT_EQ(QSet<QString>(ids.begin(), ids.end()).size(), posts);
        EXPECT_EQ(simulator.problems(), QStringList());
    }
}

TEST(SimulatedPaging, KeepsPagesOfFiftyBetweenSixtyAndAHundredKilobytes)
{
    for (const quint64 seed : {1U, 2U, 3U, 77U}) {
        Simulator simulator({.posts = 1000, .seed = seed});
        simulator.listen();
        const QList<ClientAnswer> pages = SimulatorClient(simulator).allPages();
        ASSERT_EQ(pages.size(), 20);
        for (const ClientAnswer& page : pages) {
            EXPECT_GE(page.body.size(), 60'000) << seed;
            EXPECT_LE(page.body.size(), 100'000) << seed;
        }
    }
}

TEST(SimulatedPaging, GivesTheSameBytesForTheSameSeedAndOthersForAnother)
{
    const auto bytes = [](quint64 seed) {
        Simulator simulator({.posts = 120, .seed = seed});
        simulator.listen();
        QByteArray all;
        for (const ClientAnswer& page : SimulatorClient(simulator).allPages())
            all += page.body;
        // The port is the system's choice.
        return all.replace(QByteArray::number(simulator.apiURL().port()), "PORT");
    };
    EXPECT_EQ(bytes(5), bytes(5));
    EXPECT_NE(bytes(5), bytes(6));
}

TEST(SimulatedPaging, AnswersAnEmptyAccountWithoutData)
{
    Simulator simulator({.posts = 0});
    simulator.listen();
    EXPECT_EQ(SimulatorClient(simulator).page().body, "{\"meta\":{\"result_count\":0}}");
}

TEST(SimulatedPaging, IncludesEachAuthorPostAndMediaItemOnceAndEveryAuthorOfTheData)
{
    Simulator simulator({.posts = 300, .seed = 4});
    simulator.listen();
    for (const ClientAnswer& page : SimulatorClient(simulator).allPages(100)) {
        const QJsonObject includes = page.json().value(QLatin1StringView("includes")).toObject();
        QSet<QString> users;
        for (const auto& [list, key] : {std::pair{"users", "id"}, {"tweets", "id"}, {"media", "media_key"}}) {
            QSet<QString> keys;
            const QJsonArray elements = includes.value(QLatin1StringView(list)).toArray();
            for (const QJsonValue& element : elements)
                keys.insert(element.toObject().value(QLatin1StringView(key)).toString());
            EXPECT_EQ(keys.size(), elements.size()) << list;
            if (list == std::string_view("users"))
                users = keys;
        }
        for (const QJsonValue& post : page.json().value(QLatin1StringView("data")).toArray())
            EXPECT_TRUE(users.contains(post.toObject().value(QLatin1StringView("author_id")).toString()));
    }
}

TEST(SimulatedPaging, GoesBackWithThePreviousToken)
{
    Simulator simulator({.posts = 30});
    simulator.listen();
    const SimulatorClient client(simulator);
    const ClientAnswer first = client.page(10);
    const ClientAnswer second = client.page(10, nextToken(first));
    const QString previous = second.json()
                                 .value(QLatin1StringView("meta"))
                                 .toObject()
                                 .value(QLatin1StringView("previous_token"))
                                 .toString();
    EXPECT_EQ(dataIDs(client.page(10, previous)), dataIDs(first));
    EXPECT_FALSE(first.body.contains("previous_token"));
}

TEST(SimulatedPaging, HidesSomeQuotedPostsAndSaysSoBesideTheData)
{
    Simulator simulator({.posts = 50});
    simulator.listen();
    const QJsonObject page = SimulatorClient(simulator).page().json();
    const QJsonArray errors = page.value(QLatin1StringView("errors")).toArray();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.first().toObject().value(QLatin1StringView("title")).toString(),
              QStringLiteral("Authorization Error"));
}

} // namespace
} // namespace mirel
