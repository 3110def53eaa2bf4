#include "simulator/http/HTTPRequestParser.h"

namespace mirel::simulator {

namespace {

constexpr qsizetype largestHead = 256 * 1024;
constexpr qsizetype largestBody = 16 * 1024 * 1024;

void parseRequestLine(HTTPRequest& request, const QByteArray& line)
{
    const QList<QByteArray> parts = line.split(' ');
    if (parts.size() != 3 || !parts[2].startsWith("HTTP/1.") || !parts[1].startsWith('/'))
        throw HTTPRequestParser::MalformedRequest("not an HTTP/1.1 request line");
    request.method = parts[0];
    const qsizetype question = parts[1].indexOf('?');
    request.path = question < 0 ? parts[1] : parts[1].left(question);
    request.query = question < 0 ? QByteArray() : parts[1].mid(question + 1);
}

HTTPRequest parseHead(const QByteArray& head)
{
    HTTPRequest request;
    const QList<QByteArray> lines = head.split('\n');
    parseRequestLine(request, lines.first().trimmed());
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const qsizetype colon = lines[i].indexOf(':');
        if (colon <= 0)
            throw HTTPRequestParser::MalformedRequest("a header line without a colon");
        request.headers.append({lines[i].left(colon).toLower(), lines[i].mid(colon + 1).trimmed()});
    }
    return request;
}

qsizetype bodyLength(const HTTPRequest& request)
{
    if (request.header("transfer-encoding"))
        throw HTTPRequestParser::MalformedRequest("chunked request bodies are not understood");
    const auto text = request.header("content-length");
    if (!text)
        return 0;
    bool readable = false;
    const qlonglong length = text->toLongLong(&readable);
    if (!readable || length < 0 || length > largestBody)
        throw HTTPRequestParser::MalformedRequest("an unusable Content-Length");
    return length;
}

} // namespace

std::optional<HTTPRequest> HTTPRequestParser::next()
{
    const qsizetype end = m_buffer.indexOf("\r\n\r\n");
    if (end < 0) {
        if (m_buffer.size() > largestHead)
            throw MalformedRequest("the head of the request is too large");
        return std::nullopt;
    }
    HTTPRequest request = parseHead(m_buffer.left(end));
    const qsizetype length = bodyLength(request);
    if (m_buffer.size() < end + 4 + length)
        return std::nullopt;
    request.body = m_buffer.mid(end + 4, length);
    m_buffer.remove(0, end + 4 + length);
    return request;
}

} // namespace mirel::simulator
