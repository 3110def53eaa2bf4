#pragma once

#include "support/Error.h"
#include "transport/HTTPTransport.h"

#include <deque>
#include <exception>
#include <variant>

namespace mirel {

// A failure of the network.
class ConnectionLost : public Error
{
public:
    [[nodiscard]] QString description() const override { return QStringLiteral("The connection was lost."); }
};

// Keeps every request and answers with what was prepared, in order; ConnectionLost once nothing is left.
class RecordingTransport : public HTTPTransport
{
public:
    void answer(int status, const QByteArray& body, const QList<HTTPHeader>& headers = {})
    {
        m_answers.push_back({status, headers, body});
    }

    [[nodiscard]] const QList<HTTPRequest>& requests() const { return m_requests; }

    [[nodiscard]] QCoro::Task<HTTPResponse> data(HTTPRequest request) override
    {
        m_requests.append(request);
        if (m_answers.empty())
            throw ConnectionLost();
        const HTTPResponse response = m_answers.front();
        m_answers.pop_front();
        co_return response;
    }

private:
    QList<HTTPRequest> m_requests;
    std::deque<HTTPResponse> m_answers;
};

} // namespace mirel
