#pragma once

#include "testing/Printing.h"

#include "LoopbackServer.h"
#include "support/BlockOn.h"
#include "transport/HTTPTransportError.h"
#include "transport/URLSessionHTTPTransport.h"

#include <gtest/gtest.h>

namespace mirel {

// A transport and two servers, which are two origins.
class TransportFixture : public ::testing::Test
{
protected:
    [[nodiscard]] HTTPRequest request(const QByteArray& target) const
    {
        return {.url = m_server.url(target)};
    }

    HTTPResponse get(const QByteArray& target) { return blockOn(m_transport.data(request(target))); }

    // The error that the request ends with.
    HTTPTransportError failure(const HTTPRequest& request)
    {
        try {
            const HTTPResponse response = blockOn(m_transport.data(request));
            ADD_FAILURE() << "answered with status " << response.status;
        } catch (const HTTPTransportError& error) {
            return error;
        }
        throw std::logic_error("the request did not fail");
    }
    HTTPTransportError failure(const QByteArray& target) { return failure(request(target)); }

    LoopbackServer m_server;
    LoopbackServer m_otherServer;
    URLSessionHTTPTransport m_transport;
};

} // namespace mirel
