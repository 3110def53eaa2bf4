#pragma once

#include "transport/HTTPTransport.h"

#include <QNetworkAccessManager>
#include <QPointer>

namespace mirel {

class HTTPExchange;

// The transport over the real network. HTTP/1.1 and HTTP/2, through the system's proxies; keeps no cookies
// and no cache. Lives on one thread with an event loop.
//
// At most 10 redirects are followed, as redirected() tells. An answer of more than 64 MiB fails, as does one
// that is cut short, with one gap: Qt can miss the cut of a body over HTTP/1.1 that is chunked and not
// compressed, so whoever reads a body still checks that it is whole. A request with a body is sent once; one
// without may be sent again when a connection ends before any answer.
class URLSessionHTTPTransport : public HTTPTransport
{
public:
    static constexpr qsizetype defaultSizeLimit = 64 * 1024 * 1024;

    // An answer of more than `sizeLimit` bytes fails.
    explicit URLSessionHTTPTransport(qsizetype sizeLimit = defaultSizeLimit);

    // Cancels what is in flight.
    ~URLSessionHTTPTransport() override;
    Q_DISABLE_COPY_MOVE(URLSessionHTTPTransport)

    [[nodiscard]] QCoro::Task<HTTPResponse> data(HTTPRequest request) override;

    // Every request in flight throws HTTPTransportError::canceled before this returns.
    void cancelAll() override;
    void cancelRepeatable() override;

private:
    struct InFlight
    {
        QPointer<HTTPExchange> exchange;
        bool isUnrepeatable = false;
    };

    [[nodiscard]] std::unique_ptr<HTTPExchange> begin(const HTTPRequest& request);

    std::unique_ptr<QNetworkAccessManager> m_manager;
    qsizetype m_sizeLimit;
    QList<InFlight> m_inFlight;
    bool m_isClosing = false;
};

} // namespace mirel
