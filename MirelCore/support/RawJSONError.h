#pragma once

#include "support/Error.h"

namespace mirel {

// A text that is not JSON, or a JSON value that is not what its reader needs.
class RawJSONError : public Error
{
public:
    // `problem` is a whole sentence.
    explicit RawJSONError(QString problem);

    // The problem, preceded by where it is ("data.0.id") once that is known.
    [[nodiscard]] QString description() const override;

    // The same problem, seen from the value that holds this one under `outerKey`.
    [[nodiscard]] RawJSONError within(const QString& outerKey) const;

private:
    QString m_path;
    QString m_problem;
};

} // namespace mirel
