#include "support/JSONCoding.h"

namespace mirel {

JSONCodingError::JSONCodingError(QString key, QString problem)
    : m_key(std::move(key))
    , m_problem(std::move(problem))
{
}

QString JSONCodingError::description() const
{
    if (m_isWholeText)
        return m_problem;
    if (m_key.isEmpty())
        return QStringLiteral("The JSON text %1.").arg(m_problem);
    return QStringLiteral("The JSON value “%1” %2.").arg(m_key, m_problem);
}

JSONCodingError JSONCodingError::within(const QString& outerKey) const
{
    JSONCodingError error = *this;
    error.m_key = m_key.isEmpty() ? outerKey : outerKey + u'.' + m_key;
    return error;
}

JSONCodingError JSONCodingError::withText(const QString& text)
{
    JSONCodingError error({}, text);
    error.m_isWholeText = true;
    return error;
}

namespace detail {

namespace {

JSONCodingError wrongType(const char* expected)
{
    return {{}, QStringLiteral("is not %1").arg(QLatin1StringView(expected))};
}

} // namespace

JSONCodingError missingKey(const char* key)
{
    return {QString::fromLatin1(key), QStringLiteral("is missing")};
}

QString stringFromJSON(const QJsonValue& json)
{
    if (!json.isString())
        throw wrongType("a text");
    return json.toString();
}

QByteArray utf8FromJSON(const QJsonValue& json)
{
    return stringFromJSON(json).toUtf8();
}

qint64 integerFromJSON(const QJsonValue& json)
{
    // toInteger returns its default when the number is no whole number in range; two defaults tell
    // that from a number that equals one of them.
    if (!json.isDouble() || (json.toInteger(0) == 0 && json.toInteger(1) == 1))
        throw wrongType("a whole number of 64 bits");
    return json.toInteger();
}

double doubleFromJSON(const QJsonValue& json)
{
    if (!json.isDouble())
        throw wrongType("a number");
    return json.toDouble();
}

bool boolFromJSON(const QJsonValue& json)
{
    if (!json.isBool())
        throw wrongType("true or false");
    return json.toBool();
}

QUrl urlFromJSON(const QJsonValue& json)
{
    if (const auto url = parseURL(stringFromJSON(json)))
        return *url;
    throw wrongType("a URL");
}

QJsonObject objectFromJSON(const QJsonValue& json)
{
    if (!json.isObject())
        throw wrongType("an object");
    return json.toObject();
}

QJsonArray arrayFromJSON(const QJsonValue& json)
{
    if (!json.isArray())
        throw wrongType("an array");
    return json.toArray();
}

} // namespace detail

QJsonValue parseJSON(const QByteArray& utf8)
{
    // QJsonDocument takes only objects and arrays at the top; inside an array any value is welcome.
    QJsonParseError error;
    const QJsonArray array = QJsonDocument::fromJson('[' + utf8 + ']', &error).array();
    if (error.error != QJsonParseError::NoError)
        throw JSONCodingError({}, QStringLiteral("is not valid: %1").arg(error.errorString()));
    if (array.size() != 1)
        throw JSONCodingError({}, QStringLiteral("does not hold exactly one value"));
    return array.first();
}

QByteArray writeJSON(const QJsonValue& json)
{
    if (json.isObject())
        return QJsonDocument(json.toObject()).toJson(QJsonDocument::Compact);
    if (json.isArray())
        return QJsonDocument(json.toArray()).toJson(QJsonDocument::Compact);
    const QByteArray wrapped = QJsonDocument(QJsonArray{json}).toJson(QJsonDocument::Compact);
    return wrapped.sliced(1, wrapped.size() - 2);
}

} // namespace mirel
