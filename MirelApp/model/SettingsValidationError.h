#pragma once

#include "support/Error.h"

namespace mirel {

// Why what the user entered cannot connect an account.
class SettingsValidationError : public Error
{
public:
    enum class Case {
        // A manual connection without its client, its token or its user.
        incompleteXCredentials,
        missingXClientID,
        // An address to which X cannot return.
        invalidXRedirectURI,
        // The browser could not be opened.
        xAuthenticationSessionDidNotStart
    };

    explicit SettingsValidationError(Case errorCase)
        : m_case(errorCase)
    {
    }

    [[nodiscard]] Case errorCase() const { return m_case; }

    [[nodiscard]] QString description() const override;

    friend bool operator==(const SettingsValidationError& a, const SettingsValidationError& b)
    {
        return a.m_case == b.m_case;
    }

private:
    Case m_case;
};

} // namespace mirel
