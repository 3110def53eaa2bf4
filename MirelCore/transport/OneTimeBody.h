#pragma once

#include <QIODevice>

namespace mirel {

// The body of a request that can be sent only once. Qt sends a request again by itself when a connection
// ends without an answer; it cannot do so with a body that it cannot rewind, and so nothing that changes
// something on a server happens twice.
class OneTimeBody : public QIODevice
{
public:
    explicit OneTimeBody(QByteArray bytes, QObject* parent = nullptr);

    [[nodiscard]] bool isSequential() const override;
    [[nodiscard]] qint64 bytesAvailable() const override;
    [[nodiscard]] bool atEnd() const override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    QByteArray m_bytes;
    qsizetype m_position = 0;
};

} // namespace mirel
