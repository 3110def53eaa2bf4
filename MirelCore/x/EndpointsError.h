#pragma once

#include "support/Error.h"

namespace mirel {

// An environment variable that would send the user's tokens to a place which is not this computer.
class EndpointsError : public Error
{
public:
    explicit EndpointsError(QString variable)
        : m_variable(std::move(variable))
    {
    }

    [[nodiscard]] QString description() const override;

private:
    QString m_variable;
};

} // namespace mirel
