#pragma once

#include <QIODevice>

namespace mirel {

// The body of a request that is sent only once. Qt sends a request again by itself when a connection ends
// without an answer; the body then breaks off that second attempt, so that nothing that changes something on
// a server happens twice.
class OneTimeBody : public QIODevice
{
public:
    explicit OneTimeBody(QByteArray bytes, QObject* parent = nullptr);

    [[nodiscard]] bool isSequential() const override;
    [[nodiscard]] qint64 bytesAvailable() const override;
    [[nodiscard]] bool atEnd() const override;
    // Qt also rewinds the body when the answer is a 307 or 308, which it does not follow itself. So this
    // succeeds, and reading fails from then on.
    bool reset() override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    QByteArray m_bytes;
    qsizetype m_position = 0;
    bool m_isSpent = false;
};

} // namespace mirel
