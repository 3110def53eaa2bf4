#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace mirel::simulator {

// A JSON string as X writes it: characters above U+FFFF as pairs of escapes, the others as they are.
[[nodiscard]] QByteArray jsonString(QStringView text);

// A JSON array of ready elements.
[[nodiscard]] QByteArray jsonArray(const QList<QByteArray>& elements);

// Writes a JSON object key by key. Text, not a tree: key order, numbers such as 1.0 and integers of any
// size come out as they were put in.
class JSONObjectText
{
public:
    JSONObjectText& raw(QByteArrayView key, const QByteArray& json);
    JSONObjectText& text(QByteArrayView key, QStringView value) { return raw(key, jsonString(value)); }
    JSONObjectText& number(QByteArrayView key, qint64 value) { return raw(key, QByteArray::number(value)); }
    JSONObjectText& flag(QByteArrayView key, bool value) { return raw(key, value ? "true" : "false"); }

    [[nodiscard]] bool isEmpty() const { return m_members.isEmpty(); }
    [[nodiscard]] QByteArray json() const { return '{' + m_members + '}'; }

private:
    QByteArray m_members;
};

} // namespace mirel::simulator
