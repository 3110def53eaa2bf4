#pragma once

#include "simulator/http/HTTPRequest.h"

#include <optional>
#include <stdexcept>

namespace mirel::simulator {

// Cuts a stream of bytes into requests. Knows what the clients of the simulator send: HTTP/1.1 with a
// Content-Length or without a body.
class HTTPRequestParser
{
public:
    // The bytes are no request that this parser knows. Nothing useful can follow on the connection.
    class MalformedRequest : public std::runtime_error
    {
        using std::runtime_error::runtime_error;
    };

    void append(const QByteArray& bytes) { m_buffer += bytes; }

    // The next complete request, or absent while bytes are missing. Throws MalformedRequest.
    [[nodiscard]] std::optional<HTTPRequest> next();

private:
    QByteArray m_buffer;
};

} // namespace mirel::simulator
