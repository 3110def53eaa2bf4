#pragma once

#include "support/Error.h"

namespace mirel {

// The window could not be built.
class ScreensError : public Error
{
public:
    explicit ScreensError(QString reason)
        : m_reason(std::move(reason))
    {
    }

    [[nodiscard]] QString description() const override
    {
        return QStringLiteral("The window could not be built: %1").arg(m_reason);
    }

private:
    QString m_reason;
};

} // namespace mirel
