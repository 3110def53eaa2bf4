#pragma once

#include "simulator/http/HTTPRequestParser.h"
#include "simulator/http/HTTPResponse.h"

#include <QObject>
#include <QTcpSocket>

#include <functional>

namespace mirel::simulator {

using HTTPHandler = std::function<HTTPReply(const HTTPRequest&)>;

// One client's connection: answers its requests one after the other, each as its delivery says. Deletes
// itself when the client is gone.
class HTTPConnection : public QObject
{
    Q_OBJECT

public:
    // Takes over the socket. `handler` is called on the thread of the connection.
    HTTPConnection(QTcpSocket* socket, HTTPHandler handler, QObject* parent);

private:
    void handleNext();
    void deliver(const HTTPReply& reply);
    void writePart(const HTTPReply& reply);
    void writePadding();
    void writeChunk(const QByteArray& bytes);
    void finishReply();
    void refuse(const QByteArray& reason);

    QTcpSocket* m_socket;
    HTTPHandler m_handler;
    HTTPRequestParser m_parser;
    qint64 m_padding = 0;
    bool m_chunked = false;
    // A reply is under way, or the connection stays silent for good.
    bool m_busy = false;
};

} // namespace mirel::simulator
