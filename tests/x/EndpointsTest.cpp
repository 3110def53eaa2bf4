#include "testing/Printing.h"

#include "x/Endpoints.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

QProcessEnvironment environment(const char* variable, const char* value)
{
    QProcessEnvironment environment;
    environment.insert(QString::fromLatin1(variable), QString::fromLatin1(value));
    return environment;
}

TEST(Endpoints, AreThoseOfXUnlessTheEnvironmentNamesOthers)
{
    const auto endpoints = Endpoints::fromEnvironment(QProcessEnvironment());
    EXPECT_EQ(endpoints.xAPI, QUrl(QStringLiteral("https://api.x.com/2")));
    EXPECT_EQ(endpoints.xAuthorize, QUrl(QStringLiteral("https://x.com/i/oauth2/authorize")));
    EXPECT_EQ(Endpoints::fromEnvironment(environment("MIREL_X_API_URL", "")), endpoints);
}

TEST(Endpoints, AreReplacedOneByOne)
{
    const Endpoints standard;
    const auto api = Endpoints::fromEnvironment(environment("MIREL_X_API_URL", "http://127.0.0.1:8080/2"));
    EXPECT_EQ(api.xAPI, QUrl(QStringLiteral("http://127.0.0.1:8080/2")));
    EXPECT_EQ(api.xAuthorize, standard.xAuthorize);
    const auto authorize =
        Endpoints::fromEnvironment(environment("MIREL_X_AUTHORIZE_URL", "http://localhost:8080/authorize"));
    EXPECT_EQ(authorize.xAPI, standard.xAPI);
    EXPECT_EQ(authorize.xAuthorize, QUrl(QStringLiteral("http://localhost:8080/authorize")));
}

struct Override
{
    const char* name;
    const char* address;
    bool isAllowed;
    friend void PrintTo(const Override& row, std::ostream* stream) { *stream << row.name; }
};

class EndpointOverrides : public testing::TestWithParam<Override>
{
};

TEST_P(EndpointOverrides, NameALoopbackHostOrAreRefused)
{
    for (const char* const variable : {"MIREL_X_API_URL", "MIREL_X_AUTHORIZE_URL"}) {
        const auto values = environment(variable, GetParam().address);
        if (GetParam().isAllowed) {
            EXPECT_NO_THROW(static_cast<void>(Endpoints::fromEnvironment(values)));
            continue;
        }
        try {
            static_cast<void>(Endpoints::fromEnvironment(values));
            ADD_FAILURE() << variable;
        } catch (const EndpointsError& error) {
            EXPECT_EQ(error.description(),
                      QString::fromLatin1(variable) +
                          QStringLiteral(" is set to an address that is not on this computer. It is meant "
                                         "for a simulator and must name localhost, 127.0.0.1 or ::1. Remove "
                                         "it to use X."));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, EndpointOverrides,
    testing::Values(
        Override{"loopback", "http://127.0.0.1:8080/2", true},
        Override{"loopbackNetwork", "http://127.255.3.4/2", true},
        Override{"localhost", "http://localhost:1/2", true}, Override{"capitals", "HTTP://LOCALHOST/2", true},
        Override{"sixth", "http://[::1]:8080/2", true}, Override{"secure", "https://localhost/2", true},
        Override{"x", "https://api.x.com/2", false}, Override{"otherHost", "http://example.com/2", false},
        Override{"hostThatBeginsLikeOne", "http://127.0.0.1.example.com/2", false},
        Override{"hostThatEndsLikeOne", "http://notlocalhost/2", false},
        Override{"subdomainOfLocalhost", "http://x.localhost/2", false},
        Override{"userNamedLikeOne", "http://127.0.0.1@example.com/2", false},
        Override{"privateNetwork", "http://192.168.1.1/2", false},
        Override{"anyAddress", "http://0.0.0.0/2", false}, Override{"otherSixth", "http://[::2]/2", false},
        Override{"noHost", "/2", false}, Override{"file", "file:///tmp/x", false},
        Override{"otherScheme", "ftp://localhost/2", false},
        Override{"noURL", "http://exa mple:port/", false}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace mirel
