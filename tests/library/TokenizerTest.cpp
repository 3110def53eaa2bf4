#include "testing/Printing.h"

#include "library/Tokenizer.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

struct TokenRow
{
    const char* name;
    QString query;
    QStringList tokens;
};

class TokenizerTest : public ::testing::TestWithParam<TokenRow>
{
};

TEST_P(TokenizerTest, SplitsAQueryIntoTokens)
{
    EXPECT_EQ(Tokenizer::tokens(GetParam().query), GetParam().tokens);
}

// For the rows below.
QString q(const char16_t* text)
{
    return QString::fromUtf16(text);
}

INSTANTIATE_TEST_SUITE_P(
    Queries, TokenizerTest,
    ::testing::Values(
        TokenRow{"Null", QString(), {}}, TokenRow{"Empty", q(u""), {}}, TokenRow{"Blank", q(u" \t\n "), {}},
        TokenRow{"OneWord", q(u"foo"), {q(u"foo")}},
        TokenRow{"Words", q(u"  foo  bar\nbaz "), {q(u"foo"), q(u"bar"), q(u"baz")}},
        TokenRow{"EveryWhiteSpace",
                 q(u"a\u0085b\u00a0c\u1680d\u2003e\u2028f\u2029g\u202fh\u205fi\u3000j\vk\fl\r\nm"),
                 {q(u"a"), q(u"b"), q(u"c"), q(u"d"), q(u"e"), q(u"f"), q(u"g"), q(u"h"), q(u"i"), q(u"j"),
                  q(u"k"), q(u"l"), q(u"m")}},
        TokenRow{"WidthlessSpaceIsNone", q(u"a\u200bb\ufeffc"), {q(u"a\u200bb\ufeffc")}},
        TokenRow{"Parentheses", q(u"(a)b(c"), {q(u"("), q(u"a"), q(u")"), q(u"b"), q(u"("), q(u"c")}},
        TokenRow{"ParenthesesAlone", q(u"()"), {q(u"("), q(u")")}},
        TokenRow{"ParenthesisAfterWord", q(u"a( b"), {q(u"a"), q(u"("), q(u"b")}},
        TokenRow{"FullWidthParenthesesAreLetters", q(u"（a）"), {q(u"（a）")}},
        TokenRow{"Phrase", q(u"\"deep work\""), {q(u"deep work")}},
        TokenRow{"QuotesWithinAToken", q(u"foo\"bar baz\"qux"), {q(u"foobar bazqux")}},
        TokenRow{"QuotesAfterAKey", q(u"label:\"my label\" x"), {q(u"label:my label"), q(u"x")}},
        TokenRow{"QuotedParentheses", q(u"\"a(b)\""), {q(u"a(b)")}},
        TokenRow{"AQuotedParenthesisIsAParenthesis", q(u"\"(\""), {q(u"(")}},
        TokenRow{"AQuotedOperatorIsAnOperator", q(u"a \"OR\" b"), {q(u"a"), q(u"OR"), q(u"b")}},
        TokenRow{"EmptyQuotes", q(u"\"\""), {}},
        TokenRow{"EmptyQuotesWithinAToken", q(u"a\"\"b"), {q(u"ab")}},
        TokenRow{"EmptyQuotesBetweenTokens", q(u"a \"\" b"), {q(u"a"), q(u"b")}},
        TokenRow{"QuotedBlank", q(u"\"  \""), {q(u"  ")}},
        TokenRow{"QuotedLineEnd", q(u"\"a\r\nb\""), {q(u"a\r\nb")}},
        TokenRow{"UnclosedQuote", q(u"a \"b (c d "), {q(u"a"), q(u"b (c d ")}},
        TokenRow{"UnclosedEmptyQuote", q(u"a \""), {q(u"a")}},
        TokenRow{"TypographicQuotesAreLetters", q(u"“a b”"), {q(u"“a"), q(u"b”")}},
        TokenRow{"BackslashEscapesNothing", q(u"\"a\\\" b"), {q(u"a\\"), q(u"b")}},
        TokenRow{"MarkedQuoteIsALetter", q(u"\"\u0308a b"), {q(u"\"\u0308a"), q(u"b")}},
        TokenRow{"MarkedParenthesisIsALetter", q(u"(\u0308a)\u200d"), {q(u"(\u0308a)\u200d")}},
        TokenRow{"MarkedSpaceIsASpace", q(u"a \u0308b"), {q(u"a"), q(u"b")}},
        TokenRow{"JoinedEmoji",
                 q(u"👩‍👩‍👧 (🇩🇪🇫🇷)"),
                 {q(u"👩‍👩‍👧"), q(u"("), q(u"🇩🇪🇫🇷"), q(u")")}},
        TokenRow{"Chinese", q(u"深度 工作"), {q(u"深度"), q(u"工作")}},
        TokenRow{
            "RightToLeft", q(u"عمل عميق (עבודה)"), {q(u"عمل"), q(u"عميق"), q(u"("), q(u"עבודה"), q(u")")}},
        TokenRow{"HalfASurrogatePair",
                 QString(QChar(0xD800)) + QStringLiteral(" ") + QChar(0xDC00),
                 {QString(QChar(0xD800)), QString(QChar(0xDC00))}},
        TokenRow{"ZeroCharacter", QString(QChar(0)) + QStringLiteral(" a"), {QString(QChar(0)), q(u"a")}}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace mirel
