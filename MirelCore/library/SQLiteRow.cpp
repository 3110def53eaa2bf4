#include "library/SQLiteRow.h"

#include <algorithm>

namespace mirel {

void SQLiteRow::append(QByteArray name, SQLiteColumn column)
{
    m_columns.emplace_back(std::move(name), std::move(column));
}

const SQLiteColumn& SQLiteRow::column(QByteArrayView name) const
{
    static const SQLiteColumn null;
    const auto found = std::find_if(m_columns.rbegin(), m_columns.rend(),
                                    [name](const auto& column) { return column.first == name; });
    return found == m_columns.rend() ? null : found->second;
}

std::optional<qint64> SQLiteRow::integer(QByteArrayView name) const
{
    if (const auto* value = std::get_if<qint64>(&column(name)))
        return *value;
    return std::nullopt;
}

std::optional<QString> SQLiteRow::text(QByteArrayView name) const
{
    if (const auto* value = std::get_if<QByteArray>(&column(name)))
        return QString::fromUtf8(*value);
    return std::nullopt;
}

std::optional<QByteArray> SQLiteRow::utf8(QByteArrayView name) const
{
    if (const auto* value = std::get_if<QByteArray>(&column(name)))
        return *value;
    return std::nullopt;
}

std::optional<double> SQLiteRow::number(QByteArrayView name) const
{
    if (const auto* value = std::get_if<double>(&column(name)))
        return *value;
    if (const auto whole = integer(name))
        return static_cast<double>(*whole);
    return std::nullopt;
}

std::optional<Instant> SQLiteRow::instant(QByteArrayView name) const
{
    if (const auto seconds = number(name))
        return Instant::fromSecondsSince1970(*seconds);
    return std::nullopt;
}

bool SQLiteRow::boolean(QByteArrayView name) const
{
    return integer(name) == 1;
}

} // namespace mirel
