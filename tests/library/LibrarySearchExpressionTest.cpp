#include "testing/Printing.h"

#include "library/LibrarySearchContext.h"
#include "library/LibrarySearchExpression.h"
#include "library/Parser.h"

#include "SearchTesting.h"

#include <gtest/gtest.h>

#include <random>

namespace mirel {
namespace {

using testing::describe;
using testing::makeBookmark;

struct ParseRow
{
    const char* name;
    const char* query;
    const char* tree;
    const char* normalForm;
};

class ParseTest : public ::testing::TestWithParam<ParseRow>
{
};

TEST_P(ParseTest, GivesTheTreeAndItsNormalForm)
{
    const auto expression = LibrarySearchExpression::parse(QString::fromUtf8(GetParam().query));
    EXPECT_EQ(describe(expression), QString::fromUtf8(GetParam().tree));
    EXPECT_EQ(expression.toString(), QString::fromUtf8(GetParam().normalForm));
    EXPECT_EQ(LibrarySearchExpression::parse(expression.toString()), expression);
}

INSTANTIATE_TEST_SUITE_P(
    Queries, ParseTest,
    ::testing::Values(
        ParseRow{"Empty", "", "all", ""}, ParseRow{"Blank", "   ", "all", ""},
        ParseRow{"EmptyParentheses", "()", "all", ""}, ParseRow{"EmptyParenthesesFirst", "() foo", "all", ""},
        ParseRow{"NestedEmptyParentheses", "((()) foo", "all", ""},
        ParseRow{"ClosingParenthesisAlone", ") foo", "all", ""},
        ParseRow{"StrayClosingParenthesis", "a )b", "a", "a"},
        ParseRow{"StrayClosingParenthesisBeforeOR", "a ) OR b", "a", "a"},
        ParseRow{"EmptyParenthesesEndARow", "a () b", "a", "a"},
        ParseRow{"EmptyParenthesesBeforeOR", "a () OR b", "or(a, b)", "a OR b"},
        ParseRow{"NOTAlone", "NOT", "all", ""}, ParseRow{"TrailingNOT", "a NOT", "a", "a"},
        ParseRow{"NOTBeforeEmptyParentheses", "NOT () a", "all", ""},
        ParseRow{"NOTBeforeClosingParenthesis", "(a NOT) OR b", "or(a, b)", "a OR b"},
        ParseRow{"TrailingAND", "a AND", "a", "a"}, ParseRow{"TrailingOR", "a OR", "a", "a"},
        ParseRow{"ORBeforeEmptyParentheses", "a OR () b", "a", "a"},
        ParseRow{"UnclosedParenthesis", "(a OR b", "or(a, b)", "a OR b"},
        ParseRow{"ClosedParenthesis", "(a OR b)", "or(a, b)", "a OR b"},
        ParseRow{"SideBySide", "a b", "and(a, b)", "a AND b"},
        ParseRow{"WithAND", "a AND b", "and(a, b)", "a AND b"},
        ParseRow{"LowerCase", "a and not b or c", "or(and(a, not(b)), c)", "a AND NOT b OR c"},
        ParseRow{"MixedCase", "a Or nOt b aNd c", "or(a, and(not(b), c))", "a OR NOT b AND c"},
        ParseRow{"ANDBindsMoreThanOR", "a OR b c", "or(a, and(b, c))", "a OR b AND c"},
        ParseRow{"ANDBeforeOR", "a b OR c", "or(and(a, b), c)", "a AND b OR c"},
        ParseRow{"ORInParentheses", "(a OR b) c", "and(or(a, b), c)", "(a OR b) AND c"},
        ParseRow{"ORInRightParentheses", "a (b OR c)", "and(a, or(b, c))", "a AND (b OR c)"},
        ParseRow{"ANDGrowsToTheLeft", "a b c", "and(and(a, b), c)", "a AND b AND c"},
        ParseRow{"ORGrowsToTheLeft", "a OR b OR c", "or(or(a, b), c)", "a OR b OR c"},
        ParseRow{"ANDToTheRight", "a (b c)", "and(a, and(b, c))", "a AND (b AND c)"},
        ParseRow{"ORToTheRight", "a OR (b OR c)", "or(a, or(b, c))", "a OR (b OR c)"},
        ParseRow{"NeedlessParentheses", "((a)) OR ((b) AND (c))", "or(a, and(b, c))", "a OR b AND c"},
        ParseRow{"NOTBindsMost", "NOT a b", "and(not(a), b)", "NOT a AND b"},
        ParseRow{"NOTOfParentheses", "NOT (a b)", "not(and(a, b))", "NOT (a AND b)"},
        ParseRow{"NOTTwice", "NOT NOT a", "not(not(a))", "NOT NOT a"},
        ParseRow{"NOTWithoutASpace", "NOT(a)", "not(a)", "NOT a"},
        ParseRow{"NOTBeforeAND", "NOT AND b", "and(not(AND), b)", "NOT AND AND b"},
        ParseRow{"ANDFirst", "AND foo", "and(AND, foo)", "AND AND foo"},
        ParseRow{"ORFirst", "or foo", "and(or, foo)", "or AND foo"},
        ParseRow{"ANDTwice", "a AND and", "and(a, and)", "a AND and"},
        ParseRow{"ORTwice", "a OR or", "or(a, or)", "a OR or"},
        ParseRow{"ORThrice", "OR OR OR", "or(OR, OR)", "OR OR OR"},
        ParseRow{"ANDThenOR", "a AND OR b", "and(and(a, OR), b)", "a AND OR AND b"},
        ParseRow{"QuotedOperator", "a \"OR\" b", "or(a, b)", "a OR b"},
        ParseRow{"QuotedNOT", "\"not\" a", "not(a)", "NOT a"},
        ParseRow{"QuotedParenthesis", "\"(\" a b \")\" OR c", "or(and(a, b), c)", "a AND b OR c"},
        ParseRow{"OperatorWithinAPhrase", "\"a OR b\"", "a OR b", "\"a OR b\""},
        ParseRow{"Phrase", "\"deep work\"", "deep work", "\"deep work\""},
        ParseRow{"PhraseWithKey", "\"label:my label\"", "label:my label", "\"label:my label\""},
        ParseRow{"PhraseAfterKey", "label:\"my label\"", "label:my label", "\"label:my label\""},
        ParseRow{"NeedlessQuotes", "\"work\"", "work", "work"},
        ParseRow{"QuotesInside", "foo\"bar baz\"qux", "foobar bazqux", "\"foobar bazqux\""},
        ParseRow{"ParenthesesInAPhrase", "\"f(x)\" g", "and(f(x), g)", "\"f(x)\" AND g"},
        ParseRow{"BlankPhrase", "\"  \"", "  ", "\"  \""},
        ParseRow{"SeveralColons", "a:b:c", "a:b:c", "a:b:c"},
        ParseRow{"AllTogether", "(label:design OR label:ios) AND has:media",
                 "and(or(label:design, label:ios), has:media)", "(label:design OR label:ios) AND has:media"},
        ParseRow{"Languages", "深度 OR (عمل NOT עבודה)", "or(深度, and(عمل, not(עבודה)))",
                 "深度 OR عمل AND NOT עבודה"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LibrarySearchExpression, AnAbsentQueryMatchesEverything)
{
    EXPECT_EQ(LibrarySearchExpression::parse(std::nullopt), LibrarySearchExpression());
    EXPECT_TRUE(LibrarySearchExpression::parse(std::nullopt).matches(Bookmark()));
    EXPECT_EQ(describe(LibrarySearchExpression()), u"all");
}

TEST(LibrarySearchExpression, OnlyTheLettersOfOperatorsReadAsOperators)
{
    const QStringList operators{QStringLiteral("AND"), QStringLiteral("OR"), QStringLiteral("NOT")};
    for (char32_t code = 0x80; code <= QChar::LastValidCodePoint; ++code) {
        if (QChar::isSurrogate(code))
            continue;
        const QString upper = QStringView(QChar::fromUcs4(code)).toString().toUpper();
        for (const QString& word : operators)
            ASSERT_FALSE(word.contains(upper)) << static_cast<unsigned>(code);
    }
    EXPECT_EQ(describe(QStringLiteral("ＮＯＴ a оr b")), u"and(and(and(ＮＯＴ, a), оr), b)")
        << "a Cyrillic o";
}

TEST(LibrarySearchExpression, TheSameTreesAreEqualHoweverTheyWereTyped)
{
    const auto parse = [](const char* query) {
        return LibrarySearchExpression::parse(QString::fromUtf8(query));
    };
    EXPECT_EQ(parse("a b"), parse("((a) and \"b\""));
    EXPECT_NE(parse("a b"), parse("b a"));
    EXPECT_NE(parse("a b"), parse("a OR b"));
    EXPECT_NE(parse("a b c"), parse("a (b c)"));
    EXPECT_NE(parse("a"), parse("A"));
    EXPECT_NE(parse("a"), parse(""));
    EXPECT_NE(parse("a"), parse("NOT a"));
}

// Texts whose characters would melt into quotes and neighbours.
TEST(LibrarySearchExpression, PrintsConditionsThatStartOrEndWithinACharacter)
{
    const QString mark = QStringLiteral("\u0308");
    const QString embracing = QStringLiteral("\u0600");
    const QStringList queries{
        mark,
        mark + QStringLiteral("a"),
        mark + QStringLiteral("\"a b\""),
        mark + QStringLiteral("\" \""),
        QStringLiteral("a\n") + mark + QStringLiteral("\"b c\" OR d"),
        QStringLiteral("NOT\n") + mark + QStringLiteral("\"b c\"\nd"),
        QStringLiteral("(\n") + mark + QStringLiteral("\" \"\n)"),
        embracing,
        embracing + QStringLiteral("\n)"),
        QStringLiteral("\"a b") + embracing,
        QStringLiteral("\"a b\"") + embracing + QStringLiteral("\nOR c"),
        embracing + QStringLiteral("\" \""),
        mark + QStringLiteral("\"a b\"") + embracing + QStringLiteral("\n") + embracing,
        QStringLiteral("a\"\u0308 b"),
        QStringLiteral("\u200d\" \"\u200d"),
        QString(QChar(0xD800)) + QStringLiteral("\" \"") + QChar(0xDC00),
    };
    for (const QString& query : queries) {
        const auto expression = LibrarySearchExpression::parse(query);
        EXPECT_NE(expression, LibrarySearchExpression()) << query.toStdString();
        EXPECT_EQ(LibrarySearchExpression::parse(expression.toString()), expression)
            << query.toStdString() << " printed " << expression.toString().toStdString();
        EXPECT_EQ(LibrarySearchExpression::parse(expression.toString()).toString(), expression.toString());
    }
}

// Queries put together at random from what tokens are made of and what melts into it.
TEST(LibrarySearchExpression, TheNormalFormOfAnyQueryMeansTheSame)
{
    const QStringList pieces{
        QStringLiteral("a"),      QStringLiteral("OR"),     QStringLiteral("and"),
        QStringLiteral("Not"),    QStringLiteral(" "),      QStringLiteral("\n"),
        QStringLiteral("\r"),     QStringLiteral("\""),     QStringLiteral("("),
        QStringLiteral(")"),      QStringLiteral(":"),      QStringLiteral("@"),
        QStringLiteral("\u0308"), QStringLiteral("\u0600"), QStringLiteral("\u200d"),
        QStringLiteral("\u0a41"), QStringLiteral("\u0d4e"), QStringLiteral("\u0e33"),
        QStringLiteral("\u3000"), QStringLiteral("👩"),      QStringLiteral("🏽"),
        QStringLiteral("🇩"),      QString(QChar(0xD83D)),   QString(QChar(0xDC69)),
    };
    std::mt19937 random{1};
    for (int round = 0; round < 20'000; ++round) {
        QString query;
        for (auto length = random() % 16; length > 0; --length)
            query += pieces[static_cast<qsizetype>(random() % static_cast<unsigned>(pieces.size()))];
        const auto expression = LibrarySearchExpression::parse(query);
        const QString printed = expression.toString();
        ASSERT_EQ(describe(LibrarySearchExpression::parse(printed)), describe(expression))
            << "of " << query.toStdString() << ", printed " << printed.toStdString();
    }
}

// The rules of the grammar, each a function that calls the others.
class ReferenceParser
{
public:
    explicit ReferenceParser(const QStringList& tokens)
        : m_tokens(tokens)
    {
    }

    std::optional<QString> disjunction()
    {
        auto left = conjunction();
        while (left && isAt("OR")) {
            ++m_position;
            const auto right = conjunction();
            if (!right)
                return left;
            left = QStringLiteral("or(") + *left + QStringLiteral(", ") + *right + u')';
        }
        return left;
    }

private:
    std::optional<QString> conjunction()
    {
        auto left = factor();
        while (left && m_position < m_tokens.size() && !isAt(")") && !isAt("OR")) {
            if (isAt("AND"))
                ++m_position;
            const auto right = factor();
            if (!right)
                return left;
            left = QStringLiteral("and(") + *left + QStringLiteral(", ") + *right + u')';
        }
        return left;
    }

    std::optional<QString> factor()
    {
        if (m_position == m_tokens.size() || isAt(")"))
            return std::nullopt;
        if (isAt("NOT")) {
            ++m_position;
            const auto inner = factor();
            return inner ? std::optional(QStringLiteral("not(%1)").arg(*inner)) : std::nullopt;
        }
        if (isAt("(")) {
            ++m_position;
            const auto inner = disjunction();
            if (isAt(")"))
                ++m_position;
            return inner;
        }
        return m_tokens[m_position++];
    }

    bool isAt(const char* token) const
    {
        return m_position < m_tokens.size() && m_tokens[m_position] == QLatin1StringView(token);
    }

    const QStringList& m_tokens;
    qsizetype m_position = 0;
};

TEST(LibrarySearchExpression, FollowsTheGrammarForEveryShortSequenceOfTokens)
{
    const QStringList alphabet{QStringLiteral("a"),   QStringLiteral("AND"), QStringLiteral("OR"),
                               QStringLiteral("NOT"), QStringLiteral("("),   QStringLiteral(")")};
    constexpr int longest = 6;
    int sequences = 0;
    int failures = 0;
    std::vector<qsizetype> digits;
    while (digits.size() <= longest && failures == 0) {
        QStringList tokens;
        for (const qsizetype digit : digits)
            tokens.append(alphabet[digit]);
        const auto expression = Parser::parse(tokens);
        const QString expected = ReferenceParser(tokens).disjunction().value_or(QStringLiteral("all"));
        if (describe(expression) != expected ||
            LibrarySearchExpression::parse(expression.toString()) != expression) {
            ++failures;
            ADD_FAILURE() << tokens.join(u' ').toStdString() << " became "
                          << describe(expression).toStdString() << ", printed "
                          << expression.toString().toStdString();
        }
        ++sequences;
        std::size_t place = 0;
        while (place < digits.size() && ++digits[place] == alphabet.size())
            digits[place++] = 0;
        if (place == digits.size())
            digits.push_back(0);
    }
    EXPECT_EQ(sequences, 1 + 6 + 36 + 216 + 1'296 + 7'776 + 46'656);
}

struct DeepRow
{
    const char* name;
    QString query;
    // Of a bookmark that holds "engine".
    bool matches;
};

class DeepSearchTest : public ::testing::TestWithParam<DeepRow>
{
};

TEST_P(DeepSearchTest, IsParsedAskedPrintedComparedAndFreed)
{
    const auto expression = LibrarySearchExpression::parse(GetParam().query);
    EXPECT_EQ(expression.matches(makeBookmark()), GetParam().matches);
    // Not EXPECT_EQ, which would print them.
    EXPECT_TRUE(LibrarySearchExpression::parse(expression.toString()) == expression);
}

QString many(const char* piece)
{
    return QString::fromUtf8(piece).repeated(100'000);
}

INSTANTIATE_TEST_SUITE_P(
    Queries, DeepSearchTest,
    ::testing::Values(
        DeepRow{"OpeningParentheses", many("("), true}, DeepRow{"ClosingParentheses", many(")"), true},
        DeepRow{"ParenthesesAroundAWord", many("(") + QStringLiteral("engine") + many(")"), true},
        DeepRow{"ParenthesesAroundAnotherWord", many("(") + QStringLiteral("steam") + many(")"), false},
        DeepRow{"EvenNegations", many("NOT ") + QStringLiteral("engine"), true},
        DeepRow{"OddNegations", many("NOT ") + QStringLiteral("NOT engine"), false},
        DeepRow{"NegationsOfNothing", many("NOT "), true},
        DeepRow{"NegatedParentheses", many("NOT (") + QStringLiteral("engine"), true},
        DeepRow{"ConjunctionsToTheLeft", many("engine ") + QStringLiteral("steam"), false},
        DeepRow{"ConjunctionsToTheRight", many("engine (") + QStringLiteral("engine"), true},
        DeepRow{"DisjunctionsToTheLeft", many("steam OR ") + QStringLiteral("engine"), true},
        DeepRow{"DisjunctionsToTheRight", many("steam OR (") + QStringLiteral("steam"), false},
        DeepRow{"EveryOperator", many("steam OR engine AND NOT (") + QStringLiteral("engine"), true},
        DeepRow{"UnclosedQuote", u'"' + many("( NOT "), false}),
    [](const auto& row) { return std::string(row.param.name); });

struct CaseRow
{
    const char* name;
    const char* query;
    bool matches;
};

class EvaluationTest : public ::testing::TestWithParam<CaseRow>
{
};

TEST_P(EvaluationTest, CombinesTheConditions)
{
    const auto expression = LibrarySearchExpression::parse(QString::fromUtf8(GetParam().query));
    EXPECT_EQ(expression.matches(makeBookmark()), GetParam().matches);
}

// "engine" and "notes" are there, "steam" and "coal" are not.
INSTANTIATE_TEST_SUITE_P(
    Queries, EvaluationTest,
    ::testing::Values(
        CaseRow{"All", "", true}, CaseRow{"There", "engine", true}, CaseRow{"NotThere", "steam", false},
        CaseRow{"Negated", "NOT steam", true}, CaseRow{"NegatedThere", "NOT engine", false},
        CaseRow{"NegatedTwice", "NOT NOT engine", true}, CaseRow{"Both", "engine notes", true},
        CaseRow{"LeftOfBoth", "engine steam", false}, CaseRow{"RightOfBoth", "steam engine", false},
        CaseRow{"NoneOfBoth", "steam coal", false}, CaseRow{"Either", "engine OR notes", true},
        CaseRow{"LeftOfEither", "engine OR steam", true}, CaseRow{"RightOfEither", "steam OR engine", true},
        CaseRow{"NoneOfEither", "steam OR coal", false}, CaseRow{"OrAfterAnd", "steam engine OR notes", true},
        CaseRow{"AndAfterOr", "notes OR engine steam", true},
        CaseRow{"ParenthesesAfterAnd", "steam (engine OR notes)", false},
        CaseRow{"NegatedParentheses", "NOT (engine steam) notes", true},
        CaseRow{"NegatedEither", "NOT (steam OR engine)", false}, CaseRow{"Phrase", "\"the engine\"", true},
        CaseRow{"WrongPhrase", "\"engine the\"", false}, CaseRow{"BlankPhrase", "\"  \"", true},
        CaseRow{"NegatedBlankPhrase", "NOT \"  \"", false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LibrarySearchExpression, AsksNoConditionThatCannotChangeTheResult)
{
    struct EarlyRow
    {
        const char* query;
        bool readsThePresentation;
    };
    const std::vector<EarlyRow> rows{
        {"is:read type:tweet", false},           {"is:unread type:tweet", true},
        {"is:unread OR type:tweet", false},      {"is:read OR type:tweet", true},
        {"NOT is:unread type:tweet", false},     {"(is:read OR is:unread) OR type:tweet", false},
        {"(is:read type:tweet) is:read", false},
    };
    const Bookmark bookmark = makeBookmark();
    for (const EarlyRow& row : rows) {
        int readings = 0;
        const LibrarySearchContext context(bookmark, [&readings](const Bookmark&) {
            ++readings;
            return PresentationFacts();
        });
        static_cast<void>(LibrarySearchExpression::parse(QString::fromUtf8(row.query)).matches(context));
        EXPECT_EQ(readings, row.readsThePresentation ? 1 : 0) << row.query;
    }
}

} // namespace
} // namespace mirel
