#include "testing/Printing.h"

#include "simulator/http/HTTPRequestParser.h"

#include <gtest/gtest.h>

namespace mirel::simulator {
namespace {

TEST(HTTPRequestParser, CutsABytewiseStreamIntoRequests)
{
    const QByteArray stream = "POST /a?b=c%20d HTTP/1.1\r\nHost: x\r\nContent-Length: 5\r\n\r\nhello"
                              "GET /next HTTP/1.1\r\n\r\n";
    HTTPRequestParser parser;
    QList<HTTPRequest> requests;
    for (const char byte : stream) {
        parser.append(QByteArray(1, byte));
        if (const auto request = parser.next())
            requests.append(*request);
    }
    ASSERT_EQ(requests.size(), 2);
    EXPECT_EQ(requests[0].method, "POST");
    EXPECT_EQ(requests[0].path, "/a");
    EXPECT_EQ(firstValue(requests[0].queryItems(), u"b"), QStringLiteral("c d"));
    EXPECT_EQ(requests[0].header("host"), QByteArray("x"));
    EXPECT_EQ(requests[0].body, "hello");
    EXPECT_EQ(requests[1].path, "/next");
}

TEST(HTTPRequestParser, RefusesWhatIsNoRequest)
{
    for (const QByteArray& bytes :
         {QByteArray("hello\r\n\r\n"), QByteArray("GET /a HTTP/2\r\n\r\n"),
          QByteArray("GET a HTTP/1.1\r\n\r\n"), QByteArray("GET / HTTP/1.1\r\nnonsense\r\n\r\n"),
          QByteArray("GET / HTTP/1.1\r\nContent-Length: -3\r\n\r\n"),
          QByteArray("POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n"), QByteArray(300'000, 'x')}) {
        HTTPRequestParser parser;
        parser.append(bytes);
        EXPECT_THROW(static_cast<void>(parser.next()), HTTPRequestParser::MalformedRequest)
            << bytes.left(60).toStdString();
    }
}

TEST(HTTPRequest, ReadsAFormWithPlusAsBlank)
{
    HTTPRequest request;
    request.body = "a=1+2&b=%2B&c&=d";
    const QList<std::pair<QString, QString>> expected{{QStringLiteral("a"), QStringLiteral("1 2")},
                                                      {QStringLiteral("b"), QStringLiteral("+")},
                                                      {QStringLiteral("c"), QString()},
                                                      {QString(), QStringLiteral("d")}};
    EXPECT_EQ(request.formFields(), expected);
}

} // namespace
} // namespace mirel::simulator
