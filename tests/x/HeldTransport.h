#pragma once

#include "transport/HTTPTransportError.h"
#include "x/Gate.h"
#include "x/RecordingTransport.h"

#include <memory>

namespace mirel {

// A network on which every request waits until the test answers it, in whatever order.
class HeldTransport : public HTTPTransport
{
public:
    [[nodiscard]] qsizetype count() const { return static_cast<qsizetype>(m_exchanges.size()); }
    [[nodiscard]] const HTTPRequest& request(size_t index) const { return m_exchanges.at(index)->request; }

    // The caller runs on before this returns.
    void answer(size_t index, int status, const QByteArray& body)
    {
        const auto exchange = m_exchanges.at(index);
        exchange->response = HTTPResponse{status, {}, body};
        exchange->gate.open();
    }

    // Ends what still waits.
    void cancelAll() override
    {
        const auto exchanges = m_exchanges;
        for (const auto& exchange : exchanges)
            exchange->gate.open();
    }

    [[nodiscard]] QCoro::Task<HTTPResponse> data(HTTPRequest request) override
    {
        const auto exchange = std::make_shared<Exchange>();
        exchange->request = request;
        m_exchanges.push_back(exchange);
        co_await exchange->gate.opened();
        if (!exchange->response)
            throw HTTPTransportError(HTTPTransportError::Case::canceled, request.url);
        const HTTPResponse response = *exchange->response;
        co_return response;
    }

private:
    struct Exchange
    {
        HTTPRequest request;
        std::optional<HTTPResponse> response;
        Gate gate;
    };

    std::vector<std::shared_ptr<Exchange>> m_exchanges;
};

} // namespace mirel
