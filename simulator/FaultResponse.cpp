#include "simulator/FaultResponse.h"

#include "simulator/posts/JSONText.h"

#include <cmath>

namespace mirel::simulator {

namespace {

QString titleOf(int status)
{
    switch (status) {
    case 400:
        return QStringLiteral("Invalid Request");
    case 401:
        return QStringLiteral("Unauthorized");
    case 402:
        return QStringLiteral("CreditsDepleted");
    case 403:
        return QStringLiteral("Forbidden");
    case 404:
        return QStringLiteral("Not Found Error");
    case 429:
        return QStringLiteral("Too Many Requests");
    case 503:
        return QStringLiteral("Service Unavailable");
    default:
        return QStringLiteral("Internal Server Error");
    }
}

QString detailOf(int status)
{
    switch (status) {
    case 402:
        return QStringLiteral("Your enrolled account does not have any credits to fulfill this request.");
    case 403:
        return QStringLiteral("You are not permitted to perform this action.");
    default:
        return titleOf(status);
    }
}

HTTPResponse problemBody(int status)
{
    HTTPResponse response = problem(status, titleOf(status), detailOf(status));
    if (status == 403) {
        response.body.chop(1);
        response.body += ",\"reason\":\"client-not-enrolled\"}";
    }
    return response;
}

HTTPResponse bodyOf(Fault::Body body, int status)
{
    switch (body) {
    case Fault::Body::Problem:
        return problemBody(status);
    case Fault::Body::Errors:
        return {status,
                "application/json; charset=utf-8",
                {},
                "{\"errors\":[{\"code\":88,\"message\":" + jsonString(titleOf(status)) + "}]}"};
    case Fault::Body::Text:
        return {status,
                "text/plain; charset=utf-8",
                {},
                status == 429 ? QByteArray("Rate limit exceeded") : titleOf(status).toUtf8()};
    case Fault::Body::HTML:
        return {status,
                "text/html; charset=utf-8",
                {},
                "<!DOCTYPE html><html><head><title>" + titleOf(status).toUtf8() +
                    "</title></head><body><h1>Something went wrong</h1></body></html>"};
    case Fault::Body::Binary:
        return {status, "application/octet-stream", {}, QByteArray::fromHex("fffe80c0c1f5a0ed00ff")};
    case Fault::Body::Empty:
        return {status, "text/plain", {}, {}};
    }
    Q_UNREACHABLE();
}

} // namespace

HTTPResponse problem(int status, const QString& title, const QString& detail, const QString& type)
{
    JSONObjectText body;
    body.text("title", title).text("type", type).number("status", status).text("detail", detail);
    return {status, "application/problem+json; charset=utf-8", {}, body.json()};
}

HTTPResponse responseOf(const Fault& fault, Instant now)
{
    HTTPResponse response = bodyOf(fault.body, fault.status);
    if (fault.customBody)
        response.body = *fault.customBody;
    if (fault.action == Fault::Action::Redirect)
        response.headers.append({"location", fault.location.toUtf8()});
    if (fault.rateLimitReset)
        response.headers.append({"x-rate-limit-reset", *fault.rateLimitReset});
    if (fault.rateLimitResetInSeconds) {
        const auto seconds = static_cast<qint64>(std::floor(now.secondsSince1970()));
        response.headers.append(
            {"x-rate-limit-reset", QByteArray::number(seconds + *fault.rateLimitResetInSeconds)});
    }
    return response;
}

} // namespace mirel::simulator
