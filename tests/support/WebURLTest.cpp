#include "testing/Printing.h"

#include "support/WebURL.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

TEST(ParseURL, IsAbsentForTextThatIsNone)
{
    for (const char* text :
         {"", "http://a b/", "https://[::1", "http://a.example:99999/", "https://a.example/%zz"})
        EXPECT_FALSE(parseURL(QString::fromLatin1(text))) << text;
    EXPECT_FALSE(parseURL(std::optional<QString>()));
}

TEST(ParseURL, ReadsAddressesOfEveryKind)
{
    for (const char* text : {"https://a.example/b?c=d#e", "mirel://oauth/x?code=1", "https://a.example",
                             "/path", "mailto:a@b.example", "https://a.example/%C3%A9?q=%26"}) {
        const auto url = parseURL(QString::fromLatin1(text));
        ASSERT_TRUE(url) << text;
        EXPECT_EQ(absoluteString(*url), QString::fromLatin1(text));
    }
    EXPECT_EQ(parseURL(std::optional(QStringLiteral("https://a.example/")))->host(), u"a.example");
}

TEST(AbsoluteString, IsPercentEncoded)
{
    EXPECT_EQ(absoluteString(QUrl(QStringLiteral("https://a.example/é?q=ü"))),
              u"https://a.example/%C3%A9?q=%C3%BC");
}

TEST(IsWithinDomain, IsTheDomainItselfOrBelowIt)
{
    EXPECT_TRUE(isWithinDomain(u"a.example", u"a.example"));
    EXPECT_TRUE(isWithinDomain(u"www.a.example", u"a.example"));
    EXPECT_FALSE(isWithinDomain(u"nota.example", u"a.example"));
    EXPECT_FALSE(isWithinDomain(u"a.example.org", u"a.example"));
    EXPECT_FALSE(isWithinDomain(u"example", u"a.example"));
    EXPECT_FALSE(isWithinDomain(u"", u"a.example"));
}

} // namespace
} // namespace mirel
