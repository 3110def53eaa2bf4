#include "simulator/http/HTTPServer.h"

#include "simulator/SimulatorError.h"

namespace mirel::simulator {

HTTPServer::HTTPServer(HTTPHandler handler, QObject* parent)
    : QObject(parent)
    , m_handler(std::move(handler))
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection())
            new HTTPConnection(socket, m_handler, this);
    });
}

quint16 HTTPServer::listen(quint16 port)
{
    if (!m_server.listen(QHostAddress::LocalHost, port))
        throw SimulatorError(SimulatorError::Case::PortUnavailable, m_server.errorString());
    return m_server.serverPort();
}

} // namespace mirel::simulator
