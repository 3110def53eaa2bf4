#include "ReadyPages.h"

namespace mirel {

ReadyPages::ReadyPages(QByteArrayList pages)
    : m_pages(std::move(pages))
{
}

QCoro::Task<HTTPResponse> ReadyPages::data(HTTPRequest)
{
    HTTPResponse response{.status = 200, .body = R"({"data":[]})"};
    if (!m_pages.isEmpty())
        response.body = m_pages.takeFirst();
    co_return response;
}

} // namespace mirel
