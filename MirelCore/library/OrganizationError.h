#pragma once

#include "support/Error.h"

namespace mirel {

// What the user's own organisation of the library (labels, folders, rules, highlights) does not allow.
class OrganizationError : public Error
{
public:
    enum class Case {
        invalidName,
        folderCycle,
        // The label or the folder of a rule is gone.
        missingTarget
    };

    explicit OrganizationError(Case errorCase);

    [[nodiscard]] Case errorCase() const { return m_case; }
    [[nodiscard]] QString description() const override;

    friend bool operator==(const OrganizationError& a, const OrganizationError& b)
    {
        return a.m_case == b.m_case;
    }

private:
    Case m_case;
};

} // namespace mirel
