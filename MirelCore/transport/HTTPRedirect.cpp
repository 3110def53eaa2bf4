#include "transport/HTTPRedirect.h"

#include "transport/HTTPTransportError.h"

#include <array>

namespace mirel {

namespace {

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool isEncrypted(const QUrl& url)
{
    return url.scheme() == QLatin1StringView("https");
}

int port(const QUrl& url)
{
    return url.port(isEncrypted(url) ? 443 : 80);
}

bool isSameOrigin(const QUrl& left, const QUrl& right)
{
    return left.scheme() == right.scheme() && left.host() == right.host() && port(left) == port(right);
}

QUrl target(const QUrl& from, const QByteArray& location)
{
    const QUrl relative = QUrl::fromEncoded(location.trimmed());
    QUrl url = from.resolved(relative);
    const bool isHTTP = isEncrypted(url) || url.scheme() == QLatin1StringView("http");
    if (!relative.isValid() || !url.isValid() || !isHTTP || url.host().isEmpty())
        throw HTTPTransportError(HTTPTransportError::Case::redirectRefused, from);
    if (isEncrypted(from) && !isEncrypted(url))
        throw HTTPTransportError(HTTPTransportError::Case::redirectRefused, from);
    // A name and password in the address would become an Authorization header.
    url.setUserInfo({});
    return url;
}

template <std::size_t Size>
void removeHeaders(HTTPRequest& request, const std::array<QByteArrayView, Size>& names)
{
    request.headers.removeIf([&names](const HTTPHeader& header) {
        return std::any_of(names.begin(), names.end(), [&header](QByteArrayView name) {
            return header.first.compare(name, Qt::CaseInsensitive) == 0;
        });
    });
}

bool becomesGet(const HTTPRequest& request, int status)
{
    if (status == 303)
        return request.method != "HEAD";
    return (status == 301 || status == 302) && request.method == "POST";
}

} // namespace

std::optional<HTTPRequest> redirected(const HTTPRequest& request, const HTTPResponse& response)
{
    const auto location = response.header("Location");
    if (!isRedirect(response.status) || !location)
        return std::nullopt;
    HTTPRequest next = request;
    next.url = target(request.url, *location);
    if (becomesGet(request, response.status)) {
        next.method = "GET";
        next.body.clear();
        removeHeaders(next, std::array<QByteArrayView, 4>{"Content-Type", "Content-Length",
                                                          "Content-Encoding", "Content-Language"});
    }
    if (!isSameOrigin(request.url, next.url)) {
        // A body may hold a secret too: the refresh token travels in one.
        if (!next.body.isEmpty())
            throw HTTPTransportError(HTTPTransportError::Case::redirectRefused, request.url);
        removeHeaders(
            next, std::array<QByteArrayView, 4>{"Authorization", "Proxy-Authorization", "Cookie", "Cookie2"});
    }
    return next;
}

} // namespace mirel
