#include "testing/Printing.h"

#include "TransportFixture.h"

namespace mirel {
namespace {

using namespace std::chrono_literals;
using Case = HTTPTransportError::Case;
using URLSessionHTTPTransportTest = TransportFixture;

TEST_F(URLSessionHTTPTransportTest, ReturnsStatusHeadersAndBody)
{
    m_server.answer("/a?b=c", httpAnswer("200 OK", "hello", "X-Kind: test\r\n"));
    const HTTPResponse response = get("/a?b=c");
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.header("x-kind"), QByteArray("test"));
    EXPECT_EQ(response.body, "hello");
}

TEST_F(URLSessionHTTPTransportTest, SendsMethodHeadersAndBody)
{
    m_server.answer("/", httpAnswer("200 OK", ""));
    HTTPRequest post{.method = "POST",
                     .url = m_server.url("/"),
                     .headers = {{"Content-Type", "text/plain"}, {"Authorization", "Bearer t"}},
                     .body = "the body"};
    blockOn(m_transport.data(post));
    ASSERT_EQ(m_server.requests().size(), 1);
    const ReceivedRequest& received = m_server.requests().first();
    EXPECT_EQ(received.method, "POST");
    EXPECT_EQ(received.header("Content-Type"), "text/plain");
    EXPECT_EQ(received.header("Authorization"), "Bearer t");
    EXPECT_EQ(received.body, "the body");
}

TEST_F(URLSessionHTTPTransportTest, SendsMethodsWithoutABody)
{
    for (const QByteArray method : {"GET", "DELETE", "POST", "PUT"}) {
        m_server.answer("/" + method, httpAnswer("200 OK", "done"));
        HTTPRequest bare{
            .method = method, .url = m_server.url("/" + method), .headers = {{"Content-Type", "a/b"}}};
        EXPECT_EQ(blockOn(m_transport.data(bare)).body, "done");
        EXPECT_EQ(m_server.requests().last().method, method);
        EXPECT_EQ(m_server.requests().last().body, "");
    }
}

TEST_F(URLSessionHTTPTransportTest, SaysThatItIsMirelUnlessTheRequestSaysOtherwise)
{
    m_server.answer("/", httpAnswer("200 OK", ""));
    get("/");
    EXPECT_TRUE(m_server.requests().last().header("User-Agent").startsWith("Mirel/"));
    HTTPRequest other = request("/");
    other.headers = {{"User-Agent", "Other/1"}};
    blockOn(m_transport.data(other));
    EXPECT_EQ(m_server.requests().last().header("User-Agent"), "Other/1");
}

TEST_F(URLSessionHTTPTransportTest, ReturnsARefusalOfARequestWithABody)
{
    for (const QByteArray headers :
         {"", "WWW-Authenticate: Basic realm=\"x\"\r\n", "WWW-Authenticate: Bearer\r\n"}) {
        m_server.answer("/", httpAnswer("401 No", "why", headers));
        const HTTPResponse response = blockOn(m_transport.data(
            {.method = "POST", .url = m_server.url("/"), .headers = {{"Content-Type", "a/b"}}, .body = "b"}));
        EXPECT_EQ(response.status, 401);
        EXPECT_EQ(response.body, "why");
    }
    EXPECT_EQ(m_server.requests().size(), 3);
}

TEST_F(URLSessionHTTPTransportTest, SendsALargeBodyWhole)
{
    m_server.answer("/", httpAnswer("200 OK", ""));
    const QByteArray body(3'000'000, 'x');
    blockOn(m_transport.data(
        {.method = "POST", .url = m_server.url("/"), .headers = {{"Content-Type", "a/b"}}, .body = body}));
    EXPECT_EQ(m_server.requests().first().body.size(), body.size());
}

struct StatusRow
{
    const char* name;
    QByteArray statusLine;
    QByteArray headers;
    int status;
};

class HTTPStatusTest : public TransportFixture, public ::testing::WithParamInterface<StatusRow>
{
};

TEST_P(HTTPStatusTest, IsAnAnswerWithItsBody)
{
    m_server.answer("/", httpAnswer(GetParam().statusLine, "{\"detail\":\"why\"}", GetParam().headers));
    const HTTPResponse response = get("/");
    EXPECT_EQ(response.status, GetParam().status);
    EXPECT_EQ(response.body, "{\"detail\":\"why\"}");
    EXPECT_EQ(m_server.requests().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, HTTPStatusTest,
    ::testing::Values(
        StatusRow{"Created", "201 Created", "", 201}, StatusRow{"MultipleChoices", "300 X", "", 300},
        StatusRow{"RedirectWithoutTarget", "302 Found", "", 302}, StatusRow{"BadRequest", "400 Bad", "", 400},
        StatusRow{"Unauthorized", "401 Unauthorized", "", 401},
        StatusRow{"UnauthorizedBasic", "401 No", "WWW-Authenticate: Basic realm=\"x\"\r\n", 401},
        StatusRow{"UnauthorizedBearer", "401 No", "WWW-Authenticate: Bearer\r\n", 401},
        StatusRow{"PaymentRequired", "402 Pay", "", 402}, StatusRow{"Forbidden", "403 No", "", 403},
        StatusRow{"NotFound", "404 No", "", 404}, StatusRow{"Conflict", "409 No", "", 409},
        StatusRow{"Gone", "410 No", "", 410}, StatusRow{"Teapot", "418 No", "", 418},
        StatusRow{"TooMany", "429 Slow", "", 429}, StatusRow{"Internal", "500 Oh", "", 500},
        StatusRow{"NotImplemented", "501 Oh", "", 501}, StatusRow{"Down", "503 Oh", "", 503},
        StatusRow{"Unheard", "599 Oh", "", 599}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(URLSessionHTTPTransportTest, ReturnsAnAnswerWithoutABody)
{
    m_server.answer("/", QByteArray("HTTP/1.1 204 No Content\r\n\r\n"));
    EXPECT_EQ(get("/").status, 204);
    EXPECT_EQ(get("/").body, "");
}

TEST_F(URLSessionHTTPTransportTest, ReturnsAHeadAnswerWhoseLengthIsThatOfTheMissingBody)
{
    m_server.answer("/", QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n"));
    const HTTPResponse response = blockOn(m_transport.data({.method = "HEAD", .url = m_server.url("/")}));
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, "");
}

TEST_F(URLSessionHTTPTransportTest, ReadsABodyThatEndsWithTheConnection)
{
    m_server.answer("/", QByteArray("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\nall of it"));
    EXPECT_EQ(get("/").body, "all of it");
}

TEST_F(URLSessionHTTPTransportTest, ReadsAChunkedBody)
{
    m_server.answer("/", QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                    "3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"));
    EXPECT_EQ(get("/").body, "abcde");
}

TEST_F(URLSessionHTTPTransportTest, FailsWhenTheConnectionIsCutInTheMiddleOfABody)
{
    m_server.answer("/length", QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc"));
    m_server.answer("/error", QByteArray("HTTP/1.1 500 Oh\r\nContent-Length: 10\r\n\r\nabc"));
    for (const QByteArray target : {"/length", "/error"})
        EXPECT_EQ(failure(target).errorCase(), Case::connection) << target.constData();
}

TEST_F(URLSessionHTTPTransportTest, FailsWhenTheConnectionIsClosedInTheMiddleOfTheHead)
{
    m_server.answer("/", QByteArray("HTTP/1.1 200 OK\r\nContent-Le"));
    EXPECT_EQ(failure("/").errorCase(), Case::connection);
}

TEST_F(URLSessionHTTPTransportTest, FailsWhenNobodyListens)
{
    QUrl url = m_server.url("/path?token=secret");
    url.setPort(deafPort());
    const HTTPTransportError error = failure({.url = url, .headers = {{"Authorization", "Bearer secret"}}});
    EXPECT_EQ(error.errorCase(), Case::connection);
    EXPECT_EQ(error.description(), u"The connection to 127.0.0.1 failed. Check the network and try again.");
}

TEST_F(URLSessionHTTPTransportTest, SendsARequestWithABodyOnlyOnce)
{
    m_server.answer("/", QByteArray());
    const HTTPTransportError error = failure(HTTPRequest{.method = "POST",
                                                         .url = m_server.url("/"),
                                                         .headers = {{"Content-Type", "a/b"}},
                                                         .body = "refresh_token=r"});
    EXPECT_EQ(error.errorCase(), Case::connection);
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(URLSessionHTTPTransportTest, FailsWhenTheAnswerIsNotHTTP)
{
    m_server.answer("/", QByteArray("220 mail.example ESMTP ready\r\n\r\n"));
    EXPECT_EQ(failure("/").errorCase(), Case::connection);
}

TEST_F(URLSessionHTTPTransportTest, RefusesAddressesThatAreNotHTTP)
{
    for (const char* address :
         {"file:///etc/hostname", "data:text/plain,x", "ftp://127.0.0.1/", "", "http://"}) {
        const HTTPTransportError error = failure(HTTPRequest{.url = QUrl(QString::fromLatin1(address))});
        EXPECT_EQ(error.errorCase(), Case::badServerResponse) << address;
    }
}

TEST_F(URLSessionHTTPTransportTest, FailsWithoutEncryptionWhereItIsExpected)
{
    QTcpServer plain;
    plain.listen(QHostAddress::LocalHost);
    QObject::connect(&plain, &QTcpServer::newConnection, &plain, [&plain] {
        plain.nextPendingConnection()->write("HTTP/1.1 400 Speak plainly\r\n\r\n");
    });
    QUrl url(QStringLiteral("https://127.0.0.1/?token=secret"));
    url.setPort(plain.serverPort());
    const HTTPTransportError error = failure(HTTPRequest{.url = url});
    EXPECT_EQ(error.errorCase(), Case::tls);
    EXPECT_EQ(error.description(), u"A secure connection to 127.0.0.1 could not be made.");
}

TEST_F(URLSessionHTTPTransportTest, TimesOutWhenNoAnswerComes)
{
    m_server.answer("/?q=secret", [](QTcpSocket&, const ReceivedRequest&) {});
    const HTTPTransportError error = failure(HTTPRequest{.url = m_server.url("/?q=secret"), .timeout = 50ms});
    EXPECT_EQ(error.errorCase(), Case::timeout);
    EXPECT_EQ(error.description(), u"The request to 127.0.0.1 timed out.");
}

TEST_F(URLSessionHTTPTransportTest, TimesOutWhenABodyStalls)
{
    m_server.answer("/", [](QTcpSocket& socket, const ReceivedRequest&) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc");
    });
    const HTTPTransportError error = failure(HTTPRequest{.url = m_server.url("/"), .timeout = 50ms});
    EXPECT_EQ(error.errorCase(), Case::timeout);
}

TEST_F(URLSessionHTTPTransportTest, KeepsNoCookies)
{
    m_server.answer("/", httpAnswer("200 OK", "", "Set-Cookie: a=b\r\n"));
    get("/");
    get("/");
    ASSERT_EQ(m_server.requests().size(), 2);
    EXPECT_TRUE(m_server.requests().last().header("Cookie").isNull());
}

TEST_F(URLSessionHTTPTransportTest, CancelsWhatIsInFlight)
{
    m_server.answer("/", [](QTcpSocket&, const ReceivedRequest&) {});
    QStringList ended;
    auto wait = [](URLSessionHTTPTransport* transport, HTTPRequest request,
                   QStringList* ends) -> QCoro::Task<> {
        try {
            co_await transport->data(request);
        } catch (const HTTPTransportError& error) {
            ends->append(error.description());
        }
    };
    const auto first = wait(&m_transport, request("/"), &ended);
    const auto second = wait(&m_transport, request("/"), &ended);
    EXPECT_EQ(ended.size(), 0);
    m_transport.cancelAll();
    EXPECT_EQ(ended, QStringList(2, QStringLiteral("The request to 127.0.0.1 was canceled.")));
    m_server.answer("/after", httpAnswer("200 OK", "still works"));
    EXPECT_EQ(get("/after").body, "still works");
}

TEST_F(URLSessionHTTPTransportTest, SparesOnRequestWhatCannotBeAskedAgain)
{
    m_server.answer("/", [](QTcpSocket&, const ReceivedRequest&) {});
    QStringList ended;
    auto wait = [](URLSessionHTTPTransport* transport, HTTPRequest request, QString name,
                   QStringList* ends) -> QCoro::Task<> {
        try {
            co_await transport->data(request);
        } catch (const HTTPTransportError&) {
            ends->append(name);
        }
    };
    HTTPRequest token = request("/");
    token.isUnrepeatable = true;
    const auto first = wait(&m_transport, request("/"), QStringLiteral("posts"), &ended);
    const auto second = wait(&m_transport, token, QStringLiteral("token"), &ended);
    m_transport.cancelRepeatable();
    EXPECT_EQ(ended, QStringList{QStringLiteral("posts")});
    m_transport.cancelAll();
    EXPECT_EQ(ended, (QStringList{QStringLiteral("posts"), QStringLiteral("token")}));
}

TEST_F(URLSessionHTTPTransportTest, CancelsWhatIsInFlightWhenItIsDestroyed)
{
    m_server.answer("/", [](QTcpSocket&, const ReceivedRequest&) {});
    auto transport = std::make_unique<URLSessionHTTPTransport>();
    QList<Case> ended;
    // Tries again at once, which must fail too instead of outliving the transport.
    auto wait = [](URLSessionHTTPTransport* it, HTTPRequest request, QList<Case>* ends) -> QCoro::Task<> {
        for (int i = 0; i < 2; ++i) {
            try {
                co_await it->data(request);
            } catch (const HTTPTransportError& error) {
                ends->append(error.errorCase());
            }
        }
    };
    const auto task = wait(transport.get(), request("/"), &ended);
    transport.reset();
    EXPECT_EQ(ended, QList<Case>(2, Case::canceled));
}

} // namespace
} // namespace mirel
