#include "testing/Printing.h"

#include "simulator/Scenario.h"
#include "simulator/SimulatorError.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

struct BadScenario
{
    const char* name;
    QByteArray json;
    QString description;
};

TEST(Scenario, NamesThePlaceOfWhatItDoesNotUnderstand)
{
    const BadScenario rows[] = {
        {"a list", "[]", QStringLiteral("The scenario cannot be used: it must be an object.")},
        {"an unknown key", R"({"fault":[]})",
         QStringLiteral("The scenario cannot be used: “fault” is not known.")},
        {"an unknown action", R"({"faults":[{"action":"explode"}]})",
         QStringLiteral("The scenario cannot be used: “faults.0.action” has the unknown value “explode”.")},
        {"an unknown member", R"({"faults":[{},{"page":1}]})",
         QStringLiteral("The scenario cannot be used: “faults.1.page” is not known.")},
        {"no status", R"({"faults":[{"action":"status"}]})",
         QStringLiteral("The scenario cannot be used: “faults.0.status” must be an HTTP status.")},
        {"no location", R"({"faults":[{"action":"redirect"}]})",
         QStringLiteral("The scenario cannot be used: “faults.0.location” is missing.")},
        {"request 0", R"({"faults":[{"requests":0}]})",
         QStringLiteral("The scenario cannot be used: “faults.0.requests” must be an integer from 1 up.")},
        {"half a request", R"({"faults":[{"requests":[1.5]}]})",
         QStringLiteral("The scenario cannot be used: “faults.0.requests” must be an integer from 1 up.")},
        {"a text for a number", R"({"delayMilliseconds":"5"})",
         QStringLiteral("The scenario cannot be used: “delayMilliseconds” must be an integer from 0 up.")},
        {"a number for a text", R"({"faults":[{"path":5}]})",
         QStringLiteral("The scenario cannot be used: “faults.0.path” must be a text.")},
    };
    for (const BadScenario& row : rows) {
        try {
            static_cast<void>(Scenario::fromJSON(row.json));
            ADD_FAILURE() << row.name;
        } catch (const SimulatorError& error) {
            EXPECT_EQ(error.description(), row.description) << row.name;
        }
    }
}

TEST(Scenario, SaysWhereATextStopsBeingJSON)
{
    try {
        static_cast<void>(Scenario::fromJSON("{\"faults\":"));
        FAIL();
    } catch (const SimulatorError& error) {
        EXPECT_TRUE(error.description().startsWith(
            QStringLiteral("The scenario cannot be used: it is no JSON at byte ")));
    }
}

TEST(Scenario, SelectsRequestsByNumberListRangeOrAll)
{
    const auto selected = [](const QByteArray& requests) {
        const Scenario scenario = Scenario::fromJSON("{\"faults\":[{\"requests\":" + requests + "}]}");
        QList<int> numbers;
        for (int i = 1; i <= 5; ++i) {
            if (scenario.faults.first().requests.contains(i))
                numbers.append(i);
        }
        return numbers;
    };
    EXPECT_EQ(selected("3"), QList<int>({3}));
    EXPECT_EQ(selected("[1,4]"), QList<int>({1, 4}));
    EXPECT_EQ(selected("{\"from\":4}"), QList<int>({4, 5}));
    EXPECT_EQ(selected("{\"from\":2,\"to\":3}"), QList<int>({2, 3}));
    EXPECT_EQ(selected("\"every\""), QList<int>({1, 2, 3, 4, 5}));
}

} // namespace
} // namespace mirel
