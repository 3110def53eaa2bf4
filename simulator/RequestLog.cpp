#include "simulator/RequestLog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace mirel::simulator {

namespace {

QJsonArray pairs(const QList<std::pair<QString, QString>>& list)
{
    QJsonArray array;
    for (const auto& [name, value] : list)
        array.append(QJsonArray{name, value});
    return array;
}

QJsonObject json(const RecordedRequest& request)
{
    return {{QStringLiteral("number"), request.number},
            {QStringLiteral("method"), request.method},
            {QStringLiteral("path"), request.path},
            {QStringLiteral("query"), request.query},
            {QStringLiteral("queryItems"), pairs(request.queryItems)},
            {QStringLiteral("headers"), pairs(request.headers)},
            {QStringLiteral("body"), QString::fromUtf8(request.body)},
            {QStringLiteral("status"), request.status}};
}

} // namespace

void RequestLog::begin(const HTTPRequest& request)
{
    RecordedRequest record{static_cast<int>(m_requests.size()) + 1,
                           QString::fromLatin1(request.method),
                           QString::fromLatin1(request.path),
                           QString::fromLatin1(request.query),
                           request.queryItems(),
                           {},
                           request.body,
                           0};
    for (const auto& [name, value] : request.headers)
        record.headers.append({QString::fromLatin1(name), QString::fromUtf8(value)});
    m_requests.append(record);
}

void RequestLog::finish(int status)
{
    m_requests.last().status = status;
}

void RequestLog::addProblem(const QString& problem)
{
    const RecordedRequest& request = m_requests.last();
    m_problems.append(QStringLiteral("%1 %2: %3").arg(request.method, request.path, problem));
}

void RequestLog::clear()
{
    m_requests.clear();
    m_problems.clear();
}

QByteArray RequestLog::requestsJSON() const
{
    QJsonArray array;
    for (const RecordedRequest& request : m_requests)
        array.append(json(request));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QByteArray RequestLog::problemsJSON() const
{
    return QJsonDocument(QJsonArray::fromStringList(m_problems)).toJson(QJsonDocument::Compact);
}

} // namespace mirel::simulator
