#pragma once

#include "simulator/Simulator.h"

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>
#include <QTcpSocket>

#include <memory>

namespace mirel {

// What came back for one request.
struct ClientAnswer
{
    // 0 when not even a head came.
    int status = 0;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    // Less than promised came.
    bool isCut = false;

    // The first header of that name (lower case), or empty.
    [[nodiscard]] QByteArray header(QByteArrayView name) const;
    [[nodiscard]] QJsonObject json() const;
};

// A blocking client that shows exactly what arrives, one connection per request.
class SimulatorClient
{
public:
    explicit SimulatorClient(const Simulator& simulator);

    // `target` is the path with its query. Sends the first access token unless `accessToken` is given.
    [[nodiscard]] ClientAnswer request(const QByteArray& method, const QByteArray& target,
                                       const QByteArray& body = {}, const QByteArray& contentType = {},
                                       const QByteArray& accessToken = "simulated-access-token") const;
    [[nodiscard]] ClientAnswer get(const QByteArray& target) const { return request("GET", target); }

    // The target of a page of bookmarks, with everything that the simulator asks for.
    [[nodiscard]] static QByteArray bookmarks(int count = 50, const QString& token = {});
    // A page of bookmarks.
    [[nodiscard]] ClientAnswer page(int count = 50, const QString& token = {}) const
    {
        return get(bookmarks(count, token));
    }
    // All pages to the end.
    [[nodiscard]] QList<ClientAnswer> allPages(int count = 50) const;

    // A connection on which the request was sent and nothing was read.
    [[nodiscard]] std::unique_ptr<QTcpSocket> send(const QByteArray& target) const;

private:
    quint16 m_port;
};

// The four items that whole posts are asked for with, as a query.
[[nodiscard]] QByteArray postQuery();

// The identifiers of a page's data, in order.
[[nodiscard]] QStringList dataIDs(const ClientAnswer& page);

[[nodiscard]] QString nextToken(const ClientAnswer& page);

} // namespace mirel
