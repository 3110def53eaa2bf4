#include "mirelctl/CommandError.h"

namespace mirel {

CommandError::CommandError(QString sentence)
    : m_sentence(std::move(sentence))
{
}

QString CommandError::description() const
{
    return m_sentence;
}

} // namespace mirel
