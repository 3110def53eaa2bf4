#include "transport/HTTPTransport.h"

namespace mirel {

namespace {

std::optional<QByteArray> firstValue(const QList<HTTPHeader>& headers, QByteArrayView name)
{
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> HTTPRequest::header(QByteArrayView name) const
{
    return firstValue(headers, name);
}

std::optional<QByteArray> HTTPResponse::header(QByteArrayView name) const
{
    return firstValue(headers, name);
}

HTTPTransport::~HTTPTransport() = default;

void HTTPTransport::cancelAll() {}

void HTTPTransport::cancelRepeatable()
{
    cancelAll();
}

} // namespace mirel
