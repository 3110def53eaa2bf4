#pragma once

#include "support/Instant.h"

#include <QByteArray>
#include <QString>

#include <concepts>
#include <optional>
#include <variant>

namespace mirel {

// What the library keeps of a text: all before its first NUL, with a question mark for half a surrogate pair,
// of which UTF-8 has none.
[[nodiscard]] inline QString storedText(const QString& text)
{
    return QString::fromUtf8(text.left(text.indexOf(QChar::Null)).toUtf8());
}

// A value to bind. Texts are UTF-8 and end before their first NUL.
class SQLiteValue
{
public:
    using Storage = std::variant<std::monostate, qint64, double, QByteArray>;

    SQLiteValue() = default; // NULL
    SQLiteValue(std::nullptr_t) {}
    SQLiteValue(std::integral auto value)
        : m_storage(static_cast<qint64>(value))
    {
    }
    SQLiteValue(double value)
        : m_storage(value)
    {
    }
    SQLiteValue(const QString& value)
        : SQLiteValue(value.toUtf8())
    {
    }
    SQLiteValue(QByteArray utf8)
        : m_storage(std::move(utf8))
    {
        auto& text = *std::get_if<QByteArray>(&m_storage);
        if (const qsizetype nul = text.indexOf('\0'); nul >= 0)
            text.truncate(nul);
    }
    // Seconds since 1970, as every date column holds them.
    SQLiteValue(Instant value)
        : m_storage(value.secondsSince1970())
    {
    }
    template <typename T>
    SQLiteValue(const std::optional<T>& value)
    {
        if (value)
            m_storage = SQLiteValue(*value).m_storage;
    }

    [[nodiscard]] const Storage& storage() const { return m_storage; }

private:
    Storage m_storage;
};

} // namespace mirel
