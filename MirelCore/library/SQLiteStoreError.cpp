#include "library/SQLiteStoreError.h"

namespace mirel {

SQLiteStoreError::SQLiteStoreError(Case errorCase, QString message)
    : m_case(errorCase)
    , m_message(std::move(message))
{
}

SQLiteStoreError SQLiteStoreError::bookmarkNotFound()
{
    return {Case::notFound, QStringLiteral("The bookmark no longer exists.")};
}

QString SQLiteStoreError::description() const
{
    switch (m_case) {
    case Case::open:
        return QStringLiteral("Could not open the local library: ") + m_message;
    case Case::execute:
        return QStringLiteral("Local library command failed: ") + m_message;
    case Case::prepare:
        return QStringLiteral("Local library query could not be prepared: ") + m_message;
    case Case::bind:
        return QStringLiteral("Local library value could not be bound: ") + m_message;
    case Case::notFound:
        return m_message;
    }
    Q_UNREACHABLE();
}

} // namespace mirel
