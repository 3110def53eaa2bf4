#pragma once

#include "support/Error.h"
#include "support/Instant.h"
#include "support/WebURL.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>

#include <optional>
#include <tuple>
#include <utility>

// The JSON form of records. A record lists its fields once, and both directions follow from that:
//
//     struct Pair {
//         QString name;
//         std::optional<qint64> count;
//         static constexpr auto jsonFields()
//         {
//             return std::tuple{jsonField("name", &Pair::name), jsonField("count", &Pair::count)};
//         }
//     };
//
// An absent optional is left out; a missing or null key reads as absent. Every other field is required.
// An Instant is a number of seconds since 2001, a QUrl its absolute string. An enumeration is one of the
// texts that its rawValues() function, found by its namespace, lists. Beside it, retiredRawValues() may list
// texts that are read and never written, and unknownRawValueText() may give the error's whole description.

namespace mirel {

// A JSON text that does not hold what a record needs. Names the key.
class JSONCodingError : public Error
{
public:
    // `key` is the path of the offending value ("media.0.kind"), empty for the whole text.
    JSONCodingError(QString key, QString problem);

    [[nodiscard]] QString description() const override;
    [[nodiscard]] const QString& key() const { return m_key; }

    // The same problem, seen from the value that holds this one under `outerKey`.
    [[nodiscard]] JSONCodingError within(const QString& outerKey) const;

