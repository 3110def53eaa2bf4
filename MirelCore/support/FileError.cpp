#include "support/FileError.h"

#include <system_error>

namespace mirel {

FileError::FileError(QString path, int number)
    : m_path(std::move(path))
    , m_number(number)
{
}

QString FileError::description() const
{
    const std::string reason = std::generic_category().message(m_number);
    return QStringLiteral("“%1” could not be created or opened: %2.")
        .arg(m_path, QString::fromStdString(reason));
}

} // namespace mirel
