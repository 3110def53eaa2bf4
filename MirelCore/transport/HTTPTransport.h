#pragma once

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QList>
#include <QPair>
#include <QUrl>

#include <chrono>
#include <optional>

namespace mirel {

using HTTPHeader = QPair<QByteArray, QByteArray>;

// A fully built request.
struct HTTPRequest
{
    QByteArray method = "GET";
    QUrl url = {};
    QList<HTTPHeader> headers = {};
    QByteArray body = {};
    // The time without any progress after which the request fails.
    std::chrono::milliseconds timeout{60'000};
    // What it asks for, or what waits for its answer, is given once, such as a new token for one that is
    // spent by it: asked again, the server refuses.
    bool isUnrepeatable = false;

    // The value of the first header of that name, in any letter case, or absent.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;
};

// An answer of any status.
struct HTTPResponse
{
    int status = 0;
    QList<HTTPHeader> headers = {};
    QByteArray body = {};

    [[nodiscard]] bool isSuccess() const { return status >= 200 && status <= 299; }

    // The value of the first header of that name, in any letter case, or absent.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;
};

// The one road by which Mirel speaks HTTP.
class HTTPTransport
{
public:
    virtual ~HTTPTransport();

    // Sends the request and returns the answer, whatever its status. Throws HTTPTransportError when no HTTP
    // answer came.
    [[nodiscard]] virtual QCoro::Task<HTTPResponse> data(HTTPRequest request) = 0;

    // Ends every request in flight, which then throws. Does nothing where requests end by themselves.
    virtual void cancelAll();

    // Ends those that can be asked again, or all where the transport does not know one from the other.
    virtual void cancelRepeatable();
};

} // namespace mirel
