#pragma once

#include "support/Error.h"

namespace mirel {

// Why a credential document was refused, before anything was saved.
class CredentialImportError : public Error
{
public:
    enum class Case {
        invalidInput,
        // Some of client identifier, access token and user identifier are there, and not all.
        incompleteXCredentials
    };

    explicit CredentialImportError(Case errorCase);

    [[nodiscard]] QString description() const override;
    [[nodiscard]] Case errorCase() const { return m_case; }

    friend bool operator==(const CredentialImportError& left, const CredentialImportError& right)
    {
        return left.m_case == right.m_case;
    }

private:
    Case m_case;
};

} // namespace mirel
