#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace mirel {

// One request that the simulator received.
struct RecordedRequest
{
    // Counted from 1 since the record was last cleared.
    int number = 0;
    QString method;
    // Percent-encoded, as received.
    QString path;
    // Percent-encoded, as received, without the question mark.
    QString query;
    // The query, decoded, in its order.
    QList<std::pair<QString, QString>> queryItems;
    // In their order, names in lower case.
    QList<std::pair<QString, QString>> headers;
    QByteArray body;
    // Of the answer; 0 when none was sent.
    int status = 0;

    // The first query item of that name, or absent.
    [[nodiscard]] std::optional<QString> queryItem(QStringView name) const;
    // The first header of that name (lower case), or absent.
    [[nodiscard]] std::optional<QString> header(QStringView name) const;
};

} // namespace mirel
