#include "TransportFixture.h"

#include "transport/HTTPRedirect.h"

namespace mirel {
namespace {

using Case = HTTPTransportError::Case;

HTTPResponse redirectTo(const QByteArray& location, int status = 302)
{
    return {.status = status, .headers = {{"location", location}}};
}

HTTPRequest post(const char* url)
{
    return {.method = "POST",
            .url = QUrl(QString::fromLatin1(url)),
            .headers = {{"authorization", "Bearer t"},
                        {"Cookie", "a=b"},
                        {"Content-Type", "application/json"},
                        {"Accept", "text/html"}},
            .body = "{}"};
}

struct OriginRow
{
    const char* name;
    const char* from;
    QByteArray location;
    const char* to;
    bool keepsAuthorization;
};

class RedirectOriginTest : public ::testing::TestWithParam<OriginRow>
{
};

TEST_P(RedirectOriginTest, CarriesAuthorizationAndCookieToTheSameOriginAlone)
{
    HTTPRequest request = post(GetParam().from);
    request.method = "GET";
    request.body.clear();
    const auto next = redirected(request, redirectTo(GetParam().location, 307));
    ASSERT_TRUE(next);
    EXPECT_EQ(next->url, QUrl(QString::fromLatin1(GetParam().to)));
    EXPECT_EQ(next->header("Authorization").has_value(), GetParam().keepsAuthorization);
    EXPECT_EQ(next->header("Cookie").has_value(), GetParam().keepsAuthorization);
    EXPECT_EQ(next->header("Accept"), QByteArray("text/html"));
}

INSTANTIATE_TEST_SUITE_P(
    Origins, RedirectOriginTest,
    ::testing::Values(
        OriginRow{"Path", "https://a.example/x/y", "/z", "https://a.example/z", true},
        OriginRow{"RelativePath", "https://a.example/x/y", "z?q=1", "https://a.example/x/z?q=1", true},
        OriginRow{"WholeAddress", "https://a.example/", "https://a.example/z", "https://a.example/z", true},
        OriginRow{"HostInCapitals", "https://a.example/", "https://A.Example/z", "https://a.example/z", true},
        OriginRow{"DefaultPortWritten", "https://a.example/", "https://a.example:443/z",
                  "https://a.example:443/z", true},
        OriginRow{"OtherHost", "https://a.example/", "https://b.example/z", "https://b.example/z", false},
        OriginRow{"Subdomain", "https://a.example/", "https://www.a.example/", "https://www.a.example/",
                  false},
        OriginRow{"OtherHostWithoutScheme", "https://a.example/", "//b.example/z", "https://b.example/z",
                  false},
        OriginRow{"OtherPort", "https://a.example/", "https://a.example:8443/", "https://a.example:8443/",
                  false},
        OriginRow{"OtherScheme", "http://a.example/", "https://a.example/", "https://a.example/", false},
        OriginRow{"NameAndPassword", "https://a.example/", "https://u:p@b.example/", "https://b.example/",
                  false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(HTTPRedirect, RefusesToSendABodyToAnotherOrigin)
{
    const HTTPRequest request = post("https://a.example/");
    for (const int status : {307, 308}) {
        EXPECT_THROW((void)redirected(request, redirectTo("https://b.example/", status)), HTTPTransportError);
        EXPECT_EQ(redirected(request, redirectTo("/z", status))->body, "{}");
    }
    EXPECT_EQ(redirected(request, redirectTo("https://b.example/", 303))->body, "");
}

struct MethodRow
{
    const char* name;
    int status;
    QByteArray method;
    QByteArray nextMethod;
    bool keepsBody;
};

class RedirectMethodTest : public ::testing::TestWithParam<MethodRow>
{
};

TEST_P(RedirectMethodTest, ChangesTheMethodAsTheStatusTells)
{
    HTTPRequest request = post("https://a.example/");
    request.method = GetParam().method;
    const auto next = redirected(request, redirectTo("/z", GetParam().status));
    ASSERT_TRUE(next);
    EXPECT_EQ(next->method, GetParam().nextMethod);
    EXPECT_EQ(next->body, GetParam().keepsBody ? "{}" : "");
    EXPECT_EQ(next->header("Content-Type").has_value(), GetParam().keepsBody);
}

INSTANTIATE_TEST_SUITE_P(Methods, RedirectMethodTest,
                         ::testing::Values(MethodRow{"Post301", 301, "POST", "GET", false},
                                           MethodRow{"Post302", 302, "POST", "GET", false},
                                           MethodRow{"Post303", 303, "POST", "GET", false},
                                           MethodRow{"Post307", 307, "POST", "POST", true},
                                           MethodRow{"Post308", 308, "POST", "POST", true},
                                           MethodRow{"Put301", 301, "PUT", "PUT", true},
                                           MethodRow{"Delete302", 302, "DELETE", "DELETE", true},
                                           MethodRow{"Delete303", 303, "DELETE", "GET", false},
                                           MethodRow{"Head303", 303, "HEAD", "HEAD", true}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(HTTPRedirect, IsOnlyWhatHasARedirectStatusAndATarget)
{
    const HTTPRequest request = post("https://a.example/");
    for (const int status : {200, 201, 300, 304, 305, 400, 503})
        EXPECT_FALSE(redirected(request, redirectTo("/z", status))) << status;
    EXPECT_FALSE(redirected(request, HTTPResponse{.status = 302}));
}

TEST(HTTPRedirect, RefusesTargetsThatAreNotHTTPOrNoLongerEncrypted)
{
    for (const QByteArray location :
         {"http://a.example/", "http://b.example/", "file:///etc/passwd", "data:text/plain,x",
          "mailto:a@b.example", "https://", "https://a b/"}) {
        try {
            (void)redirected(post("https://a.example/?secret=s"), redirectTo(location));
            ADD_FAILURE() << location.constData();
        } catch (const HTTPTransportError& error) {
            EXPECT_EQ(error.errorCase(), Case::redirectRefused);
            EXPECT_EQ(error.description(), u"A redirect from a.example was refused.");
        }
    }
}

using RedirectOverTheWire = TransportFixture;

QByteArray redirectAnswer(const QByteArray& location, const QByteArray& status = "302 Found")
{
    return httpAnswer(status, "ignored", "Location: " + location + "\r\n");
}

TEST_F(RedirectOverTheWire, CarriesAllHeadersWithinTheOrigin)
{
    m_server.answer("/", redirectAnswer("/next"));
    m_server.answer("/next", httpAnswer("200 OK", "there"));
    HTTPRequest first = request("/");
    first.headers = {{"Authorization", "Bearer secret"}};
    EXPECT_EQ(blockOn(m_transport.data(first)).body, "there");
    EXPECT_EQ(m_server.requests().last().header("Authorization"), "Bearer secret");
}

TEST_F(RedirectOverTheWire, CarriesNoAuthorizationToAnotherOriginNorBackFromIt)
{
    m_server.answer("/", redirectAnswer(m_otherServer.origin() + "/far"));
    m_otherServer.answer("/far", redirectAnswer(m_server.origin() + "/back"));
    m_server.answer("/back", httpAnswer("200 OK", "there"));
    HTTPRequest first = request("/");
    first.headers = {{"Authorization", "Bearer secret"}, {"Cookie", "a=b"}, {"X-Other", "kept"}};
    EXPECT_EQ(blockOn(m_transport.data(first)).body, "there");
    for (const ReceivedRequest& received : {m_otherServer.requests().last(), m_server.requests().last()}) {
        EXPECT_TRUE(received.header("Authorization").isNull());
        EXPECT_TRUE(received.header("Cookie").isNull());
        EXPECT_EQ(received.header("X-Other"), "kept");
    }
}

TEST_F(RedirectOverTheWire, SendsTheBodyAgainWhenTheStatusSaysSo)
{
    m_server.answer("/", redirectAnswer("/next", "308 Permanent Redirect"));
    m_server.answer("/next", httpAnswer("200 OK", "there"));
    HTTPRequest first{
        .method = "POST", .url = m_server.url("/"), .headers = {{"Content-Type", "a/b"}}, .body = "the body"};
    EXPECT_EQ(blockOn(m_transport.data(first)).body, "there");
    EXPECT_EQ(m_server.requests().last().method, "POST");
    EXPECT_EQ(m_server.requests().last().body, "the body");
}

TEST_F(RedirectOverTheWire, FollowsTenRedirectsAndNoMore)
{
    for (int i = 0; i < 11; ++i) {
        m_server.answer("/" + QByteArray::number(i), redirectAnswer("/" + QByteArray::number(i + 1)));
    }
    m_server.answer("/11", httpAnswer("200 OK", "there"));
    EXPECT_EQ(get("/1").body, "there");
    EXPECT_EQ(failure("/0").errorCase(), Case::redirectRefused);
    EXPECT_EQ(m_server.count("/11"), 1);
}

TEST_F(RedirectOverTheWire, RefusesATargetThatIsNotHTTP)
{
    m_server.answer("/", redirectAnswer("file:///etc/hostname"));
    EXPECT_EQ(failure("/").errorCase(), Case::redirectRefused);
}

} // namespace
} // namespace mirel
