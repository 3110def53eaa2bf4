#pragma once

#include <QByteArray>
#include <QList>

#include <utility>

namespace mirel::simulator {

// What the server answers, before it decides how to deliver it.
struct HTTPResponse
{
    int status = 200;
    QByteArray contentType = "application/json; charset=utf-8";
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
};

// How an answer reaches the client.
struct Delivery
{
    enum class Kind {
        Whole,
        // The connection ends without one byte of an answer.
        CutBeforeHeaders,
        // The head promises the whole body, `bytes` of it arrive, then the connection ends.
        CutInBody,
        // The connection stays open and silent.
        Stall,
        // As CutInBody, but the connection stays open and silent.
        StallInBody,
    };

    Kind kind = Kind::Whole;
    // Negative: half of the body.
    qint64 bytes = -1;
    int delayMilliseconds = 0;
    // So many blanks are streamed after the body.
    qint64 padding = 0;
    // Sends the body in chunks, so that its length is not known in advance.
    bool chunked = false;
};

struct HTTPReply
{
    HTTPResponse response;
    Delivery delivery;
};

} // namespace mirel::simulator
