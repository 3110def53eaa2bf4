#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrlQuery>

#include <optional>
#include <utility>

namespace mirel::simulator {

// One request as it came over the wire.
struct HTTPRequest
{
    QByteArray method;
    // Percent-encoded, without the query.
    QByteArray path;
    // Percent-encoded, without the question mark.
    QByteArray query;
    // In the order of arrival, names in lower case.
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;

    // The first header of that name (lower case), or absent.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;

    // The query items in their order, decoded.
    [[nodiscard]] QList<std::pair<QString, QString>> queryItems() const;

    // The fields of a form-encoded body, decoded. "+" is a blank there.
    [[nodiscard]] QList<std::pair<QString, QString>> formFields() const;
};

// The value of the first item of that name, or absent.
[[nodiscard]] std::optional<QString> firstValue(const QList<std::pair<QString, QString>>& items,
                                                QStringView name);

} // namespace mirel::simulator
