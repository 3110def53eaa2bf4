#pragma once

#include "support/Error.h"

#include <QUrl>

namespace mirel {

// Why a request got no usable HTTP answer. Its text names the host alone: no path, query, header or token.
class HTTPTransportError : public Error
{
public:
    enum class Case {
        // No connection, or one that was cut before the answer was whole.
        connection,
        // No progress for the time that the request allows.
        timeout,
        // No trust in the other side's certificate, or no agreement on encryption.
        tls,
        // The answer is larger than the transport takes.
        tooLarge,
        // Given up by Mirel itself.
        canceled,
        // What was asked is not on HTTP, or what came breaks its rules.
        badServerResponse,
        // The answer leads from an encrypted page to an unencrypted one, to something that is not HTTP, or
        // in circles.
        redirectRefused
    };

    // Of `url`, the one that was asked, only the host is kept.
    HTTPTransportError(Case errorCase, const QUrl& url);

    [[nodiscard]] QString description() const override;
    [[nodiscard]] Case errorCase() const { return m_case; }

private:
    Case m_case;
    QString m_host;
};

} // namespace mirel
