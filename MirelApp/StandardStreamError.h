#pragma once

#include "support/Error.h"

namespace mirel {

// A standard stream of the process that could not be read or written.
class StandardStreamError : public Error
{
public:
    enum class Case { unreadableInput, unwritableOutput };

    // `reason` is the platform's own text.
    StandardStreamError(Case errorCase, QString reason);

    [[nodiscard]] QString description() const override;

private:
    Case m_case;
    QString m_reason;
};

} // namespace mirel
