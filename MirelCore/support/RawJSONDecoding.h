#pragma once

#include "support/JSONCoding.h"
#include "support/RawJSON.h"

// Reads records, as JSONCoding.h describes them, out of raw JSON: absent and null keys of optional fields
// read as absent, every other field is required, unknown keys are ignored.

namespace mirel {

// A type that reads itself out of raw JSON: a static member fromRawJSON, which throws RawJSONError.
template <typename T>
concept RawJSONReadable = requires(const RawJSONValue& value)
{
    {
        T::fromRawJSON(value)
        } -> std::same_as<T>;
};

// What `value` holds. Throws RawJSONError.
template <typename T>
[[nodiscard]] T fromRawJSON(const RawJSONValue& value);

namespace detail {

template <typename Record, typename Value>
void readField(Record& record, const RawJSONValue& object, const JSONField<Record, Value>& field)
{
    const auto value = object.member(field.key);
    try {
        if constexpr (IsOptional<Value>::value) {
            if (value && !value->isNull())
                record.*field.member = fromRawJSON<typename Value::value_type>(*value);
        } else {
            if (!value)
                throw RawJSONError(QStringLiteral("The JSON value is missing."));
            record.*field.member = fromRawJSON<Value>(*value);
        }
    } catch (const RawJSONError& error) {
        throw error.within(QString::fromLatin1(field.key));
    }
}

template <typename Record>
Record readRecord(const RawJSONValue& value)
{
    if (!value.isObject())
        throw RawJSONError(QStringLiteral("The JSON value is not an object."));
    Record record{};
    std::apply([&](const auto&... fields) { (readField(record, value, fields), ...); }, Record::jsonFields());
    return record;
}

template <typename Element>
QList<Element> readList(const RawJSONValue& value)
{
    if (!value.isArray())
        throw RawJSONError(QStringLiteral("The JSON value is not an array."));
    QList<Element> list;
    for (const RawJSONValue element : value.children()) {
        try {
            list.append(fromRawJSON<Element>(element));
        } catch (const RawJSONError& error) {
            throw error.within(QString::number(list.size()));
        }
    }
    return list;
}

} // namespace detail

template <typename T>
T fromRawJSON(const RawJSONValue& value)
{
    if constexpr (RawJSONReadable<T>)
        return T::fromRawJSON(value);
    else if constexpr (JSONRecord<T>)
        return detail::readRecord<T>(value);
    else if constexpr (detail::IsList<T>::value)
        return detail::readList<typename T::value_type>(value);
    else if constexpr (std::is_same_v<T, QString>)
        return value.string();
    else {
        static_assert(std::is_same_v<T, qint64>, "this type is not read from raw JSON");
        return value.integer();
    }
}

// The record that a JSON text holds. Throws RawJSONError.
template <typename T>
[[nodiscard]] T decodeRawJSON(const QByteArray& utf8)
{
    return fromRawJSON<T>(RawJSON::parse(utf8).root());
}

} // namespace mirel
