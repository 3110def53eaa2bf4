#include "testing/Printing.h"

#include "x/PostReference.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

struct Row
{
    const char* name;
    const char16_t* text;
    const char16_t* id;
};

class PostReference : public ::testing::TestWithParam<Row>
{
};

TEST_P(PostReference, GivesTheIDThatTheTextNames)
{
    const Row& row = GetParam();
    const auto expected = row.id ? std::optional(QString::fromUtf16(row.id)) : std::nullopt;
    EXPECT_EQ(tweetID(QString::fromUtf16(row.text)), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PostReference,
    ::testing::Values(
        Row{"AnID", u"1234567890", u"1234567890"}, Row{"AnIDAmongBlanks", u"  1234567890 \n", u"1234567890"},
        Row{"DigitsOfAnotherScript", u"\u0661\u0662\u0663", u"\u0661\u0662\u0663"},
        Row{"AddressOfAPost", u"https://x.com/ada/status/1234567890", u"1234567890"},
        Row{"AddressOfAPicture", u"https://x.com/ada/status/1234567890/photo/1", u"1234567890"},
        Row{"AddressWithAQuery", u"https://twitter.com/ada/status/1234567890?s=20", u"1234567890"},
        Row{"AddressWithoutAUser", u"https://x.com/i/web/status/1234567890/", u"1234567890"},
        Row{"AddressWithoutAScheme", u"x.com/ada/status/1234567890", u"1234567890"},
        Row{"AnyHost", u"https://elsewhere.example/status/1234567890", u"1234567890"},
        Row{"OnlyTheFirstStatusCounts", u"https://x.com/status/abc/status/123", nullptr},
        Row{"StatusWithoutAnID", u"https://x.com/ada/status/", nullptr},
        Row{"StatusInAnotherCase", u"https://x.com/ada/Status/1234567890", nullptr},
        Row{"LettersInTheID", u"https://x.com/ada/status/12a", nullptr},
        Row{"AddressOfAnAccount", u"https://x.com/ada", nullptr}, Row{"Words", u"not a post", nullptr},
        Row{"NegativeNumber", u"-5", nullptr}, Row{"NothingButBlanks", u"  ", nullptr},
        Row{"Nothing", u"", nullptr}, Row{"NotAnAddress", u"https://[x.com/status/1", nullptr}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace mirel
