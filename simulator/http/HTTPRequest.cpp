#include "simulator/http/HTTPRequest.h"

namespace mirel::simulator {

std::optional<QByteArray> HTTPRequest::header(QByteArrayView name) const
{
    for (const auto& [key, value] : headers) {
        if (key == name)
            return value;
    }
    return std::nullopt;
}

QList<std::pair<QString, QString>> HTTPRequest::queryItems() const
{
    const QUrlQuery items(QString::fromUtf8(query));
    QList<std::pair<QString, QString>> result;
    for (const auto& [key, value] : items.queryItems(QUrl::FullyDecoded))
        result.append({key, value});
    return result;
}

QList<std::pair<QString, QString>> HTTPRequest::formFields() const
{
    QList<std::pair<QString, QString>> result;
    for (const QByteArray& field : body.split('&')) {
        if (field.isEmpty())
            continue;
        const qsizetype equals = field.indexOf('=');
        const auto decoded = [](QByteArray text) {
            return QString::fromUtf8(QByteArray::fromPercentEncoding(text.replace('+', ' ')));
        };
        result.append({decoded(equals < 0 ? field : field.left(equals)),
                       equals < 0 ? QString() : decoded(field.mid(equals + 1))});
    }
    return result;
}

std::optional<QString> firstValue(const QList<std::pair<QString, QString>>& items, QStringView name)
{
    for (const auto& [key, value] : items) {
        if (key == name)
            return value;
    }
    return std::nullopt;
}

} // namespace mirel::simulator
