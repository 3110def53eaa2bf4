#include "presentation/RawJSONLookup.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace mirel::rawJSONLookup {

RawJSONValue emptyObject()
{
    static const RawJSON empty = RawJSON::parse("{}");
    return empty.root();
}

std::optional<RawJSONValue> valueAt(const RawJSONValue& value, Keys path)
{
    std::optional<RawJSONValue> found = value;
    for (const char* const key : path) {
        found = found->firstMember(key);
        if (!found)
            return std::nullopt;
    }
    return found;
}

std::optional<RawJSONValue> objectAt(const RawJSONValue& value, Keys path)
{
    const auto found = valueAt(value, path);
    return found && found->isObject() ? found : std::nullopt;
}

std::optional<QString> stringAt(const RawJSONValue& value, Keys path)
{
    const auto found = valueAt(value, path);
    return found ? found->stringIfAny() : std::nullopt;
}

RawJSONValue::Children elementsAt(const RawJSONValue& value, Keys path)
{
    const auto found = valueAt(value, path);
    return found && found->isArray() ? found->children() : emptyObject().children();
}

std::optional<QString> firstString(const RawJSONValue& value, Keys keys)
{
    for (const char* const key : keys) {
        if (const auto text = stringAt(value, {key}))
            return text;
    }
    return std::nullopt;
}

RawJSONValue::Children firstElements(const RawJSONValue& value, Keys keys)
{
    for (const char* const key : keys) {
        const auto found = value.firstMember(key);
        if (found && found->isArray())
            return found->children();
    }
    return emptyObject().children();
}

std::optional<QList<RawJSONValue>> firstObjects(const RawJSONValue& value, Keys keys)
{
    for (const char* const key : keys) {
        const auto found = value.firstMember(key);
        if (!found || !found->isArray())
            continue;
        QList<RawJSONValue> objects;
        for (const RawJSONValue element : found->children())
            objects.append(element);
        if (std::all_of(objects.begin(), objects.end(), [](const auto& it) { return it.isObject(); }))
            return objects;
    }
    return std::nullopt;
}

QList<RawJSONValue> uniqueMembers(const RawJSONValue& value)
{
    QList<RawJSONValue> members;
    if (!value.isObject())
        return members;
    QSet<QString> keys;
    for (const RawJSONValue member : value.children()) {
        const QString key = member.key();
        if (keys.contains(key))
            continue;
        keys.insert(key);
        members.append(member);
    }
    return members;
}

std::optional<qint64> integer(const QString& text)
{
    static const QRegularExpression digits(QStringLiteral("\\A[+-]?[0-9]+\\z"));
    if (!digits.match(text).hasMatch())
        return std::nullopt;
    bool fits = false;
    const qint64 number = text.toLongLong(&fits);
    return fits ? std::optional(number) : std::nullopt;
}

std::optional<qint64> integer(const std::optional<RawJSONValue>& value)
{
    if (!value)
        return std::nullopt;
    return value->isString() ? integer(value->string()) : value->integerPart();
}

} // namespace mirel::rawJSONLookup
