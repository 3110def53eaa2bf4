#pragma once

#include "simulator/http/HTTPConnection.h"

#include <QTcpServer>

namespace mirel::simulator {

// A small HTTP/1.1 server on the loopback address. It exists because its answers must be able to stop in
// the middle, which ready-made servers prevent.
class HTTPServer : public QObject
{
    Q_OBJECT

public:
    explicit HTTPServer(HTTPHandler handler, QObject* parent = nullptr);

    // Listens on 127.0.0.1; port 0 picks a free one. Returns the port. Throws SimulatorError.
    quint16 listen(quint16 port);

private:
    HTTPHandler m_handler;
    QTcpServer m_server;
};

} // namespace mirel::simulator
