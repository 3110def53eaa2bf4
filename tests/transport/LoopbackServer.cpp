#include "LoopbackServer.h"

#include <QNetworkProxy>

namespace mirel {

namespace {

// Absent until the whole request is there.
std::optional<ReceivedRequest> parse(const QByteArray& bytes)
{
    const qsizetype headEnd = bytes.indexOf("\r\n\r\n");
    if (headEnd == -1)
        return std::nullopt;
    ReceivedRequest request;
    for (const QByteArray& line : bytes.first(headEnd).split('\n'))
        request.headerLines.append(line.trimmed());
    const QList<QByteArray> requestLine = request.headerLines.takeFirst().split(' ');
    request.method = requestLine.value(0);
    request.target = requestLine.value(1);
    request.body = bytes.sliced(headEnd + 4);
    if (request.body.size() < request.header("Content-Length").toLongLong())
        return std::nullopt;
    return request;
}

} // namespace

QByteArray ReceivedRequest::header(const QByteArray& name) const
{
    for (const QByteArray& line : headerLines) {
        const qsizetype colon = line.indexOf(':');
        if (line.first(colon).compare(name, Qt::CaseInsensitive) == 0)
            return line.sliced(colon + 1).trimmed();
    }
    return {};
}

LoopbackServer::LoopbackServer()
{
    m_server.setProxy(QNetworkProxy::NoProxy);
    m_server.listen(QHostAddress::LocalHost);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { receive(*socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

void LoopbackServer::answer(const QByteArray& target, const QByteArray& bytes)
{
    answer(target, [bytes](QTcpSocket& socket, const ReceivedRequest&) {
        socket.write(bytes);
        socket.disconnectFromHost();
    });
}

void LoopbackServer::answer(const QByteArray& target, Answer answer)
{
    m_answers.insert(target, std::move(answer));
}

QUrl LoopbackServer::url(const QByteArray& target) const
{
    return QUrl::fromEncoded(origin() + target);
}

QByteArray LoopbackServer::origin() const
{
    return "http://127.0.0.1:" + QByteArray::number(m_server.serverPort());
}

qsizetype LoopbackServer::count(const QByteArray& target) const
{
    return std::count_if(m_requests.begin(), m_requests.end(),
                         [&target](const ReceivedRequest& request) { return request.target == target; });
}

void LoopbackServer::receive(QTcpSocket& socket)
{
    QByteArray& received = m_received[&socket];
    received += socket.readAll();
    const auto request = parse(received);
    if (!request)
        return;
    received.clear();
    m_requests.append(*request);
    if (const auto found = m_answers.constFind(request->target); found != m_answers.constEnd()) {
        (*found)(socket, *request);
        return;
    }
    socket.write(httpAnswer("500 Not in the script", request->target));
    socket.disconnectFromHost();
}

QByteArray httpAnswer(const QByteArray& statusLine, const QByteArray& body, const QByteArray& headerLines)
{
    return "HTTP/1.1 " + statusLine + "\r\n" + headerLines +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

quint16 deafPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

} // namespace mirel
