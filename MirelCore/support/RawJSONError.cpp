#include "support/RawJSONError.h"

namespace mirel {

RawJSONError::RawJSONError(QString problem)
    : m_problem(std::move(problem))
{
}

QString RawJSONError::description() const
{
    return m_path.isEmpty() ? m_problem : m_path + QStringLiteral(": ") + m_problem;
}

RawJSONError RawJSONError::within(const QString& outerKey) const
{
    RawJSONError outer(m_problem);
    outer.m_path = m_path.isEmpty() ? outerKey : outerKey + u'.' + m_path;
    return outer;
}

} // namespace mirel
