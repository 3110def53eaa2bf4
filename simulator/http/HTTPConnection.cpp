#include "simulator/http/HTTPConnection.h"

#include <QTimer>

namespace mirel::simulator {

namespace {

constexpr qint64 paddingStep = 64 * 1024;

QByteArray reasonPhrase(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 302:
        return "Found";
    case 401:
        return "Unauthorized";
    case 404:
        return "Not Found";
    case 429:
        return "Too Many Requests";
    default:
        return status < 400 ? "Answer" : "Error";
    }
}

QByteArray headOf(const HTTPResponse& response, const Delivery& delivery)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + ' ' +
                      reasonPhrase(response.status) + "\r\nContent-Type: " + response.contentType + "\r\n";
    if (delivery.chunked)
        head += "Transfer-Encoding: chunked\r\n";
    else
        head += "Content-Length: " + QByteArray::number(response.body.size() + delivery.padding) + "\r\n";
    for (const auto& [name, value] : response.headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

} // namespace

HTTPConnection::HTTPConnection(QTcpSocket* socket, HTTPHandler handler, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_handler(std::move(handler))
{
    m_socket->setParent(this);
    // An answer goes out in several pieces, which must not wait for the client to acknowledge the first.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, [this] {
        m_parser.append(m_socket->readAll());
        handleNext();
    });
    connect(m_socket, &QTcpSocket::bytesWritten, this, &HTTPConnection::writePadding);
    connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
}

void HTTPConnection::handleNext()
{
    if (m_busy)
        return;
    try {
        const auto request = m_parser.next();
        if (!request)
            return;
        m_busy = true;
        const HTTPReply reply = m_handler(*request);
        if (reply.delivery.delayMilliseconds <= 0)
            return deliver(reply);
        QTimer::singleShot(reply.delivery.delayMilliseconds, this, [this, reply] { deliver(reply); });
    } catch (const HTTPRequestParser::MalformedRequest& malformed) {
        refuse(malformed.what());
    }
}

void HTTPConnection::deliver(const HTTPReply& reply)
{
    switch (reply.delivery.kind) {
    case Delivery::Kind::CutBeforeHeaders:
        m_socket->abort();
        return;
    case Delivery::Kind::Stall:
        return;
    case Delivery::Kind::CutInBody:
    case Delivery::Kind::StallInBody:
        writePart(reply);
        return;
    case Delivery::Kind::Whole:
        break;
    }
    m_chunked = reply.delivery.chunked;
    m_padding = reply.delivery.padding;
    m_socket->write(headOf(reply.response, reply.delivery));
    writeChunk(reply.response.body);
    if (m_padding == 0)
        finishReply();
}

void HTTPConnection::writePart(const HTTPReply& reply)
{
    const qint64 size = reply.response.body.size();
    const qint64 wanted = reply.delivery.bytes < 0 ? size / 2 : std::min(reply.delivery.bytes, size);
    Delivery promised = reply.delivery;
    promised.chunked = false;
    m_socket->write(headOf(reply.response, promised));
    m_socket->write(reply.response.body.left(wanted));
    if (reply.delivery.kind == Delivery::Kind::CutInBody)
        m_socket->disconnectFromHost();
}

void HTTPConnection::writePadding()
{
    // One step at a time, so that a large body never stands in memory.
    if (m_padding == 0 || m_socket->bytesToWrite() > paddingStep)
        return;
    const qint64 step = std::min(m_padding, paddingStep);
    m_padding -= step;
    writeChunk(QByteArray(step, ' '));
    if (m_padding == 0)
        finishReply();
}

void HTTPConnection::writeChunk(const QByteArray& bytes)
{
    if (!m_chunked) {
        m_socket->write(bytes);
    } else if (!bytes.isEmpty()) {
        m_socket->write(QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n");
    }
}

void HTTPConnection::finishReply()
{
    if (m_chunked)
        m_socket->write("0\r\n\r\n");
    m_chunked = false;
    m_busy = false;
    // Not called directly: a client that sends many requests at once would deepen the stack.
    QTimer::singleShot(0, this, &HTTPConnection::handleNext);
}

void HTTPConnection::refuse(const QByteArray& reason)
{
    m_busy = true;
    m_socket->write(
        "HTTP/1.1 400 Bad Request\r\nConnection: close\r\nContent-Type: text/plain\r\nContent-Length: " +
        QByteArray::number(reason.size()) + "\r\n\r\n" + reason);
    m_socket->disconnectFromHost();
}

} // namespace mirel::simulator
