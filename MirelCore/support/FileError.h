#pragma once

#include "support/Error.h"

namespace mirel {

// The platform's own report of a failed file operation.
class FileError : public Error
{
public:
    // `number` is the platform's error number (errno).
    FileError(QString path, int number);

    [[nodiscard]] QString description() const override;
    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] int number() const { return m_number; }

private:
    QString m_path;
    int m_number;
};

} // namespace mirel
