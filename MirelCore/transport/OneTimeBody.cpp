#include "transport/OneTimeBody.h"

#include <cstring>

namespace mirel {

OneTimeBody::OneTimeBody(QByteArray bytes, QObject* parent)
    : QIODevice(parent)
    , m_bytes(std::move(bytes))
{
    open(QIODevice::ReadOnly);
}

bool OneTimeBody::isSequential() const
{
    return true;
}

qint64 OneTimeBody::bytesAvailable() const
{
    return m_bytes.size() - m_position + QIODevice::bytesAvailable();
}

bool OneTimeBody::atEnd() const
{
    return !m_isSpent && bytesAvailable() == 0;
}

bool OneTimeBody::reset()
{
    m_isSpent = true;
    return true;
}

qint64 OneTimeBody::readData(char* data, qint64 maxSize)
{
    if (m_isSpent)
        return -1;
    const qsizetype size = std::min<qsizetype>(maxSize, m_bytes.size() - m_position);
    if (size == 0)
        return -1;
    std::memcpy(data, m_bytes.constData() + m_position, static_cast<std::size_t>(size));
    m_position += size;
    return size;
}

qint64 OneTimeBody::writeData(const char*, qint64)
{
    return -1;
}

} // namespace mirel
