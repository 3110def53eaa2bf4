#pragma once

#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>

namespace mirel {

// A request as it came over the wire.
struct ReceivedRequest
{
    QByteArray method;
    QByteArray target;
    // The lines between the request line and the body.
    QList<QByteArray> headerLines;
    QByteArray body;

    // The value of that header, in any letter case, or a null array.
    [[nodiscard]] QByteArray header(const QByteArray& name) const;
};

// A server on loopback that answers each path as it was told, byte by byte, on the loop of the test.
class LoopbackServer : public QObject
{
public:
    using Answer = std::function<void(QTcpSocket& socket, const ReceivedRequest& request)>;

    LoopbackServer();

    // The answer to that target (path and query): written as it stands, then the connection is closed.
    void answer(const QByteArray& target, const QByteArray& bytes);
    void answer(const QByteArray& target, Answer answer);

    [[nodiscard]] QUrl url(const QByteArray& target) const;
    // "http://127.0.0.1:PORT", without a path.
    [[nodiscard]] QByteArray origin() const;
    [[nodiscard]] const QList<ReceivedRequest>& requests() const { return m_requests; }
    // The requests for that target.
    [[nodiscard]] qsizetype count(const QByteArray& target) const;

private:
    void receive(QTcpSocket& socket);

    QTcpServer m_server;
    QHash<QByteArray, Answer> m_answers;
    QHash<QTcpSocket*, QByteArray> m_received;
    QList<ReceivedRequest> m_requests;
};

// A whole HTTP answer with its Content-Length.
[[nodiscard]] QByteArray httpAnswer(const QByteArray& statusLine, const QByteArray& body,
                                    const QByteArray& headerLines = {});

// A port on loopback where nobody listens.
[[nodiscard]] quint16 deafPort();

} // namespace mirel
