#include "transport/HTTPExchange.h"

#include "transport/GzipDecoding.h"
#include "transport/OneTimeBody.h"
#include "transport/SystemProxies.h"

#include <QNetworkRequest>

namespace mirel {

namespace {

QNetworkRequest networkRequest(const HTTPRequest& request)
{
    QNetworkRequest network(request.url);
    network.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    network.setAttribute(QNetworkRequest::Http2AllowedAttribute, true);
    network.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    network.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    // Asked for by hand, so that Qt leaves the body alone: its length can be checked, and expanding stops at
    // the limit.
    network.setRawHeader("Accept-Encoding", "gzip");
    network.setRawHeader("User-Agent", "Mirel/" MIREL_VERSION);
    for (const auto& [name, value] : request.headers)
        network.setRawHeader(name, value);
    return network;
}

QNetworkReply* send(QNetworkAccessManager& manager, const HTTPRequest& request)
{
    QNetworkRequest network = networkRequest(request);
    // Qt expects a body in the answer to a custom request, whatever its method.
    if (request.method == "HEAD")
        return manager.head(network);
    if (request.body.isEmpty() && request.method == "GET")
        return manager.get(network);
    if (request.body.isEmpty())
        return manager.sendCustomRequest(network, request.method, QByteArray());
    network.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    network.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    auto* body = new OneTimeBody(request.body);
    QNetworkReply* reply = manager.sendCustomRequest(network, request.method, body);
    body->setParent(reply);
    return reply;
}

// Qt counts an HTTP status from 400 on as an error too; to Mirel that is an answer. The same errors stand for
// a stream of HTTP/2 that the server broke off, so the status decides as well.
bool isAnswer(QNetworkReply::NetworkError error, int status)
{
    if (error == QNetworkReply::NoError)
        return status > 0;
    const bool isAboutContent = error >= QNetworkReply::ContentAccessDenied &&
                                error <= QNetworkReply::UnknownContentError &&
                                error != QNetworkReply::ContentReSendError;
    const bool isAboutServer =
        error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError;
    // What Qt makes of 400 and 418.
    const bool isInvalidOperation = error == QNetworkReply::ProtocolInvalidOperationError;
    return status >= 400 && (isAboutContent || isAboutServer || isInvalidOperation);
}

HTTPTransportError::Case errorCase(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::NoError:
        return HTTPTransportError::Case::badServerResponse;
    case QNetworkReply::SslHandshakeFailedError:
        return HTTPTransportError::Case::tls;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return HTTPTransportError::Case::timeout;
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::ProtocolFailure:
        return HTTPTransportError::Case::badServerResponse;
    default:
        return HTTPTransportError::Case::connection;
    }
}

} // namespace

std::unique_ptr<QNetworkAccessManager> makeNetworkAccessManager()
{
    auto manager = std::make_unique<QNetworkAccessManager>();
    manager->setProxyFactory(new SystemProxies);
    return manager;
}

HTTPExchange::HTTPExchange(QNetworkAccessManager& manager, const HTTPRequest& request, qsizetype sizeLimit)
    : m_url(request.url)
    , m_sizeLimit(sizeLimit)
    , m_ownManager(request.body.isEmpty() ? nullptr : makeNetworkAccessManager())
    , m_reply(send(m_ownManager ? *m_ownManager : manager, request))
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(request.timeout);
    connect(&m_patience, &QTimer::timeout, this, [this] { fail(HTTPTransportError::Case::timeout); });
    m_patience.start();
    watch();
}

HTTPExchange::~HTTPExchange()
{
    m_reply->disconnect(this);
    m_reply->abort();
    m_reply->deleteLater();
}

void HTTPExchange::watch()
{
    connect(m_reply, &QNetworkReply::socketStartedConnecting, this, [this] { noteProgress(); });
    connect(m_reply, &QNetworkReply::encrypted, this, [this] { noteProgress(); });
    connect(m_reply, &QNetworkReply::requestSent, this, [this] { noteProgress(); });
    connect(m_reply, &QNetworkReply::uploadProgress, this, [this] { noteProgress(); });
    connect(m_reply, &QNetworkReply::metaDataChanged, this, [this] { readHead(); });
    connect(m_reply, &QNetworkReply::readyRead, this, [this] { readBody(); });
    connect(m_reply, &QNetworkReply::finished, this, [this] { end(); });
}

void HTTPExchange::noteProgress()
{
    if (!m_isFinished)
        m_patience.start();
}

void HTTPExchange::readHead()
{
    noteProgress();
    if (m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > m_sizeLimit)
        fail(HTTPTransportError::Case::tooLarge);
}

void HTTPExchange::readBody()
{
    noteProgress();
    if (m_isFinished)
        return;
    m_response.body += m_reply->readAll();
    if (m_response.body.size() > m_sizeLimit)
        fail(HTTPTransportError::Case::tooLarge);
}

void HTTPExchange::end()
{
    readBody();
    if (m_isFinished)
        return;
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!isAnswer(m_reply->error(), status))
        return fail(errorCase(m_reply->error()));
    m_response.status = status;
    m_response.headers = m_reply->rawHeaderPairs();
    if (isCutShort())
        return fail(HTTPTransportError::Case::connection);
    decode();
    finish();
}

// An answer to HEAD and one without a body may announce a length all the same.
bool HTTPExchange::isCutShort() const
{
    const auto length = m_response.header("Content-Length");
    const bool hasNoBody = m_reply->operation() == QNetworkAccessManager::HeadOperation ||
                           m_response.status == 204 || m_response.status == 304;
    return length && !hasNoBody && m_response.body.size() < length->trimmed().toLongLong();
}

void HTTPExchange::decode()
{
    const QByteArray encoding = m_response.header("Content-Encoding").value_or(QByteArray()).toLower();
    if (m_response.body.isEmpty() || (encoding != "gzip" && encoding != "x-gzip"))
        return;
    auto decoding = decodeGzip(m_response.body, m_sizeLimit);
    if (!decoding.bytes) {
        m_failure = decoding.isTooLarge ? HTTPTransportError::Case::tooLarge
                                        : HTTPTransportError::Case::badServerResponse;
        return;
    }
    m_response.body = *std::move(decoding.bytes);
    // They describe the bytes on the wire.
    m_response.headers.removeIf([](const HTTPHeader& header) {
        return header.first.compare("Content-Encoding", Qt::CaseInsensitive) == 0 ||
               header.first.compare("Content-Length", Qt::CaseInsensitive) == 0;
    });
}

void HTTPExchange::fail(HTTPTransportError::Case errorCase)
{
    if (m_isFinished)
        return;
    m_failure = errorCase;
    finish();
}

// The coroutine resumes from the event loop: it destroys this object and the reply, which may be in the
// middle of a signal.
void HTTPExchange::finish()
{
    m_isFinished = true;
    m_patience.stop();
    QMetaObject::invokeMethod(
        this, [this] { resume(); }, Qt::QueuedConnection);
}

void HTTPExchange::cancel()
{
    m_isFinished = true;
    m_patience.stop();
    m_failure = HTTPTransportError::Case::canceled;
    resume();
}

void HTTPExchange::resume()
{
    if (const auto waiting = std::exchange(m_waiting, {}))
        waiting.resume();
}

HTTPResponse HTTPExchange::takeResponse()
{
    if (m_failure)
        throw HTTPTransportError(*m_failure, m_url);
    return std::move(m_response);
}

} // namespace mirel
