#include "transport/URLSessionHTTPTransport.h"

#include "transport/HTTPExchange.h"
#include "transport/HTTPRedirect.h"

namespace mirel {

namespace {

constexpr int redirectLimit = 10;

bool isHTTP(const QUrl& url)
{
    const QString scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QLatin1StringView("http") || scheme == QLatin1StringView("https"));
}

} // namespace

URLSessionHTTPTransport::URLSessionHTTPTransport(qsizetype sizeLimit)
    : m_manager(makeNetworkAccessManager())
    , m_sizeLimit(sizeLimit)
{
}

URLSessionHTTPTransport::~URLSessionHTTPTransport()
{
    m_isClosing = true;
    cancelAll();
}

QCoro::Task<HTTPResponse> URLSessionHTTPTransport::data(HTTPRequest request)
{
    for (int redirects = 0; redirects <= redirectLimit; ++redirects) {
        const auto exchange = begin(request);
        // Nothing of this object may be touched when this throws: it can be its destructor that resumes.
        HTTPResponse response = co_await *exchange;
        auto next = redirected(request, response);
        if (!next)
            co_return response;
        request = *std::move(next);
    }
    throw HTTPTransportError(HTTPTransportError::Case::redirectRefused, request.url);
}

void URLSessionHTTPTransport::cancelAll()
{
    const QList<InFlight> ended = std::exchange(m_inFlight, {});
    for (const InFlight& each : ended) {
        if (each.exchange)
            each.exchange->cancel();
    }
}

void URLSessionHTTPTransport::cancelRepeatable()
{
    // What is resumed here may begin other requests.
    const QList<InFlight> inFlight = m_inFlight;
    for (const InFlight& each : inFlight) {
        if (each.exchange && !each.isUnrepeatable)
            each.exchange->cancel();
    }
}

std::unique_ptr<HTTPExchange> URLSessionHTTPTransport::begin(const HTTPRequest& request)
{
    if (m_isClosing)
        throw HTTPTransportError(HTTPTransportError::Case::canceled, request.url);
    if (!isHTTP(request.url))
        throw HTTPTransportError(HTTPTransportError::Case::badServerResponse, request.url);
    auto exchange = std::make_unique<HTTPExchange>(*m_manager, request, m_sizeLimit);
    m_inFlight.removeIf([](const InFlight& other) { return other.exchange.isNull(); });
    m_inFlight.append({exchange.get(), request.isUnrepeatable});
    return exchange;
}

} // namespace mirel
