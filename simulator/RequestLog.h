#pragma once

#include "simulator/RecordedRequest.h"
#include "simulator/http/HTTPRequest.h"

#include <QStringList>

namespace mirel::simulator {

// What was asked and what should not have been asked.
class RequestLog
{
public:
    void begin(const HTTPRequest& request);
    // Completes the request that was begun last.
    void finish(int status);
    // The request that was begun last should not have come.
    void addProblem(const QString& problem);
    void clear();

    [[nodiscard]] const QList<RecordedRequest>& requests() const { return m_requests; }
    // One sentence each: "GET /2/nothing: ...".
    [[nodiscard]] const QStringList& problems() const { return m_problems; }

    [[nodiscard]] QByteArray requestsJSON() const;
    [[nodiscard]] QByteArray problemsJSON() const;

private:
    QList<RecordedRequest> m_requests;
    QStringList m_problems;
};

} // namespace mirel::simulator