    // An error whose description is `text` alone, wherever the value stands.
    [[nodiscard]] static JSONCodingError withText(const QString& text);

private:
    QString m_key;
    QString m_problem;
    bool m_isWholeText = false;
};

template <typename Record, typename Value>
struct JSONField
{
    const char* key;
    Value Record::*member;
};

template <typename Record, typename Value>
constexpr JSONField<Record, Value> jsonField(const char* key, Value Record::*member)
{
    return {key, member};
}

// One row of the table that rawValues() of an enumeration returns.
template <typename Enumeration>
struct RawValue
{
    Enumeration value;
    QLatin1StringView text;
};

// Clang deduces nothing for aggregates before version 17.
template <typename Enumeration>
RawValue(Enumeration, QLatin1StringView) -> RawValue<Enumeration>;

template <typename T>
concept JSONRecord = requires
{
    T::jsonFields();
};

template <typename T>
concept RawRepresentable = std::is_enum_v<T> && requires(T value)
{
    rawValues(value);
};

template <typename T>
concept HasRetiredRawValues = requires(T value)
{
    retiredRawValues(value);
};

template <typename T>
concept HasUnknownRawValueText = requires(T value, const QString& text)
{
    unknownRawValueText(value, text);
};

// A type with a JSON form of its own: fromJSON and toJSON, members.
template <typename T>
concept JSONRepresentable = requires(const T& value, const QJsonValue& json)
{
    {
        T::fromJSON(json)
        } -> std::same_as<T>;
    {
        value.toJSON()
        } -> std::same_as<QJsonValue>;
};

// The text of an enumeration's case.
template <RawRepresentable T>
[[nodiscard]] QString rawValue(T value)
{
    for (const auto& row : rawValues(T{})) {
        if (row.value == value)
            return row.text;
    }
    Q_UNREACHABLE();
}

// The case with that text, or absent.
template <RawRepresentable T>
[[nodiscard]] std::optional<T> fromRawValue(QStringView text)
{
    for (const auto& row : rawValues(T{})) {
        if (row.text == text)
            return row.value;
    }
    return std::nullopt;
}

namespace detail {

template <typename T>
struct IsOptional : std::false_type
{
};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type
{
};

template <typename T>
struct IsList : std::false_type
{
};
template <typename T>
struct IsList<QList<T>> : std::true_type
{
};

[[nodiscard]] QString stringFromJSON(const QJsonValue& json);
[[nodiscard]] QByteArray utf8FromJSON(const QJsonValue& json);
[[nodiscard]] qint64 integerFromJSON(const QJsonValue& json);
[[nodiscard]] double doubleFromJSON(const QJsonValue& json);
[[nodiscard]] bool boolFromJSON(const QJsonValue& json);
[[nodiscard]] QUrl urlFromJSON(const QJsonValue& json);
[[nodiscard]] QJsonObject objectFromJSON(const QJsonValue& json);
[[nodiscard]] QJsonArray arrayFromJSON(const QJsonValue& json);
[[nodiscard]] JSONCodingError missingKey(const char* key);

} // namespace detail

// The value that `json` holds. Throws JSONCodingError.
template <typename T>
[[nodiscard]] T fromJSON(const QJsonValue& json);

// The JSON form of `value`.
template <typename T>
[[nodiscard]] QJsonValue toJSON(const T& value);

namespace detail {

template <typename Record, typename Value>
void decodeField(Record& record, const QJsonObject& object, const JSONField<Record, Value>& field)
{
    const QJsonValue json = object.value(QLatin1StringView(field.key));
    try {
        if constexpr (IsOptional<Value>::value) {
            if (!json.isUndefined() && !json.isNull())
                record.*field.member = fromJSON<typename Value::value_type>(json);
        } else {
            if (json.isUndefined())
                throw missingKey(field.key);
            record.*field.member = fromJSON<Value>(json);
        }
    } catch (const JSONCodingError& error) {
        if (error.key() == QLatin1StringView(field.key) && json.isUndefined())
            throw;
        throw error.within(QString::fromLatin1(field.key));
    }
}

template <typename Record, typename Value>
void encodeField(const Record& record, QJsonObject& object, const JSONField<Record, Value>& field)
{
    if constexpr (IsOptional<Value>::value) {
        if (record.*field.member)
            object.insert(QLatin1StringView(field.key), toJSON(*(record.*field.member)));
    } else {
        object.insert(QLatin1StringView(field.key), toJSON(record.*field.member));
    }
}

template <typename Record>
Record recordFromJSON(const QJsonValue& json)
{
    const QJsonObject object = objectFromJSON(json);
    Record record{};
    std::apply([&](const auto&... fields) { (decodeField(record, object, fields), ...); },
               Record::jsonFields());
    return record;
}

template <typename Element>
QList<Element> listFromJSON(const QJsonValue& json)
{
    const QJsonArray array = arrayFromJSON(json);
    QList<Element> list;
    list.reserve(array.size());
    for (qsizetype i = 0; i < array.size(); ++i) {
        try {
            list.append(fromJSON<Element>(array.at(i)));
        } catch (const JSONCodingError& error) {
            throw error.within(QString::number(i));
        }
    }
    return list;
}

template <typename Enumeration>
Enumeration enumerationFromJSON(const QJsonValue& json)
{
    const QString text = stringFromJSON(json);
    if (const auto value = fromRawValue<Enumeration>(text))
        return *value;
    if constexpr (HasRetiredRawValues<Enumeration>) {
        for (const auto& row : retiredRawValues(Enumeration{})) {
            if (row.text == text)
                return row.value;
        }
    }
    if constexpr (HasUnknownRawValueText<Enumeration>)
        throw JSONCodingError::withText(unknownRawValueText(Enumeration{}, text));
    throw JSONCodingError({}, QStringLiteral("has the unknown value “%1”").arg(text));
}

} // namespace detail

template <typename T>
T fromJSON(const QJsonValue& json)
{
    if constexpr (JSONRepresentable<T>)
        return T::fromJSON(json);
    else if constexpr (JSONRecord<T>)
        return detail::recordFromJSON<T>(json);
    else if constexpr (RawRepresentable<T>)
        return detail::enumerationFromJSON<T>(json);
    else if constexpr (detail::IsList<T>::value)
        return detail::listFromJSON<typename T::value_type>(json);
    else if constexpr (detail::IsOptional<T>::value)
        return json.isNull() ? T{} : T{fromJSON<typename T::value_type>(json)};
    else if constexpr (std::is_same_v<T, QString>)
        return detail::stringFromJSON(json);
    else if constexpr (std::is_same_v<T, QByteArray>)
        return detail::utf8FromJSON(json);
    else if constexpr (std::is_same_v<T, bool>)
        return detail::boolFromJSON(json);
    else if constexpr (std::is_same_v<T, qint64>)
        return detail::integerFromJSON(json);
    else if constexpr (std::is_same_v<T, double>)
        return detail::doubleFromJSON(json);
    else if constexpr (std::is_same_v<T, QUrl>)
        return detail::urlFromJSON(json);
    else {
        static_assert(std::is_same_v<T, Instant>, "this type has no JSON form");
        return Instant::fromSecondsSince2001(detail::doubleFromJSON(json));
    }
}

template <typename T>
QJsonValue toJSON(const T& value)
{
    if constexpr (JSONRepresentable<T>) {
        return value.toJSON();
    } else if constexpr (JSONRecord<T>) {
        QJsonObject object;
        std::apply([&](const auto&... fields) { (detail::encodeField(value, object, fields), ...); },
                   T::jsonFields());
        return object;
    } else if constexpr (RawRepresentable<T>) {
        return rawValue(value);
    } else if constexpr (detail::IsList<T>::value) {
        QJsonArray array;
        for (const auto& element : value)
            array.append(toJSON(element));
        return array;
    } else if constexpr (detail::IsOptional<T>::value) {
        return value ? toJSON(*value) : QJsonValue(QJsonValue::Null);
    } else if constexpr (std::is_same_v<T, QByteArray>) {
        return QString::fromUtf8(value);
    } else if constexpr (std::is_same_v<T, QUrl>) {
        return absoluteString(value);
    } else if constexpr (std::is_same_v<T, Instant>) {
        return value.secondsSince2001();
    } else {
        return QJsonValue(value);
    }
}

// The value of `object` under `key`, or `fallback` when there is none or it is null. Throws JSONCodingError,
// which names the key.
template <typename T>
[[nodiscard]] T valueOr(const QJsonObject& object, const char* key, T fallback)
{
    const QJsonValue json = object.value(QLatin1StringView(key));
    if (json.isUndefined() || json.isNull())
        return fallback;
    try {
        return fromJSON<T>(json);
    } catch (const JSONCodingError& error) {
        throw error.within(QString::fromLatin1(key));
    }
}

// Any JSON text, also a bare value such as "null". Throws JSONCodingError when it is not JSON.
[[nodiscard]] QJsonValue parseJSON(const QByteArray& utf8);

// Compact JSON in UTF-8, with sorted keys.
[[nodiscard]] QByteArray writeJSON(const QJsonValue& json);

// The record that a JSON text holds. Throws JSONCodingError.
template <typename T>
[[nodiscard]] T decodeJSON(const QByteArray& utf8)
{
    return fromJSON<T>(parseJSON(utf8));
}

// The JSON text of `value`, compact and with sorted keys.
template <typename T>
[[nodiscard]] QByteArray encodeJSON(const T& value)
{
    return writeJSON(toJSON(value));
}

} // namespace mirel
