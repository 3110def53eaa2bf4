#include "testing/Printing.h"

#include "support/RawJSON.h"
#include "support/RawJSONDecoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <random>

namespace mirel {
namespace {

QByteArray canonical(const QByteArray& json)
{
    return RawJSON::parse(json).root().canonical();
}

QString describeFailure(const QByteArray& json)
{
    try {
        static_cast<void>(RawJSON::parse(json));
    } catch (const RawJSONError& error) {
        return error.description();
    }
    return QStringLiteral("no failure");
}

bool canBeParsed(const QByteArray& json)
{
    return describeFailure(json) == QStringLiteral("no failure");
}

qsizetype memberCount(const RawJSONValue& value)
{
    qsizetype count = 0;
    for ([[maybe_unused]] const RawJSONValue member : value.children())
        ++count;
    return count;
}

struct NamedJSON
{
    const char* name;
    QByteArray json;
};

void PrintTo(const NamedJSON& row, std::ostream* stream)
{
    *stream << row.name;
}

std::string nameOf(const testing::TestParamInfo<NamedJSON>& row)
{
    return row.param.name;
}

class RawJSONKeeps : public testing::TestWithParam<NamedJSON>
{
};

TEST_P(RawJSONKeeps, TheTokensByteForByte)
{
    EXPECT_EQ(canonical(GetParam().json), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    Tokens, RawJSONKeeps,
    testing::Values(NamedJSON{"wholeReal", "[1.0]"}, NamedJSON{"exponent", "[-1.50E+07]"},
                    NamedJSON{"negativeZero", "[-0]"}, NamedJSON{"largestInteger", "[9223372036854775807]"},
                    NamedJSON{"idAbove53Bits", R"({"id":2090126129567156115})"},
                    NamedJSON{"integerBeyond64Bits", "[123456789012345678901234567890]"},
                    NamedJSON{"escapedCharacters", R"(["\"\\\/\b\f\n\r\t\u0041"])"},
                    NamedJSON{"surrogatePair", R"(["\uD83D\uDC3B"])"},
                    NamedJSON{"halfASurrogatePair", R"(["\uD83D"])"},
                    NamedJSON{"escapedNull", R"(["\u0000"])"},
                    NamedJSON{"rawUnicode", "[\"\xF0\x9F\x90\xBB \xE5\xAD\xA6\"]"},
                    NamedJSON{"literals", "[null,true,false]"}, NamedJSON{"emptyContainers", R"([{},[],""])"},
                    NamedJSON{"emptyKey", R"({"":1})"}, NamedJSON{"bareText", R"("a")"},
                    NamedJSON{"bareNumber", "12"}, NamedJSON{"bareNull", "null"}),
    nameOf);

class RawJSONRefuses : public testing::TestWithParam<NamedJSON>
{
};

TEST_P(RawJSONRefuses, WhatIsNotJSON)
{
    const QString failure = describeFailure(GetParam().json);
    EXPECT_TRUE(failure.startsWith(u"The text is not valid JSON: ")) << failure.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RawJSONRefuses,
    testing::Values(
        NamedJSON{"nothing", ""}, NamedJSON{"spaces", " \n"}, NamedJSON{"hypertext", "<html></html>"},
        NamedJSON{"openObject", R"({"a":1)"}, NamedJSON{"openArray", "[1,2"},
        NamedJSON{"openNested", R"({"a":[1,{"b":2}})"}, NamedJSON{"wrongBracket", "[1}"},
        NamedJSON{"objectClosedAsArray", R"({"a":1])"}, NamedJSON{"openString", R"(["a)"},
        NamedJSON{"trailingComma", "[1,]"}, NamedJSON{"trailingMemberComma", R"({"a":1,})"},
        NamedJSON{"leadingComma", "[,1]"}, NamedJSON{"missingComma", "[1 2]"},
        NamedJSON{"missingColon", R"({"a" 1})"}, NamedJSON{"missingValue", R"({"a":})"},
        NamedJSON{"numberAsKey", "{1:2}"}, NamedJSON{"secondValue", "{} {}"},
        NamedJSON{"trailingBracket", "[1]]"}, NamedJSON{"textAfterText", R"(["a""b"])"},
        NamedJSON{"letterAfterText", R"(["a"b])"}, NamedJSON{"unknownWord", "[nul]"},
        NamedJSON{"longWord", "[nullx]"}, NamedJSON{"leadingZero", "[01]"}, NamedJSON{"leadingPlus", "[+1]"},
        NamedJSON{"bareMinus", "[-]"}, NamedJSON{"bareFraction", "[.5]"}, NamedJSON{"emptyFraction", "[1.]"},
        NamedJSON{"emptyExponent", "[1e]"}, NamedJSON{"notANumber", "[NaN]"},
        NamedJSON{"unknownEscape", R"(["\q"])"}, NamedJSON{"shortUnicodeEscape", R"(["\u12"])"},
        NamedJSON{"wrongUnicodeEscape", R"(["\u12G4"])"}, NamedJSON{"unknownEscapeInKey", R"({"\q":1})"},
        NamedJSON{"lineEndInText", "[\"a\nb\"]"}, NamedJSON{"comment", "[1/*2*/]"},
        NamedJSON{"bareSecondWord", "null null"}, NamedJSON{"invalidUTF8", "[\"\xFF\xFE\"]"},
        NamedJSON{"cutUTF8", "[\"\xE5\xAD\"]"}, NamedJSON{"encodedSurrogate", "[\"\xED\xA0\x80\"]"},
        NamedJSON{"nullByte", QByteArray("[1]\0", 4)}),
    nameOf);

TEST(RawJSON, OrdersTheKeysOfEveryObjectByTheirBytesAndDropsWhiteSpace)
{
    EXPECT_EQ(
        canonical(" { \"b\" : [ 1 , { \"z\":1, \"\\u0079\" :2 } ] ,\n\"a\":{\"B\":1,\"A\":2, \"\":0} } "),
        R"({"a":{"":0,"A":2,"B":1},"b":[1,{"\u0079":2,"z":1}]})");
}

TEST(RawJSON, OrdersObjectsOfManyKeys)
{
    QByteArrayList members;
    for (int i = 99; i >= 10; --i)
        members.append('"' + QByteArray::number(i) + "\":" + QByteArray::number(i));
    const QByteArray json = '{' + members.join(',') + '}';
    std::reverse(members.begin(), members.end());
    EXPECT_EQ(canonical(json), '{' + members.join(',') + '}');
}

TEST(RawJSON, KeepsEveryValueOfARepeatedKeyAndReadsTheLastOrTheFirst)
{
    const RawJSON json = RawJSON::parse(R"({"a":0,"\u006B":1,"k":2,"k":3})");
    EXPECT_EQ(json.root().canonical(), R"({"a":0,"\u006B":1,"k":2,"k":3})");
    EXPECT_EQ(json.root().member("k")->integer(), 3);
    EXPECT_EQ(json.root().firstMember("k")->integer(), 1);
}

TEST(RawJSON, TellsTheKeyOfAMember)
{
    const RawJSON json = RawJSON::parse(R"({"a":[0],"\u00e9\uD83D\uDC3B":1,"":2})");
    QStringList keys;
    for (const RawJSONValue value : json.root().children())
        keys.append(value.key());
    EXPECT_EQ(keys, QStringList({QStringLiteral("a"), QStringLiteral("é\U0001F43B"), QString()}));
    EXPECT_TRUE(json.root().key().isEmpty());
    EXPECT_TRUE((*json.root().firstMember("a")->children().begin()).key().isEmpty());
}

TEST(RawJSON, ReadsEscapesOnRequest)
{
    const RawJSON json = RawJSON::parse(R"({"t":"a\"\\\/\b\f\n\r\t\u00e9\uD83D\uDC3Bz","k\u0065y":"v"})");
    EXPECT_EQ(json.root().member("t")->string(), QStringLiteral("a\"\\/\b\f\n\r\té\U0001F43Bz"));
    EXPECT_EQ(json.root().member("key")->string(), QStringLiteral("v"));
}

TEST(RawJSON, ReadsHalfASurrogatePairAsTheReplacementCharacter)
{
    const RawJSON json =
        RawJSON::parse(R"(["\uD83D","\uDC3B!","\uD83D\u0041","\uD83D\uD83D\uDC3B","\uD83D\n"])");
    QStringList texts;
    for (const RawJSONValue text : json.root().children())
        texts.append(text.string());
    const QStringList expected{QStringLiteral("\uFFFD"), QStringLiteral("\uFFFD!"), QStringLiteral("\uFFFDA"),
                               QStringLiteral("\uFFFD\U0001F43B"), QStringLiteral("\uFFFD\n")};
    EXPECT_EQ(texts, expected);
}

TEST(RawJSON, ReadsWholeNumbersOf64Bits)
{
    const auto integer = [](const char* json) { return RawJSON::parse(json).root().integer(); };
    EXPECT_EQ(integer("-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(integer("9007199254740993"), 9007199254740993);
    EXPECT_EQ(integer("1.0"), 1);
    EXPECT_EQ(integer("-2.5e3"), -2500);
    EXPECT_EQ(integer("-0"), 0);
    for (const char* const json : {"1.5", "9223372036854775808", "1e400", "1e17", "\"1\"", "null", "[1]"})
        EXPECT_THROW(static_cast<void>(integer(json)), RawJSONError) << json;
}

TEST(RawJSON, ReadsTheIntegerPartOfNumbers)
{
    const auto part = [](const char* json) { return RawJSON::parse(json).root().integerPart(); };
    EXPECT_EQ(part("9007199254740993"), 9007199254740993);
    EXPECT_EQ(part("-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(part("-9.223372036854775808e18"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(part("1.9"), 1);
    EXPECT_EQ(part("-1.9"), -1);
    EXPECT_EQ(part("2.5e3"), 2500);
    for (const char* const json :
         {"9223372036854775808", "9.223372036854775808e18", "1e400", "\"1\"", "true", "null", "[1]"})
        EXPECT_FALSE(part(json)) << json;
}

TEST(RawJSON, NestsToItsLimitAndNoDeeper)
{
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    EXPECT_EQ(canonical(nested(RawJSON::maximumDepth)), nested(RawJSON::maximumDepth));
    EXPECT_EQ(describeFailure(nested(RawJSON::maximumDepth + 1)),
              QStringLiteral("The JSON text is nested too deeply."));
    EXPECT_EQ(describeFailure(QByteArray("{\"a\":").repeated(5000)),
              QStringLiteral("The JSON text is nested too deeply."));
}

TEST(RawJSON, LooksUpNothingInWhatIsNoObject)
{
    const RawJSON json = RawJSON::parse(R"(["a"])");
    EXPECT_FALSE(json.root().member("a"));
    EXPECT_FALSE(json.root().firstMember("a"));
    EXPECT_FALSE(json.root().stringIfAny());
    EXPECT_THROW(static_cast<void>(json.root().string()), RawJSONError);
}

TEST(RawJSON, ReadsTheSameFromATextWithRoomAtItsEndAndLeavesThatAlone)
{
    QByteArray roomy = R"({"a":[1,"b"]})";
    const QByteArray copy = roomy;
    roomy.reserve(roomy.size() + RawJSON::padding);
    const RawJSON json = RawJSON::parse(roomy);
    EXPECT_EQ(json.root().canonical(), copy);
    EXPECT_EQ(roomy, copy);
    roomy.fill('x');
    EXPECT_EQ(json.root().canonical(), copy);
}

TEST(RawJSON, ReadsATextWithRoomAtItsBeginningAlone)
{
    QByteArray text = QByteArray(1000, ' ') + R"(["a",1])";
    text.remove(0, 1000);
    ASSERT_GE(text.capacity(), 1000);
    EXPECT_EQ(RawJSON::parse(text).root().canonical(), R"(["a",1])");
}

TEST(RawJSON, ReadsATextThatBelongsToAnother)
{
    constexpr std::string_view memory = R"(["a"]])";
    const auto text = QByteArray::fromRawData(memory.data(), 5);
    EXPECT_EQ(RawJSON::parse(text).root().canonical(), R"(["a"])");
    EXPECT_EQ(RawJSON::parse(QByteArray::fromRawData("12345", 2)).root().integer(), 12);
}

TEST(RawJSON, ReadsOneObjectAsReadingAllOfItDoes)
{
    for (const char* text : {
             R"({"tweet":{"id":"1","text":"a\n\u00e9\ud83d\ude00\u0000b","urls":[{"url":"x"},null,true]}})",
             R"( {"includes" : {"tweet":{"id":"9"}}, "tweet" : { "b" : {} , "a" : [ ] } } )",
             R"({"tweet":{"id":"first","id":"again"},"tweet":{"id":"second"}})",
             R"({"tw\u0065et":{"k\u0065y":"value"}})",
             R"({"tweet":{"number":-9223372036854775808,"other":18446744073709551615}})",
         }) {
        const auto object = RawJSON::parseObject(text, "tweet");
        ASSERT_TRUE(object) << text;
        const RawJSON whole = RawJSON::parse(text);
        const auto expected = whole.root().firstMember("tweet");
        ASSERT_TRUE(expected) << text;
        ASSERT_EQ(memberCount(object->root()), memberCount(*expected)) << text;
        auto member = expected->children().begin();
        for (const RawJSONValue value : object->root().children()) {
            EXPECT_EQ(value.key(), (*member).key()) << text;
            EXPECT_EQ(value.kind(), (*member).kind()) << text;
            EXPECT_EQ(value.stringIfAny(), (*member).stringIfAny()) << text;
            EXPECT_EQ(value.integerPart(), (*member).integerPart()) << text;
            ++member;
        }
    }
}

TEST(RawJSON, ReadsOneObjectOnlyOfATextThatIsJSONThroughout)
{
    const QByteArray text = R"({"before":[1,"a",{"b":null}],"tweet":{"id":"1"},"after":[1,"a",{"b":null}]})";
    ASSERT_TRUE(RawJSON::parseObject(text, "tweet"));
    for (qsizetype place = 0; place < text.size(); ++place) {
        EXPECT_FALSE(RawJSON::parseObject(text.first(place), "tweet")) << place;
        for (const char wrong : {'\x01', '\xff', '#', '}'}) {
            QByteArray damaged = text;
            damaged[place] = wrong;
            EXPECT_TRUE(canBeParsed(damaged) || !RawJSON::parseObject(damaged, "tweet"))
                << damaged.constData();
        }
    }
    EXPECT_FALSE(RawJSON::parseObject(text + '}', "tweet"));
    EXPECT_FALSE(RawJSON::parseObject(text + text, "tweet"));
    EXPECT_FALSE(RawJSON::parseObject({}, "tweet"));
}

TEST(RawJSON, FindsNoObjectWhereTheFirstValueOfThatKeyIsNone)
{
    for (const char* text : {"{}", "[]", "1", "\"tweet\"", R"({"tweets":{}})", R"({"a":{"tweet":{}}})",
                             R"({"tweet":null})", R"({"tweet":[]})", R"({"tweet":"{}","tweet":{}})"})
        EXPECT_FALSE(RawJSON::parseObject(text, "tweet")) << text;
}

TEST(RawJSON, LeavesTextsOutOfTheOrdinaryToReadingAllOfThem)
{
    for (const QByteArray& text : {
             QByteArray(R"({"tweet":{"text":"\ud83d"}})"),
             QByteArray(R"({"tweet":{"text":"\ude00"}})"),
             QByteArray(R"({"tweet":{"id":1e999}})"),
             QByteArray(R"({"tweet":{"id":123456789012345678901234567890}})"),
         }) {
        EXPECT_TRUE(canBeParsed(text)) << text.constData();
        EXPECT_FALSE(RawJSON::parseObject(text, "tweet")) << text.constData();
    }
}

TEST(RawJSON, ReadsOneObjectOfATextThatIsNestedToTheLimitAndNoDeeper)
{
    const auto nested = [](int depth) {
        return "{\"tweet\":{},\"deep\":" + QByteArray(depth - 1, '[') + QByteArray(depth - 1, ']') + '}';
    };
    EXPECT_TRUE(RawJSON::parseObject(nested(RawJSON::maximumDepth), "tweet"));
    EXPECT_FALSE(RawJSON::parseObject(nested(RawJSON::maximumDepth + 1), "tweet"));
}

TEST(RawJSON, KnowsAValueThatHoldsNothing)
{
    const RawJSON json = RawJSON::parse(R"([{},[],"a",{"a":null},[0]])");
    QList<bool> areEmpty;
    for (const RawJSONValue value : json.root().children())
        areEmpty.append(value.children().isEmpty());
    EXPECT_EQ(areEmpty, QList<bool>({true, true, true, false, false}));
}

TEST(RawJSON, SharesItsTextAmongCopies)
{
    std::optional<RawJSON> first = RawJSON::parse(R"({"a":"b"})");
    const RawJSON second = *first;
    first.reset();
    EXPECT_EQ(second.root().member("a")->string(), QStringLiteral("b"));
}

struct Inner
{
    qint64 count = 0;
    static constexpr auto jsonFields() { return std::tuple{jsonField("count", &Inner::count)}; }
};

struct Outer
{
    QString name;
    std::optional<QString> nickname;
    std::optional<QList<Inner>> inners;
    static constexpr auto jsonFields()
    {
        return std::tuple{jsonField("name", &Outer::name), jsonField("nickname", &Outer::nickname),
                          jsonField("inners", &Outer::inners)};
    }
};

QString describeDecoding(const char* json)
{
    try {
        static_cast<void>(decodeRawJSON<Outer>(json));
    } catch (const RawJSONError& error) {
        return error.description();
    }
    return QStringLiteral("no failure");
}

TEST(RawJSONDecoding, ReadsAbsentAndNullOptionalFieldsAsAbsentAndIgnoresUnknownKeys)
{
    const auto outer = decodeRawJSON<Outer>(R"({"name":"n","nickname":null,"unknown":{}})");
    EXPECT_EQ(outer.name, QStringLiteral("n"));
    EXPECT_FALSE(outer.nickname);
    EXPECT_FALSE(outer.inners);
    EXPECT_EQ(decodeRawJSON<Outer>(R"({"name":"n","inners":[{"count":1},{"count":2}]})").inners->at(1).count,
              2);
}

TEST(RawJSONDecoding, NamesThePlaceOfWhatItCannotRead)
{
    EXPECT_EQ(describeDecoding("{}"), QStringLiteral("name: The JSON value is missing."));
    EXPECT_EQ(describeDecoding(R"({"name":null})"), QStringLiteral("name: The JSON value is not a text."));
    EXPECT_EQ(describeDecoding(R"({"name":"n","nickname":1})"),
              QStringLiteral("nickname: The JSON value is not a text."));
    EXPECT_EQ(describeDecoding(R"({"name":"n","inners":{}})"),
              QStringLiteral("inners: The JSON value is not an array."));
    EXPECT_EQ(describeDecoding(R"({"name":"n","inners":[{"count":1},{"count":1.5}]})"),
              QStringLiteral("inners.1.count: The JSON value is not a whole number of 64 bits."));
    EXPECT_EQ(describeDecoding("[]"), QStringLiteral("The JSON value is not an object."));
}

// Documents of any shape, from a seed.
class RandomDocuments
{
public:
    explicit RandomDocuments(unsigned int seed)
        : m_generator(seed)
    {
    }

    QJsonValue value(int depth)
    {
        switch (below(depth > 0 ? 7 : 5)) {
        case 0:
            return QJsonValue::Null;
        case 1:
            return below(2) == 0;
        case 2:
            return static_cast<qint64>(m_generator());
        case 3:
            return below(1000) / 8.0;
        case 4:
            return text();
        case 5:
            return array(depth);
        default:
            return object(depth);
        }
    }

    QJsonObject object(int depth)
    {
        QJsonObject object;
        for (int i = below(8); i > 0; --i)
            object.insert(text(), value(depth - 1));
        return object;
    }

private:
    int below(int limit) { return static_cast<int>(m_generator() % static_cast<unsigned int>(limit)); }

    QJsonArray array(int depth)
    {
        QJsonArray array;
        for (int i = below(6); i > 0; --i)
            array.append(value(depth - 1));
        return array;
    }

    QString text()
    {
        static const QStringList pieces{
            QStringLiteral("a"),          QStringLiteral("\""),     QStringLiteral("\\"),
            QStringLiteral("\n"),         QStringLiteral("é"),      QStringLiteral("学"),
            QStringLiteral("\U0001F43B"), QStringLiteral("\u0001"), QStringLiteral("/u"),
            QStringLiteral("}"),          QStringLiteral(" "),      QStringLiteral("[")};
        QString text;
        for (int i = below(6); i > 0; --i)
            text += pieces.at(below(static_cast<int>(pieces.size())));
        return text;
    }

    std::mt19937_64 m_generator;
};

TEST(RawJSON, WritesCanonicalTextsThatHoldWhatTheInputHeld)
{
    RandomDocuments documents(20261121);
    for (int i = 0; i < 3000; ++i) {
        const QJsonDocument document(documents.object(5));
        for (const auto format : {QJsonDocument::Compact, QJsonDocument::Indented}) {
            const QByteArray json = document.toJson(format);
            const QByteArray text = canonical(json);
            ASSERT_EQ(QJsonDocument::fromJson(text), document) << json.toStdString();
            ASSERT_EQ(canonical(text), text) << json.toStdString();
            ASSERT_EQ(text.size(), document.toJson(QJsonDocument::Compact).size()) << json.toStdString();
        }
    }
}

} // namespace
} // namespace mirel
