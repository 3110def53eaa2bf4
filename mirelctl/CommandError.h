#pragma once

#include "support/Error.h"

namespace mirel {

// Why a command could not be done, in one sentence for standard error.
class CommandError : public Error
{
public:
    explicit CommandError(QString sentence);

    [[nodiscard]] QString description() const override;

private:
    QString m_sentence;
};

} // namespace mirel
