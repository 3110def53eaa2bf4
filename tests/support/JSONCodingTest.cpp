#include "testing/Printing.h"

#include "support/JSONCoding.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace mirel {
namespace {

enum class Colour { red, green };

constexpr auto rawValues(Colour)
{
    return std::array{
        RawValue{Colour::red, QLatin1StringView("red")},
        RawValue{Colour::green, QLatin1StringView("light_green")},
    };
}

struct Inner
{
    qint64 number = 0;

    static constexpr auto jsonFields() { return std::tuple{jsonField("number", &Inner::number)}; }
    friend bool operator==(const Inner&, const Inner&) = default;
};

struct Everything
{
    QString text;
    QByteArray raw;
    bool flag = false;
    qint64 whole = 0;
    double real = 0;
    QUrl url;
    Instant date;
    Colour colour = Colour::red;
    QList<Inner> list;
    std::optional<Inner> maybe;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("text", &Everything::text), jsonField("raw", &Everything::raw),
            jsonField("flag", &Everything::flag), jsonField("whole", &Everything::whole),
            jsonField("real", &Everything::real), jsonField("url", &Everything::url),
            jsonField("date", &Everything::date), jsonField("colour", &Everything::colour),
            jsonField("list", &Everything::list), jsonField("maybe", &Everything::maybe),
        };
    }
    friend bool operator==(const Everything&, const Everything&) = default;
};

const QByteArray everything =
    R"({"colour":"light_green","date":0.25,"flag":true,"list":[{"number":1},{"number":2}],)"
    R"("maybe":{"number":3},"raw":"{\"é\":1.0}","real":1.5,"text":"a\"😀","url":"https://a.example/%C3%A9",)"
    R"("whole":9007199254740993})";

QString keyOfFailure(const QByteArray& json)
{
    try {
        (void)decodeJSON<Everything>(json);
    } catch (const JSONCodingError& error) {
        return error.key();
    }
    return QStringLiteral("no failure");
}

TEST(JSONCoding, ReadsAndWritesEveryType)
{
    const auto value = decodeJSON<Everything>(everything);
    EXPECT_EQ(value.raw, "{\"é\":1.0}");
    EXPECT_EQ(value.whole, 9'007'199'254'740'993);
    EXPECT_EQ(value.date, Instant::fromSecondsSince1970(978'307'200.25));
    EXPECT_EQ(value.colour, Colour::green);
    EXPECT_EQ(value.list, (QList<Inner>{{1}, {2}}));
    EXPECT_EQ(value.maybe, Inner{3});
    EXPECT_EQ(encodeJSON(value), everything);
}

TEST(JSONCoding, KeepsWholeNumbersOf64Bits)
{
    for (const qint64 number : {std::numeric_limits<qint64>::min(), qint64(-1), qint64(0), qint64(1),
                                (qint64(1) << 53) + 1, std::numeric_limits<qint64>::max()})
        EXPECT_EQ(decodeJSON<qint64>(encodeJSON(number)), number);
    EXPECT_EQ(decodeJSON<qint64>("3.0"), 3);
    for (const QByteArray json : {"0.5", "1e300", "9223372036854775808", "\"1\"", "true", "null"})
        EXPECT_THROW((void)decodeJSON<qint64>(json), JSONCodingError) << json.constData();
}

TEST(JSONCoding, NamesThePathOfWhatIsWrong)
{
    const auto broken = [](const char* from, const char* to) {
        return QByteArray(everything).replace(from, to);
    };
    EXPECT_EQ(keyOfFailure(broken(R"("text")", R"("other")")), u"text");
    EXPECT_EQ(keyOfFailure(broken(R"({"number":2})", R"({"number":"2"})")), u"list.1.number");
    EXPECT_EQ(keyOfFailure(broken(R"({"number":2})", "{}")), u"list.1.number");
    EXPECT_EQ(keyOfFailure(broken(R"({"number":2})", "null")), u"list.1");
    EXPECT_EQ(keyOfFailure(broken(R"({"number":3})", "{}")), u"maybe.number");
    EXPECT_EQ(keyOfFailure(broken("light_green", "green")), u"colour");
    EXPECT_EQ(keyOfFailure(broken("https://a.example/%C3%A9", "http://a b/")), u"url");
    EXPECT_EQ(keyOfFailure(broken("true", "1")), u"flag");
    EXPECT_EQ(keyOfFailure("[]"), u"");
}

TEST(JSONCoding, DescribesWhatIsWrong)
{
    const auto description = [](const QByteArray& json) {
        try {
            (void)decodeJSON<Inner>(json);
        } catch (const JSONCodingError& error) {
            return error.description();
        }
        return QStringLiteral("no failure");
    };
    EXPECT_EQ(description("{}"), u"The JSON value “number” is missing.");
    EXPECT_EQ(description(R"({"number":"x"})"), u"The JSON value “number” is not a whole number of 64 bits.");
    EXPECT_EQ(description("[]"), u"The JSON text is not an object.");
    EXPECT_TRUE(description("{").startsWith(QStringLiteral("The JSON text is not valid: ")));
}

TEST(JSONCodingError, CanHaveATextOfItsOwnWhereverItStands)
{
    const JSONCodingError error =
        JSONCodingError::withText(QStringLiteral("Unknown: x")).within(QStringLiteral("a"));
    EXPECT_EQ(error.description(), u"Unknown: x");
    EXPECT_EQ(error.within(QStringLiteral("b")).key(), u"b.a");
    EXPECT_EQ(error.within(QStringLiteral("b")).description(), u"Unknown: x");
}

TEST(ParseJSON, ReadsAnySingleValue)
{
    EXPECT_TRUE(parseJSON("null").isNull());
    EXPECT_EQ(parseJSON(" 7 "), QJsonValue(7));
    EXPECT_EQ(parseJSON("\"a\""), QJsonValue(QStringLiteral("a")));
    EXPECT_TRUE(parseJSON("{}").isObject());
    for (const QByteArray json : {"", " ", "1,2", "{} {}", "[", "nul", "\"\xff\"", "],["})
        EXPECT_THROW((void)parseJSON(json), JSONCodingError) << json.constData();
}

TEST(WriteJSON, WritesBareValuesToo)
{
    EXPECT_EQ(writeJSON(QJsonValue(QJsonValue::Null)), "null");
    EXPECT_EQ(writeJSON(QStringLiteral("a")), "\"a\"");
    EXPECT_EQ(writeJSON(QJsonObject{{QStringLiteral("b"), 1}, {QStringLiteral("a"), QJsonArray{}}}),
              R"({"a":[],"b":1})");
}

} // namespace
} // namespace mirel
