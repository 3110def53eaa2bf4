#pragma once

#include "support/Instant.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace mirel {

// A value read from a row: NULL (any other type counts as that), an integer, a double or a text in UTF-8.
using SQLiteColumn = std::variant<std::monostate, qint64, double, QByteArray>;

// One row of a result. Reads are by column name and never fail: a missing column or one of another type
// reads as absent. Of two columns with one name the later wins.
class SQLiteRow
{
public:
    void append(QByteArray name, SQLiteColumn column);

    // NULL when there is no such column.
    [[nodiscard]] const SQLiteColumn& column(QByteArrayView name) const;

    [[nodiscard]] std::optional<qint64> integer(QByteArrayView name) const;
    [[nodiscard]] std::optional<QString> text(QByteArrayView name) const;
    // The same text, as it is stored.
    [[nodiscard]] std::optional<QByteArray> utf8(QByteArrayView name) const;
    // An integer column is converted.
    [[nodiscard]] std::optional<double> number(QByteArrayView name) const;
    // A number of seconds since 1970.
    [[nodiscard]] std::optional<Instant> instant(QByteArrayView name) const;
    // True only for the integer 1.
    [[nodiscard]] bool boolean(QByteArrayView name) const;

private:
    std::vector<std::pair<QByteArray, SQLiteColumn>> m_columns;
};

} // namespace mirel
