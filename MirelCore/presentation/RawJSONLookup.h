#pragma once

#include "support/RawJSON.h"

#include <QList>

#include <initializer_list>

// Lenient looks into raw JSON: what is missing or of another type is absent. Of a repeated key the first
// value counts.
namespace mirel::rawJSONLookup {

using Keys = std::initializer_list<const char*>;

// An object without members.
[[nodiscard]] RawJSONValue emptyObject();

// The value that `path` leads to, key after key.
[[nodiscard]] std::optional<RawJSONValue> valueAt(const RawJSONValue& value, Keys path);

// The object that `path` leads to.
[[nodiscard]] std::optional<RawJSONValue> objectAt(const RawJSONValue& value, Keys path);

// The text that `path` leads to.
[[nodiscard]] std::optional<QString> stringAt(const RawJSONValue& value, Keys path);

// The elements of the array that `path` leads to, of any type; none when there is no array.
[[nodiscard]] RawJSONValue::Children elementsAt(const RawJSONValue& value, Keys path);

// The first text among the members `keys`.
[[nodiscard]] std::optional<QString> firstString(const RawJSONValue& value, Keys keys);

// The elements of the first array among the members `keys`.
[[nodiscard]] RawJSONValue::Children firstElements(const RawJSONValue& value, Keys keys);

// The elements of the first array among the members `keys` that holds objects alone.
[[nodiscard]] std::optional<QList<RawJSONValue>> firstObjects(const RawJSONValue& value, Keys keys);

// The values of an object, each key once, in the order of the text; of anything else none.
[[nodiscard]] QList<RawJSONValue> uniqueMembers(const RawJSONValue& value);

// The whole number that `text` writes in decimal digits, with an optional sign.
[[nodiscard]] std::optional<qint64> integer(const QString& text);

// The whole number in `value`: a number without its fraction, or a text of decimal digits.
[[nodiscard]] std::optional<qint64> integer(const std::optional<RawJSONValue>& value);

} // namespace mirel::rawJSONLookup
