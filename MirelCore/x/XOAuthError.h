#pragma once

#include "support/Error.h"

namespace mirel {

// Why an X account could not be connected.
class XOAuthError : public Error
{
public:
    enum class Case {
        // The user or X refused.
        authorizationDenied,
        // X answered a status outside 200 to 299.
        http,
        // No client identifier, or an address that X cannot return to.
        invalidConfiguration,
        // A callback came while no attempt was in flight.
        noPendingAuthorization,
        // A callback of another attempt.
        stateMismatch,
        // A callback without a code.
        invalidCallback,
        // A callback or an answer that cannot be read.
        invalidResponse
    };

    // `reason` is what the callback tells.
    [[nodiscard]] static XOAuthError authorizationDenied(QString reason);
    [[nodiscard]] static XOAuthError http(int status, QString message);
    [[nodiscard]] static XOAuthError invalidConfiguration();
    [[nodiscard]] static XOAuthError noPendingAuthorization();
    [[nodiscard]] static XOAuthError stateMismatch();
    [[nodiscard]] static XOAuthError invalidCallback();
    [[nodiscard]] static XOAuthError invalidResponse();

    [[nodiscard]] Case errorCase() const { return m_case; }
    // The status of `http`, else 0.
    [[nodiscard]] int status() const { return m_status; }

    [[nodiscard]] QString description() const override;

    friend bool operator==(const XOAuthError& a, const XOAuthError& b);

private:
    explicit XOAuthError(Case errorCase, int status = 0, QString text = {});

    Case m_case;
    int m_status;
    // The reason of a denial, the message of `http`.
    QString m_text;
};

} // namespace mirel
