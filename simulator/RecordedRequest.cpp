#include "simulator/RecordedRequest.h"

#include "simulator/http/HTTPRequest.h"

namespace mirel {

std::optional<QString> RecordedRequest::queryItem(QStringView name) const
{
    return simulator::firstValue(queryItems, name);
}

std::optional<QString> RecordedRequest::header(QStringView name) const
{
    return simulator::firstValue(headers, name);
}

} // namespace mirel
