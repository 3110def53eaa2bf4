#pragma once

#include "support/Error.h"
#include "support/Instant.h"

#include <optional>

namespace mirel {

// The one error type of the X client.
class XAPIError : public Error
{
public:
    enum class Case { http, rateLimited, credentialsMissing, reconnectRequired, invalidResponse };

    [[nodiscard]] static XAPIError http(int status, QString message);
    [[nodiscard]] static XAPIError rateLimited(std::optional<Instant> resetAt);
    [[nodiscard]] static XAPIError credentialsMissing();
    [[nodiscard]] static XAPIError reconnectRequired();
    [[nodiscard]] static XAPIError invalidResponse();

    [[nodiscard]] Case errorCase() const { return m_case; }
    // The status of `http`, else 0.
    [[nodiscard]] int status() const { return m_status; }
    // The instant from which X answers again, of `rateLimited` alone.
    [[nodiscard]] std::optional<Instant> resetAt() const { return m_resetAt; }

    [[nodiscard]] QString description() const override;

    friend bool operator==(const XAPIError& a, const XAPIError& b);

private:
    explicit XAPIError(Case errorCase)
        : m_case(errorCase)
    {
    }

    Case m_case;
    int m_status = 0;
    QString m_message;
    std::optional<Instant> m_resetAt;
};

} // namespace mirel
