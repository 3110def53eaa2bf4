#pragma once

#include "transport/HTTPTransport.h"
#include "transport/HTTPTransportError.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QTimer>

#include <coroutine>
#include <memory>

namespace mirel {

// A manager of connections through the system's proxies.
[[nodiscard]] std::unique_ptr<QNetworkAccessManager> makeNetworkAccessManager();

// One request on the wire and its answer, whatever its status; redirects are not followed. Begins when it is
// made; awaited once, by a coroutine of the same thread that owns it. Aborts what is unfinished when it is
// destroyed.
class HTTPExchange : public QObject
{
public:
    // An answer of more than `sizeLimit` bytes, on the wire or expanded, is refused. `manager` outlives the
    // exchange.
    HTTPExchange(QNetworkAccessManager& manager, const HTTPRequest& request, qsizetype sizeLimit);
    ~HTTPExchange() override;
    Q_DISABLE_COPY_MOVE(HTTPExchange)

    // Aborts, and resumes the waiting coroutine at once with HTTPTransportError::canceled.
    void cancel();

    struct Awaiter
    {
        HTTPExchange& exchange;

        [[nodiscard]] bool await_ready() const noexcept { return exchange.m_isFinished; }
        void await_suspend(std::coroutine_handle<> waiting) { exchange.m_waiting = waiting; }
        // Throws HTTPTransportError.
        HTTPResponse await_resume() const { return exchange.takeResponse(); }
    };
    [[nodiscard]] Awaiter operator co_await() { return {*this}; }

private:
    void watch();
    void noteProgress();
    void readHead();
    void readBody();
    void end();
    void fail(HTTPTransportError::Case errorCase);
    void finish();
    void resume();
    [[nodiscard]] bool isCutShort() const;
    void decode();
    [[nodiscard]] HTTPResponse takeResponse();

    QUrl m_url;
    qsizetype m_sizeLimit;
    QTimer m_patience;
    // A request with a body is sent only once, so it gets a connection of its own: an idle one may have
    // been closed by the other side, which shows only when it is too late.
    std::unique_ptr<QNetworkAccessManager> m_ownManager;
    QNetworkReply* m_reply = nullptr;
    HTTPResponse m_response;
    std::optional<HTTPTransportError::Case> m_failure;
    bool m_isFinished = false;
    std::coroutine_handle<> m_waiting;
};

} // namespace mirel
